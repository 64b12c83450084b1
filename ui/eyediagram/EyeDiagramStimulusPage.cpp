#include "ui/eyediagram/EyeDiagramStimulusPage.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QFormLayout>
#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "core/eyediagram/EyeStimulusRules.h"
#include "core/eyediagram/StimulusEditRules.h"
#include "core/eyediagram/StimulusOpenCheck.h"
#include "core/eyediagram/WaveformPreview.h"
#include "core/ports/MessagePort.h"
#include "core/stimulus/FixedPatterns.h"
#include "core/stimulus/SequenceType.h"
#include "core/stimulus/StimulusData.h"
#include "core/stimulus/StimulusRules.h"
#include "kvcomctl/EyeDiagramControlIds.h"
#include "ui/bitpattern/BitPatternCtrl.h"
#include "ui/chart/ChartControl.h"
#include "ui/eyediagram/PageCharts.h"
#include "ui/shared/ControlIds.h"

namespace kv::ui {
namespace {

namespace id = kvcomctl_ids::eye_stimulus;
using stimulus_edit::FormatField;
using stimulus_edit::ParseField;

constexpr const char* kComponentNames[3] = {"Gaussian (1 Sigma)", "Uniform", "Sine"};
constexpr const char* kValue2Names[3] = {"Frequency (MHz):", "Mean:", "Frequency (MHz):"};

template <class Widget>
Widget* Named(Widget* widget, int controlId) {
    widget->setObjectName(ControlObjectName(controlId));
    return widget;
}

}  // namespace

CEyeDiagramStimulusPage::CEyeDiagramStimulusPage(CStimulusData& data, int pageArgA, int pageArgB)
    : m_data(data) {
    (void)pageArgA;
    (void)pageArgB;
    setObjectName(QStringLiteral("page595"));
    auto* page = new QGridLayout(this);

    auto* timing = new QGroupBox(tr("Simulation"), this);
    auto* form = new QFormLayout(timing);
    form->addRow(tr("&Cycles:"), AddField(id::kCycles));
    form->addRow(tr("&Skip bits:"), AddField(id::kSkipBits));
    m_eyes = Named(new QComboBox(timing), id::kEyes);
    m_eyes->addItems({"1", "2", "3"});
    form->addRow(tr("&Eyes:"), m_eyes);
    form->addRow(tr("&Bit interval (ns):"), AddField(id::kBitInterval));
    form->addRow(tr("&Duty cycle (%):"), AddField(id::kDutyCycle));
    page->addWidget(timing, 0, 0);

    auto* jitter = new QGroupBox(tr("Jitter"), this);
    auto* grid = new QGridLayout(jitter);
    m_simple = Named(new QRadioButton(tr("S&imple"), jitter), id::kSimpleJitter);
    m_advanced = Named(new QRadioButton(tr("&Advanced"), jitter), id::kAdvancedJitter);
    auto* modes = new QButtonGroup(jitter);
    modes->addButton(m_simple);
    modes->addButton(m_advanced);
    grid->addWidget(m_simple, 0, 0);
    grid->addWidget(new QLabel(tr("Maximum (ns):"), jitter), 0, 1);
    grid->addWidget(AddField(id::kMaxJitter), 0, 2);
    m_jitterType = Named(new QComboBox(jitter), id::kJitterType);
    m_jitterType->addItems({tr("Gaussian"), tr("Uniform"), tr("Sine")});
    grid->addWidget(m_jitterType, 0, 3);
    grid->addWidget(m_advanced, 1, 0);
    for (int i = 0; i < 3; ++i) {
        const int row = 2 + i;
        m_enabled[i] =
            Named(new QCheckBox(tr(kComponentNames[i]), jitter), id::kComponentEnabled + i);
        grid->addWidget(m_enabled[i], row, 0);
        grid->addWidget(AddField(id::kComponentMagnitude + i), row, 1);
        m_units[i] = Named(new QComboBox(jitter), id::kComponentUnit + i);
        m_units[i]->addItems({tr("% of interval"), tr("ns")});
        grid->addWidget(m_units[i], row, 2);
        grid->addWidget(new QLabel(tr(kValue2Names[i]), jitter), row, 3);
        grid->addWidget(AddField(id::kComponentValue2 + i), row, 4);
        connect(m_enabled[i], &QCheckBox::toggled, this,
                [this, i](bool on) { OnComponentEnabled(i, on); });
        connect(m_units[i], &QComboBox::currentIndexChanged, this,
                [this, i](int unit) { OnComponentUnit(i, unit); });
    }
    grid->addWidget(new QLabel(tr("Initial phase:"), jitter), 4, 5);
    grid->addWidget(AddField(id::kComponentValue3 + 2), 4, 6);
    m_repeatable = Named(new QCheckBox(tr("&Repeatable jitter"), jitter), id::kRepeatable);
    grid->addWidget(m_repeatable, 5, 0, 1, 3);
    page->addWidget(jitter, 0, 1);

    auto* sequence = new QGroupBox(tr("Bit sequence"), this);
    auto* sequenceLayout = new QVBoxLayout(sequence);
    auto* choices = new QFormLayout;
    m_sequence = Named(new QComboBox(sequence), id::kSequence);
    for (const SequenceTypeName& entry : kEyeDiagramSequenceList) {
        m_sequence->addItem(
            QString::fromUtf8(entry.name.data(), static_cast<qsizetype>(entry.name.size())),
            entry.code);
    }
    choices->addRow(tr("Se&quence:"), m_sequence);
    m_degree = Named(new QSpinBox(sequence), id::kPolyDegree);
    const ValueRange& degrees = *StimulusRuleOf("POLYDEGREE").typed;
    m_degree->setRange(static_cast<int>(degrees.low), static_cast<int>(degrees.high));
    choices->addRow(tr("Polynomial &degree:"), m_degree);
    m_initState = Named(new QComboBox(sequence), id::kInitState);
    m_initState->addItems({tr("High"), tr("Low")});
    choices->addRow(tr("I&nitial state:"), m_initState);
    sequenceLayout->addLayout(choices);
    auto* placeholder = new QWidget(sequence);
    placeholder->setObjectName(ControlObjectName(id::kPattern));
    placeholder->setMinimumHeight(70);
    sequenceLayout->addWidget(placeholder);
    m_pattern = new CBitPatternCtrl(sequence);
    m_pattern->AttachToDlgItem(id::kPattern, this);
    m_pattern->setMinimumHeight(95);
    page->addWidget(sequence, 1, 0, 1, 2);

    auto* preview = new QFrame(this);
    preview->setObjectName(QStringLiteral("waveformPreviewArea"));
    preview->setFrameShape(QFrame::StyledPanel);
    preview->setMinimumHeight(200);
    page->addWidget(preview, 2, 0, 1, 2);
    m_preview = MakeWaveformChart(preview);
    // The pattern control tells nobody of its edits; the preview follows
    // them when a key or button is let go over it.
    m_pattern->installEventFilter(this);

    connect(m_sequence, &QComboBox::currentIndexChanged, this,
            &CEyeDiagramStimulusPage::OnSequenceChanged);
    connect(m_degree, &QSpinBox::valueChanged, this, [this](int degree) {
        if (!m_filling) {
            m_data.SetPolyDegree(degree);
            RegeneratePattern();
        }
    });
    connect(m_initState, &QComboBox::currentIndexChanged, this, [this](int index) {
        if (!m_filling) {
            m_data.SetInitState(stimulus_edit::InitStateOfLevel(index));
            RegeneratePattern();
        }
    });
    connect(m_simple, &QRadioButton::toggled, this, &CEyeDiagramStimulusPage::OnJitterModeChanged);
    ShowData();
}

CEyeDiagramStimulusPage::~CEyeDiagramStimulusPage() = default;

bool CEyeDiagramStimulusPage::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_pattern &&
        (event->type() == QEvent::KeyRelease || event->type() == QEvent::MouseButtonRelease)) {
        UpdatePreview();
    }
    return CSheetPage::eventFilter(watched, event);
}

