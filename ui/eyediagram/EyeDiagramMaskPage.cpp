#include "ui/eyediagram/EyeDiagramMaskPage.h"

#include <QLabel>
#include <QVBoxLayout>

#include "core/stimulus/StimulusData.h"

namespace kv::ui {

CEyeDiagramMaskPage::CEyeDiagramMaskPage(CStimulusData& data) : m_data(data) {
    setObjectName(QStringLiteral("page596"));
    auto* layout = new QVBoxLayout(this);
    auto* notice = new QLabel(tr("The eye mask cannot be edited in this version."), this);
    notice->setObjectName(QStringLiteral("notBuilt"));
    notice->setWordWrap(true);
    layout->addWidget(notice);
    layout->addStretch();
}

}  // namespace kv::ui
