#pragma once

#include "ui/eyediagram/SheetPage.h"

namespace kv {
class CStimulusData;
}

namespace kv::ui {

// The eye mask page ("Eye Mask"). Its controls are not built yet: the page
// says so and changes nothing.
class CEyeDiagramMaskPage : public CSheetPage {
    Q_OBJECT
public:
    explicit CEyeDiagramMaskPage(CStimulusData& data);
    QString Title() const override { return QStringLiteral("Eye Mask"); }

private:
    CStimulusData& m_data;
};

}  // namespace kv::ui