void CEyeDiagramStimulusPage::showEvent(QShowEvent* event) {
    CSheetPage::showEvent(event);
    // Checked when the page first opens, as the mask page checks its mask:
    // the sheet makes the page even when it does not show it.
    if (!m_openChecked) {
        m_openChecked = true;
        if (ReplaceValuesPagesCannotUse(m_data)) {
            ShowMessage(kInvalidEyeDiagramData, MessageIcon::Warning);
            ShowData();
        }
    }
    // Fitted again at the size the chart is shown in: the grid steps, and
    // so the fitted ends, depend on it.
    UpdatePreview();
}

void CEyeDiagramStimulusPage::UpdatePreview() {
    PreviewInput input;
    input.bits = m_pattern->m_bits.Data();
    input.cycleCount = m_data.GetCycleCount();
    input.seqType = SelectedKind();
    input.periodNs = m_data.GetPeriod();
    input.dutyPercent = m_data.GetDutyCycle();
    ShowWaveform(*m_preview, BuildWaveformPreview(input));
}

QLineEdit* CEyeDiagramStimulusPage::AddField(int controlId) {
    auto* field = Named(new QLineEdit(this), controlId);
    field->setMinimumWidth(field->fontMetrics().horizontalAdvance(QStringLiteral("0000.000")) + 12);
    m_fields[controlId] = field;
    connect(field, &QLineEdit::editingFinished, this, [this, field] { CommitField(field); });
    return field;
}

