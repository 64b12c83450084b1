#pragma once

#include <QString>

#include "core/stimulus/StimulusData.h"
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
// frequency, duty cycle and high and low times, and random jitter. It edits
// the sheet's working copy directly; what each kind shows and how the fields
// are checked is decided in core/eyediagram/StimulusEditRules.
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

    bool IsModified() const;
    CBitPatternCtrl& PatternControl() { return *m_pattern; }

protected:
    void showEvent(QShowEvent* event) override;

private:
    void BuildControls();
    void ShowData();
    void OnSequenceChanged(int index);
    void ApplyKind(int kind, int position);
    void RebuildPattern();
    void RefreshFields();
    bool CommitField(QLineEdit* field);
    bool CommitAllFields();
    void OnRepetitionsChanged(int count);
    void OnDistributionChanged(int index);
    void OnLoad();
    void OnSaveBits();
    void StoreToData();
    QString CurrentName() const;
    void FillNameList(const QString& selected);
    void OpenNamed(const QString& name);
    bool SaveNamed();
    void OnRemoveNamed();
    void OnOpenFile();
    int SelectedKind() const;
    double JitterInNs(double shown) const;

    CStimulusData& m_data;
    BitVector m_openedBits;  // the bits when the page opened, to tell an edit
    bool m_modified = false;
    bool m_filling = false;
    bool m_openChecked = false;

    QComboBox* m_nameList = nullptr;
    QLineEdit* m_nameEdit = nullptr;
    QComboBox* m_sequence = nullptr;
    QComboBox* m_bitOrder = nullptr;
    QLabel* m_levelLabel = nullptr;
    QComboBox* m_level = nullptr;
    CBitPatternCtrl* m_pattern = nullptr;
    QLineEdit* m_fileName = nullptr;
    QLabel* m_periodLabel = nullptr;
    QLineEdit* m_period = nullptr;
    QLineEdit* m_duty = nullptr;
    QSpinBox* m_dutySpin = nullptr;
    QLabel* m_repetitionsLabel = nullptr;
    QLineEdit* m_repetitions = nullptr;
    QSpinBox* m_repetitionsSpin = nullptr;
    QLineEdit* m_frequency = nullptr;
    QLineEdit* m_highTime = nullptr;
    QLineEdit* m_lowTime = nullptr;
    QLabel* m_jitterLabel = nullptr;
    QLineEdit* m_jitter = nullptr;
    QComboBox* m_jitterUnit = nullptr;
    QComboBox* m_distribution = nullptr;
    QCheckBox* m_repeatJitter = nullptr;
};

}  // namespace kv::ui
