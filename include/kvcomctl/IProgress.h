#pragma once

#include <cstdint>

// The three progress objects as the host sees them. Operation order is the
// virtual-table order the host binds to. Colours are 0x00BBGGRR; window
// handles are widgets; texts are UTF-8.

class QWidget;

class IProgressBarInterface {
public:
    virtual int32_t GetPos() const = 0;                     // 0
    virtual void SetFillColor(uint32_t rgb) = 0;            // 1
    virtual void SetPos(int32_t value, bool force) = 0;     // 2
    virtual void SetEmptyColor(uint32_t rgb) = 0;           // 3
    virtual void SetNoPercentSign(bool noPercentSign) = 0;  // 4
    virtual QWidget* GetHwnd() const = 0;                   // 5

protected:
    ~IProgressBarInterface() = default;
};

class ProgressInterface {
public:
    virtual void SetFirstText(const char* text) = 0;                                         // 0
    virtual void SetSecondText(const char* text) = 0;                                        // 1
    virtual void SetPercent(int32_t percent) = 0;                                            // 2
    virtual void SetAll(const char* first, const char* second, int32_t percent) = 0;         // 3
    virtual bool IsCancelled() = 0;                                                          // 4
    virtual int32_t GetPercent() const = 0;                                                  // 5
    virtual IProgressBarInterface* GetProgressBar() = 0;                                     // 6
    virtual void SetCancelled(bool cancelled) = 0;                                           // 7
    virtual void Attach(QWidget* dialog, int firstTextId, int secondTextId, int barId) = 0;  // 8
    virtual void PumpMessages() = 0;                                                         // 9
    virtual ~ProgressInterface() = default;                                                  // 10
};

class IProgressReportInterface : public ProgressInterface {};

// Called with the value given to SetCancelCallback when the user cancels.
using ProgressCancelCallback = void (*)(int32_t value);

class IProgressDialogInterface {
public:
    virtual bool CreateAt(QWidget* owner, uint32_t delayMs, int x, int y) = 0;           // 0
    virtual bool Create(QWidget* owner, uint32_t delayMs) = 0;                           // 1
    virtual void PumpMessages() = 0;                                                     // 2
    virtual void EnableCancel(bool enable, bool force) = 0;                              // 3
    virtual void Destroy() = 0;                                                          // 4
    virtual IProgressReportInterface* GetReport() = 0;                                   // 5
    virtual IProgressBarInterface* GetProgressBar() = 0;                                 // 6
    virtual void SetCancelCallback(ProgressCancelCallback callback, int32_t value) = 0;  // 7
    virtual void SetCancelText(const char* text) = 0;                                    // 8
    virtual QWidget* GetHwnd() const = 0;                                                // 9
    virtual void SetTitle(const char* text) = 0;                                         // 10
    virtual void Show(int showCommand) = 0;  // 11: 0 hides, anything else shows
    virtual void Enable(bool enable) = 0;    // 12

protected:
    ~IProgressDialogInterface() = default;
};