CJitter& CEyeDiagramStimulusPage::SimpleMaximum() {
    return m_jitter[static_cast<std::size_t>(eye_stimulus::kSimpleMaximumComponent)];
}

int CEyeDiagramStimulusPage::SelectedKind() const {
    return m_sequence->currentData().toInt();
}

void CEyeDiagramStimulusPage::ShowData() {
    m_filling = true;
    for (int i = 0; i < 3; ++i) {
        m_jitter[static_cast<std::size_t>(i)] = eye_stimulus::JitterFromData(m_data, i);
        m_enabled[i]->setChecked(m_jitter[static_cast<std::size_t>(i)].m_enabled);
        m_units[i]->setCurrentIndex(m_jitter[static_cast<std::size_t>(i)].m_asTime ? 1 : 0);
    }
    m_eyes->setCurrentIndex(std::clamp(m_data.GetEyeCount(), 1, 3) - 1);
    (m_data.GetAdvancedJitter() ? m_advanced : m_simple)->setChecked(true);
    m_jitterType->setCurrentIndex(std::clamp(m_data.GetJitterType(), 0, 2));
    m_repeatable->setChecked(m_data.GetJitterRepeatable());
    // Kind 7 is generated as a pseudo-random sequence; kinds this list does
    // not offer show as drawn sequences and keep their bits.
    const int kind =
        m_data.GetSeqType() == seq::kConstructionDefault ? seq::kPrbs : m_data.GetSeqType();
    const int index = m_sequence->findData(kind);
    m_sequence->setCurrentIndex(index >= 0 ? index : m_sequence->findData(seq::kCustom));
    m_degree->setValue(m_data.GetPolyDegree());  // the spin box keeps it within its range
    m_initState->setCurrentIndex(stimulus_edit::LevelOfInitState(m_data.GetInitState()));
    m_pattern->SetPattern(m_data.Bits().data(), m_data.GetBitCount());
    m_pattern->SetReadOnly(SelectedKind() != seq::kCustom);
    m_degree->setEnabled(SelectedKind() == seq::kPrbs);
    RefreshFields();
    m_filling = false;
    OnJitterModeChanged();
    UpdatePreview();
}

