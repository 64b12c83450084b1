#pragma once

#include <QString>
#include <QWidget>
#include <memory>

#include "core/via/ViaTopView.h"
#include "core/via/ViaVisualizer.h"
#include "kvcomctl/IViaVizCtrl.h"
#include "ui/ports/QtFileChooser.h"

class QMenu;

// The via visualizer control: the side view or the top view of a via or a differential pair,
// and "Export to Spice". The core's ViaVisualizer holds the data and draws; the widget hands it
// its size and the mouse, shows the hover text, the context menu and the file dialogs.

namespace kv::ui {

class CViaVisualizerCtrl : public QWidget, public IViaVizCtrl {
    Q_OBJECT

public:
    static constexpr const char* kWidgetClassName = "Velmorine Via Visualizer";
    // Texts of the context menu's items, in menu order.
    static constexpr const char* kExportText = "Export to Spice...";
    static constexpr const char* kSideViewText = "Side view";
    static constexpr const char* kTopViewText = "Top view";
    static constexpr const char* kCopyImageText = "Copy image";
    static constexpr const char* kSaveImageText = "Save image...";

    explicit CViaVisualizerCtrl(QWidget* parent = nullptr);
    ~CViaVisualizerCtrl() override;

    bool Create(QWidget* parent, int32_t id) override;
    QWidget* GetWindow() const override;
    IViaVizData* GetViaData(int32_t via) override;
    void SetPair(bool pair) override;
    bool IsPair() const override;
    void SetElements(int32_t via, const VIAELEMENT* elements, int32_t count) override;
    void SetPorts(int32_t via, const int32_t* layers, int32_t count) override;
    void SetNames(const char* subcircuit, const char* baseName, const char* exportFile) override;
    void SetMetric(bool metric) override;
    void SetView(int32_t view) override;
    void SetTopViewLayer(int32_t layer) override;
    void Refresh() override;
    bool ExportToSpice() override;
    bool ExportToSpiceFile(const char* path) override;

    // The file dialogs the control asks through (not owned); null restores its own Qt dialogs.
    void SetFileChooser(IFileChooser* chooser);
    // The picture of the current view at `size`, as PNG or SVG by the file's extension.
    bool SaveImage(const QString& path, QSize size) const;
    bool SaveImage(const QString& path) const { return SaveImage(path, size()); }
    // Asks for a file and saves the picture there; false when cancelled or not written.
    bool SaveImageInteractively();
    void CopyImage() const;
    // The text the mouse at `at` shows, the same as the tooltip.
    QString HoverText(QPoint at) const;
    // The context menu as it pops up; the caller runs it.
    std::unique_ptr<QMenu> CreateContextMenu();

    const ViaVisualizer& Model() const { return m_model; }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    IFileChooser& Chooser();

    ViaVisualizer m_model;
    QtFileChooser m_qtChooser;
    IFileChooser* m_chooser = nullptr;
    bool m_created = false;
};

// The pad top view on its own: one layer's pad, anti-pad and drill, fitted to the widget. It
// is the window class "TOPVIEW" that dialogs place by name.
class CPadTopViewCtrl : public QWidget {
    Q_OBJECT

public:
    static constexpr const char* kWidgetClassName = "TOPVIEW";

    explicit CPadTopViewCtrl(QWidget* parent = nullptr);

    // Copies the pad; null shows the drill alone.
    void SetPad(const PADDATA* pad, double drill, double plating, bool metric,
                const QString& title = {});

    // What the view draws now; its pad points into the widget and lives until the next SetPad.
    PadTopViewInput Input() const;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::optional<PADDATA> m_pad;
    PadTopViewInput m_input;
};

}  // namespace kv::ui
