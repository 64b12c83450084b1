#pragma once

#include <array>

#include "core/eyediagram/EyeStimulusPageModel.h"
#include "ui/eyediagram/SheetPage.h"

class QCheckBox;
class QComboBox;
class QLineEdit;
class QRadioButton;
class QSpinBox;

namespace kv::ui {

class CBitPatternCtrl;
class CChartControl;

// The eye-diagram stimulus page ("Stimulus"): cycles, skipped bits, eyes, bit
// interval and duty cycle, simple or advanced jitter with its three
// components, the sequence with the bit pattern it generates, and a preview
// of the waveform the stimulus adaptor makes of them (in the area
// "waveformPreviewArea"). What each control holds is decided by the page's
// model in the core.
class CEyeDiagramStimulusPage : public CSheetPage {
    Q_OBJECT
public:
    // Page arguments A and B are accepted for the host's sake and not used.
    CEyeDiagramStimulusPage(CStimulusData& data, int pageArgA, int pageArgB);
    ~CEyeDiagramStimulusPage() override;

    QString Title() const override { return QStringLiteral("Stimulus"); }
    bool OnKillActive() override;
    bool OnApply() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    QLineEdit* AddField(int controlId);
    // Shows the model's state in every control.
    void ShowModel();
    void UpdatePreview();
    // Hands the model the bits the user drew.
    void SyncBits();
    // Runs a change of the user's through the model and shows the result;
    // nothing while the page itself fills its controls.
    template <class Change>
    void Forward(Change change);

    EyeStimulusPageModel m_model;
    QComboBox* m_eyes = nullptr;
    QRadioButton* m_simple = nullptr;
    QRadioButton* m_advanced = nullptr;
    QComboBox* m_jitterType = nullptr;
    QCheckBox* m_repeatable = nullptr;
    QComboBox* m_sequence = nullptr;
    QSpinBox* m_degree = nullptr;
    QComboBox* m_initState = nullptr;
    std::array<QCheckBox*, 3> m_enabled{};
    std::array<QComboBox*, 3> m_units{};
    CBitPatternCtrl* m_pattern = nullptr;
    CChartControl* m_preview = nullptr;
    int m_shownBits = -1;  // the model's bit revision the control shows
    bool m_filling = false;
    bool m_openChecked = false;
};

}  // namespace kv::ui
