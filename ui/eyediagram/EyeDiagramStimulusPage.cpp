#include "ui/eyediagram/EyeDiagramStimulusPage.h"

#include <QLabel>
#include <QVBoxLayout>

#include "core/stimulus/StimulusData.h"

namespace kv::ui {

CEyeDiagramStimulusPage::CEyeDiagramStimulusPage(CStimulusData& data, int pageArgA, int pageArgB)
    : m_data(data) {
    (void)pageArgA;
    (void)pageArgB;
    setObjectName(QStringLiteral("page595"));
    auto* layout = new QVBoxLayout(this);
    auto* notice =
        new QLabel(tr("The eye-diagram stimulus settings cannot be edited in this version."), this);
    notice->setObjectName(QStringLiteral("notBuilt"));
    notice->setWordWrap(true);
    layout->addWidget(notice);
    layout->addStretch();
}

}  // namespace kv::ui
