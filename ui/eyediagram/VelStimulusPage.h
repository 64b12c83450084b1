#pragma once

#include "core/eyediagram/StimulusEditPageModel.h"
#include "ui/eyediagram/SheetPage.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QSpinBox;

namespace kv::ui {

class CBitPatternCtrl;

// The stimulus editing page ("Stimulus"): the sequence kind and its bit
// pattern, the bit interval or period, the repetitions or the oscillator's
// frequency, duty cycle and high and low times, random jitter and the named
// stimuli. What each kind shows and how the fields are checked is decided by
// the page's model in the core; the page forwards the user's doings to it
// and shows what it holds.
class CVelStimulusPage : public CSheetPage {
    Q_OBJECT
public:
    // `pageArgB` is accepted for the host's sake and not used.
    CVelStimulusPage(CStimulusData& data, int pageArgB);
    ~CVelStimulusPage() override;

    QString Title() const override { return QStringLiteral("Stimulus"); }
    bool OnKillActive() override;
    bool OnApply() override;
    bool OnQueryCancel() override;

    const StimulusEditPageModel& Model() const { return m_model; }

protected:
    void showEvent(QShowEvent* event) override;

private:
    void BuildControls();
    void ConnectControls();
    // Shows the model's state in every control.
    void ShowModel();
    // Hands the model the bits the user drew.
    void SyncBits();
    // Runs a change of the user's through the model and shows the result;
    // nothing while the page itself fills its controls.
    template <class Change>
    void Forward(Change change);
    // The installed file chooser, or a Qt dialog over this page.
    template <class Use>
    void WithChooser(Use use);

    StimulusEditPageModel m_model;
    bool m_filling = false;
    bool m_openChecked = false;
    int m_shownBits = -1;  // the model's revisions the pattern control shows
    int m_shownLook = -1;

    QComboBox* m_nameList = nullptr;
    QLineEdit* m_nameEdit = nullptr;
    QComboBox* m_sequence = nullptr;
    QComboBox* m_bitOrder = nullptr;
    QLabel* m_levelLabel = nullptr;
    QComboBox* m_level = nullptr;
    CBitPatternCtrl* m_pattern = nullptr;
    QLineEdit* m_fileName = nullptr;
    QLabel* m_periodLabel = nullptr;
    QSpinBox* m_dutySpin = nullptr;
    QLabel* m_repetitionsLabel = nullptr;
    QSpinBox* m_repetitionsSpin = nullptr;
    QLabel* m_jitterLabel = nullptr;
    QComboBox* m_jitterUnit = nullptr;
    QComboBox* m_distribution = nullptr;
    QCheckBox* m_repeatJitter = nullptr;
};

}  // namespace kv::ui
