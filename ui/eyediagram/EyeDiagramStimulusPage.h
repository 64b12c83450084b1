#pragma once

#include <array>
#include <map>

#include "core/stimulus/Jitter.h"
#include "ui/eyediagram/SheetPage.h"

class QCheckBox;
class QComboBox;
class QLineEdit;
class QRadioButton;
class QSpinBox;

namespace kv {
class CStimulusData;
}

namespace kv::ui {

class CBitPatternCtrl;
class CChartControl;

// The eye-diagram stimulus page ("Stimulus"): cycles, skipped bits, eyes, bit
// interval and duty cycle, simple or advanced jitter with its three
// components, the sequence with the bit pattern it generates, and a preview
// of the waveform the stimulus adaptor makes of them (in the area
// "waveformPreviewArea").
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
    void UpdatePreview();
    QLineEdit* AddField(int controlId);
    void ShowData();
    void RefreshFields();
    bool CommitField(QLineEdit* field);
    bool CommitAll();
    void OnSequenceChanged(int index);
    void RegeneratePattern();
    void OnJitterModeChanged();
    bool HasBitInterval() const;
    void OnComponentEnabled(int component, bool enabled);
    void OnComponentUnit(int component, int unitIndex);
    void StoreToData();
    int SelectedKind() const;
    // The record that owns the simple maximum jitter.
    CJitter& SimpleMaximum();

    CStimulusData& m_data;
    // One record per jitter component, and a fourth kept for the host.
    std::array<CJitter, 4> m_jitter;
    std::map<int, QLineEdit*> m_fields;
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
    bool m_filling = false;
    bool m_openChecked = false;
};

}  // namespace kv::ui