void CEyeDiagramStimulusPage::RefreshFields() {
    // Each field remembers the text it was given, so that committing a field
    // nobody touched never replaces a value by its rounded text.
    const auto showText = [this](int controlId, const QString& text) {
        m_fields[controlId]->setText(text);
        m_fields[controlId]->setProperty("shownText", text);
    };
    const auto show = [&showText](int controlId, double value) {
        showText(controlId, QString::fromStdString(FormatField(value)));
    };
    showText(id::kCycles, QString::number(m_data.GetCycleCount()));
    showText(id::kSkipBits, QString::number(m_data.GetSkipBits()));
    show(id::kBitInterval, m_data.GetPeriod());
    show(id::kDutyCycle, m_data.GetDutyCycle());
    show(id::kMaxJitter, SimpleMaximum().m_magnitude);
    for (int i = 0; i < 3; ++i) {
        const CJitter& jitter = m_jitter[static_cast<std::size_t>(i)];
        show(id::kComponentMagnitude + i, jitter.m_magnitude);
        show(id::kComponentValue2 + i, jitter.m_value2);
    }
    show(id::kComponentValue3 + 2, m_jitter[2].m_value3);
}

bool CEyeDiagramStimulusPage::CommitField(QLineEdit* field) {
    if (m_filling || !field->isEnabled() ||
        field->text() == field->property("shownText").toString()) {
        return true;
    }
    const int controlId = field->objectName().mid(3).toInt();
    const std::optional<double> typed = ParseField(field->text().toStdString());
    const double value = typed.value_or(-1.0e300);
    const double period = m_data.GetPeriod();
    std::optional<std::string_view> problem;
    const int component = controlId % 10;
    CJitter changed = m_jitter[static_cast<std::size_t>(component < 3 ? component : 0)];
    switch (controlId - (controlId >= id::kComponentEnabled ? component : 0)) {
        case id::kCycles:
            if (!(problem = CheckTyped(StimulusRuleOf("CYCLECOUNT"), value))) {
                m_data.SetCycleCount(static_cast<int>(value));
                if (SelectedKind() == seq::k8b10b) {
                    RegeneratePattern();  // ten bits per cycle
                }
            }
            break;
        case id::kSkipBits: {
            const StimulusRule& skip = StimulusRuleOf("SKIPBITS");
            problem = CheckTyped(skip, value);
            if (!problem &&
                !SkipWithinCycles(value, m_data.GetCycleCount(), m_pattern->m_bits.GetSize())) {
                problem = skip.message;
            }
            if (!problem) {
                m_data.SetSkipBits(static_cast<int>(value));
            }
        } break;
        case id::kBitInterval:
            if (!(problem = CheckTyped(StimulusRuleOf("PERIOD"), value, true))) {
                m_data.SetPeriod(value);
            }
            break;
        case id::kDutyCycle:
            if (!(problem = CheckTyped(StimulusRuleOf("DUTYCYCLE"), value))) {
                m_data.SetDutyCycle(value);
            }
            break;
        case id::kMaxJitter:
            if (!(problem = CheckMaxJitterInHalfPeriod(value, period, m_data.GetDutyCycle()))) {
                SimpleMaximum().m_magnitude = value;
            }
            break;
        case id::kComponentMagnitude:
            changed.m_magnitude = value;
            if (!typed || value < 0) {
                problem = kJitterMagnitudeTooLarge;
            } else if (!CheckJitterMagnitude(changed, period)) {
                field->setFocus();
                return false;  // told by the check itself
            }
            break;
        case id::kComponentValue2:
            changed.m_value2 = value;
            break;
        case id::kComponentValue3:
            changed.m_value3 = value;
            break;
        default:
            return true;
    }
    if (!problem && !typed) {
        problem = "Invalid number";
    }
    if (problem) {
        RefuseField(*field, *problem, kMessageCaption, m_filling);
        return false;
    }
    if (controlId >= id::kComponentMagnitude && component < 3) {
        m_jitter[static_cast<std::size_t>(component)] = changed;
    }
    RefreshFields();
    UpdatePreview();
    return true;
}

