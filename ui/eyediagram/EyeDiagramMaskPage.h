#pragma once

#include "core/eyediagram/MaskPageModel.h"
#include "ui/eyediagram/SheetPage.h"

class QComboBox;
class QLineEdit;

namespace kv::ui {

class CChartControl;

// The eye mask page ("Eye Mask"): a field per number of the mask, the
// library of named masks, and a live drawing of the mask placed on the eye
// (in the area "maskDrawingArea"). What each field holds and when the page
// may be left is decided by the page's model in the core.
class CEyeDiagramMaskPage : public CSheetPage {
    Q_OBJECT
public:
    explicit CEyeDiagramMaskPage(CStimulusData& data);
    QString Title() const override { return QStringLiteral("Eye Mask"); }
    bool OnKillActive() override;
    bool OnApply() override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    // Shows the model's texts, name and library list.
    void ShowModel();
    void UpdateDrawing();
    void OnLibraryChosen(int index);

    MaskPageModel m_model;
    QComboBox* m_libraryList = nullptr;
    QLineEdit* m_name = nullptr;
    CChartControl* m_drawing = nullptr;
    bool m_openChecked = false;
    bool m_filling = false;
};

}  // namespace kv::ui
