#pragma once

#include "ui/eyediagram/SheetPage.h"

namespace kv {
class CStimulusData;
}

namespace kv::ui {

// The eye-diagram stimulus page ("Stimulus"). Its controls are not built
// yet: the page says so and changes nothing, so the sheet's flags, pages and
// write-back can already be used with it.
class CEyeDiagramStimulusPage : public CSheetPage {
    Q_OBJECT
public:
    CEyeDiagramStimulusPage(CStimulusData& data, int pageArgA, int pageArgB);
    QString Title() const override { return QStringLiteral("Stimulus"); }

private:
    CStimulusData& m_data;
};

}  // namespace kv::ui