bool CEyeDiagramStimulusPage::CommitAll() {
    for (const auto& [controlId, field] : m_fields) {
        if (!CommitField(field)) {
            return false;
        }
    }
    return true;
}

void CEyeDiagramStimulusPage::OnSequenceChanged(int index) {
    if (m_filling || index < 0) {
        return;
    }
    m_data.SetSeqType(SelectedKind());
    m_pattern->SetReadOnly(SelectedKind() != seq::kCustom);
    m_degree->setEnabled(SelectedKind() == seq::kPrbs);
    RegeneratePattern();
}

void CEyeDiagramStimulusPage::RegeneratePattern() {
    if (SelectedKind() != seq::kCustom) {  // else the user's own bits stay
        const BitVector bits = stimulus_edit::ShownPattern(
            SelectedKind(), std::max(0, m_initState->currentIndex()), false, m_data);
        m_pattern->SetPattern(bits.data(), static_cast<int>(bits.size()));
        m_pattern->update();
    }
    UpdatePreview();
}

void CEyeDiagramStimulusPage::OnJitterModeChanged() {
    const bool advanced = m_advanced->isChecked();
    if (!m_filling) {
        m_data.SetAdvancedJitter(advanced);
    }
    m_fields[id::kMaxJitter]->setEnabled(!advanced);
    m_jitterType->setEnabled(!advanced);
    for (int i = 0; i < 3; ++i) {
        const bool on = advanced && m_enabled[i]->isChecked();
        m_enabled[i]->setEnabled(advanced);
        m_fields[id::kComponentMagnitude + i]->setEnabled(on);
        m_units[i]->setEnabled(on);
        m_fields[id::kComponentValue2 + i]->setEnabled(on);
    }
    m_fields[id::kComponentValue3 + 2]->setEnabled(advanced && m_enabled[2]->isChecked());
}

void CEyeDiagramStimulusPage::OnComponentEnabled(int component, bool enabled) {
    if (m_filling) {
        return;
    }
    CJitter changed = m_jitter[static_cast<std::size_t>(component)];
    changed.m_enabled = enabled;
    if (enabled && !CheckJitterMagnitude(changed, m_data.GetPeriod())) {
        m_filling = true;
        m_enabled[component]->setChecked(false);
        m_filling = false;
        return;
    }
    m_jitter[static_cast<std::size_t>(component)] = changed;
    OnJitterModeChanged();
}

void CEyeDiagramStimulusPage::OnComponentUnit(int component, int unitIndex) {
    if (m_filling) {
        return;
    }
    // The same displacement, said in the other unit.
    CJitter& jitter = m_jitter[static_cast<std::size_t>(component)];
    const double percent = MagnitudeInPercent(jitter, m_data.GetPeriod());
    jitter.m_asTime = unitIndex == 1 ? 1 : 0;
    jitter.m_magnitude = MagnitudeFromPercent(jitter, percent, m_data.GetPeriod());
    RefreshFields();
}

void CEyeDiagramStimulusPage::StoreToData() {
    for (int i = 0; i < 3; ++i) {
        eye_stimulus::StoreJitter(m_data, i, m_jitter[static_cast<std::size_t>(i)]);
    }
    m_data.SetEyeCount(m_eyes->currentIndex() + 1);
    m_data.SetJitterType(m_jitterType->currentIndex());
    m_data.SetJitterRepeatable(m_repeatable->isChecked());
    const auto shown = m_pattern->m_bits.Data();
    m_data.SetBitVector(BitVector(shown.begin(), shown.end()));
}

bool CEyeDiagramStimulusPage::OnKillActive() {
    if (!CommitAll()) {
        return false;
    }
    StoreToData();
    return true;
}

bool CEyeDiagramStimulusPage::OnApply() {
    StoreToData();
    return true;
}

}  // namespace kv::ui
