#pragma once

#include <map>

#include "core/eyediagram/MaskLibrary.h"
#include "ui/eyediagram/SheetPage.h"

class QComboBox;
class QLineEdit;

namespace kv {
class CStimulusData;
}

namespace kv::ui {

class CChartControl;

// The eye mask page ("Eye Mask"): the fifteen numbers of the stimulus's
// mask, each checked against its neighbours or its placement range while it
// is edited, the whole mask's order checked before the page is left, and the
// library of named masks in the module's settings store, and a live drawing
// of the mask placed on the eye (in the area "maskDrawingArea").
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
    void ShowMask();
    void UpdateDrawing();
    bool CommitField(QLineEdit* field);
    bool CommitAllFields();
    // Asks whether to keep the current mask in the library when it differs
    // from the library's mask of its name; false when the user cancels.
    bool OfferLibrarySave();
    void OnLibraryChosen(int index);
    void OnSaveAs();
    void OnDelete();
    void FillLibraryList();
    void SaveLibrary();

    CStimulusData& m_data;
    MaskLibrary m_library;
    std::map<int, QLineEdit*> m_fields;
    QComboBox* m_libraryList = nullptr;
    QLineEdit* m_name = nullptr;
    CChartControl* m_drawing = nullptr;
    bool m_openChecked = false;
    bool m_filling = false;
};

}  // namespace kv::ui
