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

#include "core/stimulus/SequenceType.h"
#include "core/stimulus/StimulusRules.h"
#include "kvcomctl/EyeDiagramControlIds.h"
#include "ui/bitpattern/BitPatternCtrl.h"
#include "ui/chart/ChartControl.h"
#include "ui/eyediagram/PageCharts.h"
#include "ui/shared/ControlIds.h"

namespace kv::ui {
namespace {

namespace id = kvcomctl_ids::eye_stimulus;

constexpr const char* kComponentNames[3] = {"Gaussian (1 Sigma)", "Uniform", "Sine"};
constexpr const char* kValue2Names[3] = {"Frequency (MHz):", "Mean:", "Frequency (MHz):"};

template <class Widget>
Widget* Named(Widget* widget, int controlId) {
    widget->setObjectName(ControlObjectName(controlId));
    return widget;
}

}  // namespace

CEyeDiagramStimulusPage::CEyeDiagramStimulusPage(CStimulusData& data, int pageArgA, int pageArgB)
    : m_model(data) {
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
                [this, i](bool on) { Forward([&] { m_model.SetComponentEnabled(i, on); }); });
        connect(m_units[i], &QComboBox::currentIndexChanged, this,
                [this, i](int unit) { Forward([&] { m_model.SetComponentUnit(i, unit); }); });
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

    connect(m_eyes, &QComboBox::currentIndexChanged, this,
            [this](int index) { Forward([&] { m_model.SetEyesIndex(index); }); });
    connect(m_simple, &QRadioButton::toggled, this,
            [this] { Forward([&] { m_model.SetAdvanced(m_advanced->isChecked()); }); });
    connect(m_jitterType, &QComboBox::currentIndexChanged, this,
            [this](int type) { Forward([&] { m_model.SetJitterType(type); }); });
    connect(m_repeatable, &QCheckBox::toggled, this,
            [this](bool on) { Forward([&] { m_model.SetRepeatable(on); }); });
    connect(m_sequence, &QComboBox::currentIndexChanged, this, [this](int index) {
        if (index >= 0) {
            Forward([&] { m_model.SetKind(m_sequence->itemData(index).toInt()); });
        }
    });
    connect(m_degree, &QSpinBox::valueChanged, this,
            [this](int degree) { Forward([&] { m_model.SetPolyDegree(degree); }); });
    connect(m_initState, &QComboBox::currentIndexChanged, this,
            [this](int index) { Forward([&] { m_model.SetLevelIndex(index); }); });
    ShowModel();
}

CEyeDiagramStimulusPage::~CEyeDiagramStimulusPage() = default;

template <class Change>
void CEyeDiagramStimulusPage::Forward(Change change) {
    if (!m_filling) {
        SyncBits();
        change();
        ShowModel();
    }
}

bool CEyeDiagramStimulusPage::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_pattern &&
        (event->type() == QEvent::KeyRelease || event->type() == QEvent::MouseButtonRelease)) {
        SyncBits();
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
        if (m_model.CheckOnOpen()) {
            ShowModel();
        }
    }
    // Fitted again at the size the chart is shown in: the grid steps, and
    // so the fitted ends, depend on it.
    UpdatePreview();
}

QLineEdit* CEyeDiagramStimulusPage::AddField(int controlId) {
    auto* field = Named(new QLineEdit(this), controlId);
    field->setMinimumWidth(field->fontMetrics().horizontalAdvance(QStringLiteral("0000.000")) + 12);
    m_fields[controlId] = field;
    connect(field, &QLineEdit::textChanged, this, [this, controlId](const QString& text) {
        if (!m_filling) {
            m_model.Type(controlId, text.toStdString());
        }
    });
    connect(field, &QLineEdit::editingFinished, this, [this, controlId] {
        bool accepted = true;
        Forward([&] { accepted = m_model.Commit(controlId); });
        if (!accepted) {
            ReturnTo(controlId);
        }
    });
    return field;
}

void CEyeDiagramStimulusPage::ShowModel() {
    m_filling = true;
    for (const auto& [controlId, field] : m_fields) {
        const QString text = QString::fromStdString(m_model.Text(controlId));
        if (field->text() != text) {
            field->setText(text);
        }
        field->setEnabled(m_model.IsEnabled(controlId));
    }
    m_eyes->setCurrentIndex(m_model.EyesIndex());
    (m_model.Advanced() ? m_advanced : m_simple)->setChecked(true);
    m_jitterType->setCurrentIndex(m_model.JitterType());
    m_jitterType->setEnabled(m_model.IsEnabled(id::kJitterType));
    m_repeatable->setChecked(m_model.Repeatable());
    for (int i = 0; i < 3; ++i) {
        m_enabled[i]->setChecked(m_model.ComponentEnabled(i));
        m_enabled[i]->setEnabled(m_model.IsEnabled(id::kComponentEnabled + i));
        m_units[i]->setCurrentIndex(m_model.ComponentUnit(i));
        m_units[i]->setEnabled(m_model.IsEnabled(id::kComponentUnit + i));
    }
    m_sequence->setCurrentIndex(m_sequence->findData(m_model.Kind()));
    m_degree->setValue(m_model.PolyDegree());
    m_degree->setEnabled(m_model.DegreeEnabled());
    m_initState->setCurrentIndex(m_model.LevelIndex());
    if (m_shownBits != m_model.BitsRevision()) {
        m_shownBits = m_model.BitsRevision();
        m_pattern->SetPattern(m_model.Bits().data(), static_cast<int>(m_model.Bits().size()));
        m_pattern->update();
    }
    m_pattern->SetReadOnly(m_model.PatternReadOnly());
    m_filling = false;
    UpdatePreview();
}

void CEyeDiagramStimulusPage::UpdatePreview() {
    ShowWaveform(*m_preview, m_model.Preview());
}

void CEyeDiagramStimulusPage::SyncBits() {
    const auto shown = m_pattern->m_bits.Data();
    if (!std::equal(shown.begin(), shown.end(), m_model.Bits().begin(), m_model.Bits().end())) {
        m_model.SetBits(BitVector(shown.begin(), shown.end()));
    }
}

bool CEyeDiagramStimulusPage::OnKillActive() {
    SyncBits();
    const std::optional<int> refused = m_model.Leave();
    if (refused) {
        ReturnTo(*refused);
    }
    return !refused;
}

bool CEyeDiagramStimulusPage::OnApply() {
    SyncBits();
    m_model.Apply();
    return true;
}

}  // namespace kv::ui
