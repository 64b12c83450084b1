#pragma once

#include <memory>

#include "core/ports/Canvas.h"
#include "core/ports/ControlWindow.h"

// The four ways the bit pattern control draws its waveform. A painter keeps
// no state of its own beyond what it was created with: every paint reads the
// control it belongs to.

namespace kv {

class BitPatternEditor;

class CPatternPainter {
public:
    explicit CPatternPainter(const BitPatternEditor& control) : m_control(control) {}
    virtual ~CPatternPainter() = default;
    CPatternPainter(const CPatternPainter&) = delete;
    CPatternPainter& operator=(const CPatternPainter&) = delete;

    virtual void Paint(ICanvas& canvas) const;
    // Fills mask, minimum, maximum and page of the scroll bar record.
    virtual void FillScrollInfo(ScrollInfo& info) const;
    virtual bool ShowsSequenceLength() const;

protected:
    const BitPatternEditor& m_control;
};

// One pass with digits; scrolls over the whole grid.
class CNormalPaint : public CPatternPainter {
public:
    using CPatternPainter::CPatternPainter;
    void Paint(ICanvas& canvas) const override;
    void FillScrollInfo(ScrollInfo& info) const override;
    bool ShowsSequenceLength() const override;
};

// The sequence again and again up to the right edge, with digits.
class CCyclePaint : public CPatternPainter {
public:
    using CPatternPainter::CPatternPainter;
    void Paint(ICanvas& canvas) const override;
    void FillScrollInfo(ScrollInfo& info) const override;
    bool ShowsSequenceLength() const override;
};

// One pass without digits, its last level carried on to the right edge.
class CContinuousPaint : public CCyclePaint {
public:
    using CCyclePaint::CCyclePaint;
    void Paint(ICanvas& canvas) const override;
};

// A set number of passes with digits, the last level carried on to the
// right edge.
class CRepetitionPaint : public CCyclePaint {
public:
    CRepetitionPaint(const BitPatternEditor& control, int repetitions)
        : CCyclePaint(control), m_repetitions(repetitions) {}
    void Paint(ICanvas& canvas) const override;
    int Repetitions() const { return m_repetitions; }

private:
    int m_repetitions;
};

// Mode 0 normal, 1 cycle, 2 continuous, 3 repetition; null for any other.
std::shared_ptr<CPatternPainter> MakePatternPainter(const BitPatternEditor& control, int mode,
                                                    int repetitions);

}  // namespace kv
