#pragma once

#include <QWidget>
#include <string>

#include "core/walker/CrossSection.h"

// The walker's Cross-section pane: draws what the core lays out for its
// current size, with one net's traces highlighted.

namespace kv::ui {

class CCrossSectionCtrl final : public QWidget {
    Q_OBJECT
public:
    explicit CCrossSectionCtrl(QWidget* parent = nullptr);

    void SetData(CrossSectionData data);
    const CrossSectionData& Data() const { return m_data; }
    void SetHighlightedNet(std::string net);
    const std::string& HighlightedNet() const { return m_highlightedNet; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    CrossSectionData m_data;
    std::string m_highlightedNet;
};

}  // namespace kv::ui
