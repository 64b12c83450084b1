#include "ui/eyediagram/VelStimulusPage.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <functional>

#include "core/eyediagram/StimulusEditRules.h"
#include "core/eyediagram/StimulusLibrary.h"
#include "core/eyediagram/StimulusOpenCheck.h"
#include "core/ports/FileChooser.h"
#include "core/stimulus/BitFile.h"
#include "core/stimulus/SequenceType.h"
#include "core/stimulus/StimulusRules.h"
#include "kvcomctl/EyeDiagramControlIds.h"
#include "ui/bitpattern/BitPatternCtrl.h"
#include "ui/ports/QtFileChooser.h"
#include "ui/shared/ControlIds.h"

namespace kv::ui {
namespace {

namespace id = kvcomctl_ids::stimulus_edit;
using namespace kv::stimulus_edit;

template <class Widget, class... Args>
Widget* Make(int controlId, QWidget* parent, Args&&... args) {
    auto* widget = new Widget(std::forward<Args>(args)..., parent);
    widget->setObjectName(ControlObjectName(controlId));
    return widget;
}

QLabel* Label(int controlId, const QString& text, QWidget* parent, QWidget* buddy = nullptr) {
    auto* label = controlId != 0 ? Make<QLabel>(controlId, parent, text) : new QLabel(text, parent);
    if (buddy != nullptr) {
        label->setBuddy(buddy);
    }
    return label;
}

// A spin box over the whole values a person may type for `key`.
QSpinBox* Spin(int controlId, QWidget* parent, std::string_view key) {
    auto* spin = Make<QSpinBox>(controlId, parent);
    const ValueRange& typed = *StimulusRuleOf(key).typed;
    spin->setRange(static_cast<int>(typed.low), static_cast<int>(typed.high));
    spin->setMaximumWidth(22);  // the arrows beside the edit, as a buddy spin
    return spin;
}

QString Text(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

int ControlIdOf(const QWidget* widget) {
    return widget->objectName().mid(3).toInt();
}

}  // namespace

CVelStimulusPage::CVelStimulusPage(CStimulusData& data, int pageArgB)
    : m_data(data), m_openedBits(data.Bits()) {
    (void)pageArgB;
    setObjectName(QStringLiteral("page4018"));
    BuildControls();
    ShowData();
}

CVelStimulusPage::~CVelStimulusPage() = default;

void CVelStimulusPage::showEvent(QShowEvent* event) {
    CSheetPage::showEvent(event);
    // Checked when the page first opens, as the mask page checks its mask.
    if (!m_openChecked) {
        m_openChecked = true;
        if (ReplaceValuesPagesCannotUse(m_data)) {
            Ask(kInvalidEyeDiagramData, MessageIcon::Warning, MessageButtons::Ok);
            ShowData();
        }
    }
}

void CVelStimulusPage::BuildControls() {
    auto* page = new QVBoxLayout(this);

    // The named stimuli kept beside the module's settings.
    auto* names = new QHBoxLayout;
    auto* nameList = Make<QComboBox>(id::kNameList, this);
    names->addWidget(Label(0, tr("Stimulus Name:"), this, nameList));
    names->addWidget(nameList, 1);
    auto* nameEdit = Make<QLineEdit>(id::kNameEdit, this);
    nameEdit->hide();
    names->addWidget(nameEdit, 1);
    for (const auto& [controlId, text] :
         {std::pair{id::kOpen, tr("Open...")}, std::pair{id::kSave, tr("Save")},
          std::pair{id::kRemove, tr("Remove")}, std::pair{id::kNew, tr("New")}}) {
        names->addWidget(Make<QPushButton>(controlId, this, text));
    }
    m_nameList = nameList;
    m_nameEdit = nameEdit;
    page->addLayout(names);

    auto* patternGroup = new QGroupBox(tr("Bit pattern"), this);
    auto* patternLayout = new QVBoxLayout(patternGroup);
    auto* kinds = new QHBoxLayout;
    m_sequence = Make<QComboBox>(id::kSequence, patternGroup);
    for (const SequenceTypeName& entry : kStimulusSequenceList) {
        m_sequence->addItem(Text(entry.name), entry.code);
    }
    kinds->addWidget(Label(0, tr("Se&quence:"), patternGroup, m_sequence));
    kinds->addWidget(m_sequence);
    m_bitOrder = Make<QComboBox>(id::kBitOrder, patternGroup);
    m_bitOrder->addItems({tr("Normal"), tr("Reversed")});
    kinds->addWidget(Label(id::kBitOrderLabel, tr("&Bit order:"), patternGroup, m_bitOrder));
    kinds->addWidget(m_bitOrder);
    m_level = Make<QComboBox>(id::kLevel, patternGroup);
    m_level->addItems({tr("High"), tr("Low")});
    m_levelLabel = Label(id::kLevelLabel, tr("&Initial state:"), patternGroup, m_level);
    kinds->addWidget(m_levelLabel);
    kinds->addWidget(m_level);
    kinds->addStretch();
    auto* load = Make<QPushButton>(id::kLoad, patternGroup, tr("Load..."));
    auto* saveBits = Make<QPushButton>(id::kSaveBits, patternGroup, tr("Save..."));
    kinds->addWidget(load);
    kinds->addWidget(saveBits);
    patternLayout->addLayout(kinds);
    auto* placeholder = new QWidget(patternGroup);
    placeholder->setObjectName(ControlObjectName(id::kPattern));
    placeholder->setMinimumHeight(70);
    patternLayout->addWidget(placeholder);
    m_pattern = new CBitPatternCtrl(patternGroup);
    m_pattern->AttachToDlgItem(id::kPattern, this);
    m_fileName = Make<QLineEdit>(id::kFileName, patternGroup);
    m_fileName->setReadOnly(true);
    patternLayout->addWidget(m_fileName);
    page->addWidget(patternGroup);

    auto* lower = new QHBoxLayout;
    auto* stimulus = Make<QGroupBox>(id::kStimulusGroup, this, tr("Stimulus"));
    auto* grid = new QGridLayout(stimulus);
    m_period = Make<QLineEdit>(id::kPeriod, stimulus);
    m_periodLabel = Label(id::kPeriodLabel, tr("&Bit interval:"), stimulus, m_period);
    grid->addWidget(m_periodLabel, 0, 0);
    grid->addWidget(m_period, 0, 1);
    grid->addWidget(Label(id::kPeriodUnit, tr("ns"), stimulus), 0, 3);
    m_duty = Make<QLineEdit>(id::kDuty, stimulus);
    m_dutySpin = Spin(id::kDutySpin, stimulus, "DUTYCYCLE");
    grid->addWidget(Label(id::kDutyLabel, tr("&Duty cycle:"), stimulus, m_duty), 1, 0);
    grid->addWidget(m_duty, 1, 1);
    grid->addWidget(m_dutySpin, 1, 2);
    grid->addWidget(Label(id::kDutyUnit, tr("% high"), stimulus), 1, 3);
    m_repetitions = Make<QLineEdit>(id::kRepetitions, stimulus);
    m_repetitionsSpin = Spin(id::kRepetitionsSpin, stimulus, "CYCLECOUNT");
    m_frequency = Make<QLineEdit>(id::kFrequency, stimulus);
    m_repetitionsLabel =
        Label(id::kRepetitionsLabel, tr("Sequence &repetitions:"), stimulus, m_repetitions);
    grid->addWidget(m_repetitionsLabel, 2, 0);
    grid->addWidget(m_repetitions, 2, 1);
    grid->addWidget(m_repetitionsSpin, 2, 2);
    grid->addWidget(m_frequency, 3, 1);
    grid->addWidget(Label(id::kFrequencyUnit, tr("MHz"), stimulus), 3, 3);
    m_highTime = Make<QLineEdit>(id::kHighTime, stimulus);
    grid->addWidget(Label(id::kHighLabel, tr("&High time:"), stimulus, m_highTime), 4, 0);
    grid->addWidget(m_highTime, 4, 1);
    grid->addWidget(Label(id::kHighUnit, tr("ns"), stimulus), 4, 3);
    m_lowTime = Make<QLineEdit>(id::kLowTime, stimulus);
    grid->addWidget(Label(id::kLowLabel, tr("&Low time:"), stimulus, m_lowTime), 5, 0);
    grid->addWidget(m_lowTime, 5, 1);
    grid->addWidget(Label(id::kLowUnit, tr("ns"), stimulus), 5, 3);
    lower->addWidget(stimulus);

    auto* jitter = Make<QGroupBox>(id::kJitterGroup, this, tr("Random jitter"));
    auto* jitterGrid = new QGridLayout(jitter);
    m_jitter = Make<QLineEdit>(id::kJitter, jitter);
    m_jitterLabel = Label(id::kJitterLabel, tr("Amount:"), jitter, m_jitter);
    m_jitterUnit = Make<QComboBox>(id::kJitterUnit, jitter);
    m_jitterUnit->addItems({tr("% of interval"), tr("ns")});
    jitterGrid->addWidget(m_jitterLabel, 0, 0);
    jitterGrid->addWidget(m_jitter, 0, 1);
    jitterGrid->addWidget(m_jitterUnit, 0, 2);
    m_distribution = Make<QComboBox>(id::kDistribution, jitter);
    m_distribution->addItems({tr("Gaussian (1 Sigma)"), tr("Uniform"), tr("Sine")});
    jitterGrid->addWidget(
        Label(id::kDistributionLabel, tr("Distribution:"), jitter, m_distribution), 1, 0);
    jitterGrid->addWidget(m_distribution, 1, 1, 1, 2);
    m_repeatJitter = Make<QCheckBox>(
        id::kRepeatJitter, jitter,
        tr("&Generate the same random numbers as were used in the last jitter simulation"));
    jitterGrid->addWidget(m_repeatJitter, 2, 0, 1, 3);
    lower->addWidget(jitter);
    page->addLayout(lower);
    page->addStretch();

    connect(m_sequence, &QComboBox::currentIndexChanged, this,
            &CVelStimulusPage::OnSequenceChanged);
    connect(m_level, &QComboBox::currentIndexChanged, this, [this](int index) {
        if (!m_filling && index >= 0) {
            m_data.SetInitState(InitStateOfLevel(index));
            RebuildPattern();
        }
    });
    connect(m_bitOrder, &QComboBox::currentIndexChanged, this, [this] {
        if (!m_filling) {
            RebuildPattern();
        }
    });
    connect(m_jitterUnit, &QComboBox::currentIndexChanged, this, [this] {
        if (!m_filling) {
            RefreshFields();
        }
    });
    connect(m_distribution, &QComboBox::currentIndexChanged, this,
            &CVelStimulusPage::OnDistributionChanged);
    connect(m_repeatJitter, &QCheckBox::toggled, this, [this](bool repeat) {
        if (!m_filling) {
            m_data.SetJitterRepeatable(repeat);
            m_modified = true;
        }
    });
    for (QLineEdit* field :
         {m_period, m_duty, m_repetitions, m_frequency, m_highTime, m_lowTime, m_jitter}) {
        field->setMinimumWidth(field->fontMetrics().horizontalAdvance(QStringLiteral("0000.000")) +
                               12);
        connect(field, &QLineEdit::editingFinished, this, [this, field] { CommitField(field); });
    }
    const auto spinInto = [this](QSpinBox* spin, QLineEdit* field) {
        connect(spin, &QSpinBox::valueChanged, this, [this, field](int value) {
            if (!m_filling) {
                field->setText(QString::number(value));
                CommitField(field);
            }
        });
    };
    spinInto(m_dutySpin, m_duty);
    spinInto(m_repetitionsSpin, m_repetitions);
    connect(m_nameList, &QComboBox::activated, this, [this](int index) {
        if (index >= 0) {
            OpenNamed(m_nameList->itemText(index));
        }
    });
    connect(FindControl<QPushButton>(this, id::kOpen), &QPushButton::clicked, this,
            &CVelStimulusPage::OnOpenFile);
    connect(FindControl<QPushButton>(this, id::kSave), &QPushButton::clicked, this,
            [this] { SaveNamed(); });
    connect(FindControl<QPushButton>(this, id::kRemove), &QPushButton::clicked, this,
            &CVelStimulusPage::OnRemoveNamed);
    connect(FindControl<QPushButton>(this, id::kNew), &QPushButton::clicked, this, [this] {
        m_nameList->hide();
        m_nameEdit->clear();
        m_nameEdit->show();
        m_nameEdit->setFocus();
    });
    FillNameList(QString());
    connect(load, &QPushButton::clicked, this, &CVelStimulusPage::OnLoad);
    connect(saveBits, &QPushButton::clicked, this, &CVelStimulusPage::OnSaveBits);
}

void CVelStimulusPage::ShowData() {
    m_filling = true;
    const int kind = m_data.GetSeqType();
    // Kind 7 is generated as a pseudo-random sequence; 5 and 6 keep their
    // bits, as a drawn sequence does. Neither changes the data until the
    // user picks a kind, and the pattern behaves as the kind the list shows.
    int position = PositionOfKind(kind);
    if (position == 0) {
        position = PositionOfKind(kind == seq::kConstructionDefault ? seq::kPrbs : seq::kCustom);
    }
    m_sequence->setCurrentIndex(position - 1);
    m_level->setCurrentIndex(LevelOfInitState(m_data.GetInitState()));
    m_repeatJitter->setChecked(m_data.GetJitterRepeatable());
    const int jitterType = m_data.GetJitterType();
    m_distribution->setCurrentIndex(
        jitterType >= 0 && jitterType < m_distribution->count() ? jitterType : 0);
    ApplyKind(KindAtPosition(position), position);
    m_pattern->SetPattern(m_data.Bits().data(), m_data.GetBitCount());
    RefreshFields();
    m_filling = false;
    OnDistributionChanged(m_distribution->currentIndex());
    m_modified = false;
}

int CVelStimulusPage::SelectedKind() const {
    return KindAtPosition(m_sequence->currentIndex() + 1);
}

void CVelStimulusPage::OnSequenceChanged(int index) {
    if (m_filling || index < 0) {
        return;
    }
    const int position = index + 1;
    m_data.SetSeqType(KindAtPosition(position));
    const bool wasFilling = m_filling;
    m_filling = true;
    ApplyKind(m_data.GetSeqType(), position);
    m_filling = wasFilling;
    RebuildPattern();
    m_fileName->clear();
}

void CVelStimulusPage::ApplyKind(int kind, int position) {
    const bool oscillator = kind == seq::kToggling;
    m_jitterUnit->setItemText(0, oscillator ? tr("% of period") : tr("% of interval"));
    m_periodLabel->setText(oscillator ? tr("&Period:") : tr("&Bit interval:"));
    m_repetitionsLabel->setText(oscillator ? tr("&Frequency:") : tr("Sequence &repetitions:"));
    m_repetitionsLabel->setBuddy(oscillator ? m_frequency : m_repetitions);
    for (const int controlId : ControlsWithVisibility()) {
        if (QWidget* control = FindControl<QWidget>(this, controlId)) {
            control->setVisible(IsShown(controlId, position));
        }
    }
    const std::optional<KindBehaviour> behaviour = BehaviourOf(kind);
    if (!behaviour) {
        return;
    }
    m_pattern->SetReadOnly(behaviour->readOnly);
    m_pattern->SetPaintMode(behaviour->paintMode, m_data.GetCycleCount());
    if (behaviour->levelLabel) {
        const int selected = m_level->currentIndex();
        m_levelLabel->setText(Text(*behaviour->levelLabel));
        m_level->setItemText(0, Text(behaviour->levelItems[0]));
        m_level->setItemText(1, Text(behaviour->levelItems[1]));
        m_level->setCurrentIndex(selected);
    }
    m_pattern->update();
}

void CVelStimulusPage::RebuildPattern() {
    const BitVector bits = ShownPattern(SelectedKind(), std::max(0, m_level->currentIndex()),
                                        m_bitOrder->currentIndex() == 1, m_data);
    m_pattern->SetPattern(bits.data(), static_cast<int>(bits.size()));
    m_pattern->update();
    m_modified = true;
}

double CVelStimulusPage::JitterInNs(double shown) const {
    return m_jitterUnit->currentIndex() == 0 ? shown * m_data.GetPeriod() * 0.01 : shown;
}

void CVelStimulusPage::RefreshFields() {
    const bool wasFilling = m_filling;
    m_filling = true;
    const double period = m_data.GetPeriod();
    const double duty = m_data.GetDutyCycle();
    m_period->setText(QString::fromStdString(FormatField(period)));
    m_duty->setText(QString::fromStdString(FormatField(duty)));
    // The spin box shows whole percent; a duty cycle that is no number shows as its minimum.
    m_dutySpin->setValue(
        static_cast<int>(std::isfinite(duty) ? std::clamp(duty, 0.0, 100.0) + 0.5 : 0.0));
    m_repetitions->setText(QString::number(m_data.GetCycleCount()));
    m_repetitionsSpin->setValue(m_data.GetCycleCount());
    if (period > 0) {
        m_frequency->setText(QString::fromStdString(FormatField(FrequencyMHz(period))));
        m_highTime->setText(QString::fromStdString(FormatField(HighTimeNs(period, duty))));
        m_lowTime->setText(QString::fromStdString(FormatField(period - HighTimeNs(period, duty))));
    }
    const double jitter = m_data.GetMaxJitter();
    const bool percent = m_jitterUnit->currentIndex() == 0;
    m_jitter->setText(QString::fromStdString(
        FormatField(percent && period > 0 ? jitter * 100.0 / period : jitter)));
    m_filling = wasFilling;
}

bool CVelStimulusPage::CommitField(QLineEdit* field) {
    if (m_filling || field->isHidden()) {
        return true;
    }
    const std::optional<double> typed = ParseField(field->text().toStdString());
    const double value = typed.value_or(-1.0e300);
    const double period = m_data.GetPeriod();
    const bool oscillator = SelectedKind() == seq::kToggling;
    std::optional<std::string_view> problem;
    // What the accepted value changes, and whether it differs from what is
    // shown now (an untouched field marks nothing).
    std::function<void()> store;
    switch (ControlIdOf(field)) {
        case id::kPeriod:
            problem = CheckTyped(StimulusRuleOf("PERIOD"), value, !oscillator);
            store = [&] { m_data.SetPeriod(value); };
            break;
        case id::kDuty:
            problem = CheckTyped(StimulusRuleOf("DUTYCYCLE"), value);
            store = [&] { m_data.SetDutyCycle(value); };
            break;
        case id::kRepetitions:
            problem = CheckTyped(StimulusRuleOf("CYCLECOUNT"), value);
            store = [&] { OnRepetitionsChanged(static_cast<int>(value)); };
            break;
        case id::kFrequency:
            problem = CheckTyped(StimulusRuleOf("PERIOD"), value > 0 ? 1000.0 / value : -1.0);
            store = [&] { m_data.SetPeriod(1000.0 / value); };
            break;
        case id::kHighTime:
            problem = CheckTyped(StimulusRuleOf("DUTYCYCLE"), value / period * 100.0);
            store = [&] { m_data.SetDutyCycle(value / period * 100.0); };
            break;
        case id::kLowTime:
            problem = CheckTyped(StimulusRuleOf("DUTYCYCLE"), (period - value) / period * 100.0);
            store = [&] { m_data.SetDutyCycle((period - value) / period * 100.0); };
            break;
        case id::kJitter:
            problem = CheckMaxJitterInInterval(JitterInNs(value), period);
            store = [&] { m_data.SetMaxJitter(JitterInNs(value)); };
            break;
        default:
            return true;
    }
    if (problem) {
        RefuseField(*field, *problem, kCaption, m_filling);
        return false;
    }
    RefreshFields();
    if (ParseField(field->text().toStdString()) != typed) {
        store();
        m_modified = true;
        RefreshFields();
    }
    return true;
}

bool CVelStimulusPage::CommitAllFields() {
    for (QLineEdit* field :
         {m_period, m_duty, m_repetitions, m_frequency, m_highTime, m_lowTime, m_jitter}) {
        if (!CommitField(field)) {
            return false;
        }
    }
    return true;
}

void CVelStimulusPage::OnRepetitionsChanged(int count) {
    m_data.SetCycleCount(count);
    const int kind = SelectedKind();
    if (kind == seq::kPulse) {
        m_pattern->SetPaintMode(3, count);
        m_pattern->update();
    } else if (kind == seq::k8b10b) {
        // An 8B/10B sequence is as long as ten bits per repetition.
        RebuildPattern();
    }
}

void CVelStimulusPage::OnDistributionChanged(int index) {
    m_jitterLabel->setText(index == 1 ? tr("Amount (p-p):") : tr("Amount:"));
    if (!m_filling) {
        m_data.SetJitterType(index);
        m_modified = true;
    }
}

void CVelStimulusPage::OnLoad() {
    QtFileChooser ownDialog(this);
    IFileChooser* chooser = InstalledFileChooser();
    FileQuery query;
    query.defaultExtension = std::string(kBitFileExtension);
    query.filter = std::string(kBitFileFilter);
    query.hideReadOnly = true;
    const std::optional<ChosenFile> chosen =
        (chooser != nullptr ? chooser : &ownDialog)->ChooseOpenFile(query);
    if (!chosen) {
        return;
    }
    const std::string path = chosen->Path().string();
    const std::optional<BitVector> bits = LoadPatternFile(path);
    if (!bits) {
        return;
    }
    m_pattern->SetPattern(bits->data(), static_cast<int>(bits->size()));
    m_pattern->SetCaretIndex(0);
    m_pattern->EnsureCaretVisible();
    m_pattern->update();
    m_fileName->setText(QString::fromStdString(path));
    m_modified = true;
}

void CVelStimulusPage::OnSaveBits() {
    QtFileChooser ownDialog(this);
    IFileChooser* chooser = InstalledFileChooser();
    FileQuery query;
    query.defaultExtension = std::string(kBitFileExtension);
    query.filter = std::string(kBitFileFilter);
    const std::optional<ChosenFile> chosen =
        (chooser != nullptr ? chooser : &ownDialog)->ChooseSaveFile(query);
    if (!chosen) {
        return;
    }
    const auto data = m_pattern->m_bits.Data();
    if (SavePatternFile(chosen->Path().string(), BitVector(data.begin(), data.end()))) {
        m_fileName->setText(QString::fromStdString(chosen->Path().string()));
    }
}

QString CVelStimulusPage::CurrentName() const {
    return (m_nameEdit->isHidden() ? m_nameList->currentText() : m_nameEdit->text()).trimmed();
}

void CVelStimulusPage::FillNameList(const QString& selected) {
    m_nameList->clear();
    for (const std::string& name : stimulus_library::Names()) {
        m_nameList->addItem(QString::fromStdString(name));
    }
    m_nameList->setCurrentIndex(m_nameList->findText(selected));
    m_nameEdit->hide();
    m_nameList->show();
}

void CVelStimulusPage::OpenNamed(const QString& name) {
    if (stimulus_library::Open(m_data, name.toStdString())) {
        ShowData();
        m_modified = true;
    }
}

bool CVelStimulusPage::SaveNamed() {
    const QString name = CurrentName();
    if (name.isEmpty() || !CommitAllFields()) {
        return false;
    }
    StoreToData();
    if (!stimulus_library::Save(m_data, name.toStdString())) {
        return false;
    }
    FillNameList(name);
    return true;
}

void CVelStimulusPage::OnRemoveNamed() {
    const QString name = m_nameList->currentText();
    if (!name.isEmpty() && stimulus_library::Remove(name.toStdString())) {
        FillNameList(QString());
    }
}

void CVelStimulusPage::OnOpenFile() {
    QtFileChooser ownDialog(this);
    IFileChooser* chooser = InstalledFileChooser();
    FileQuery query;
    query.defaultExtension = "ini";
    query.filter = "Stimulus file (*.ini)|*.ini|All Files (*.*)|*.*|";
    const std::optional<ChosenFile> chosen =
        (chooser != nullptr ? chooser : &ownDialog)->ChooseOpenFile(query);
    if (!chosen) {
        return;
    }
    // Invalid data is told and replaced by the defaults, as every load does.
    m_data.Load(chosen->Path().string().c_str(), true);
    ShowData();
    m_modified = true;
}

bool CVelStimulusPage::IsModified() const {
    const auto shown = m_pattern->m_bits.Data();
    return m_modified ||
           !std::equal(shown.begin(), shown.end(), m_openedBits.begin(), m_openedBits.end());
}

void CVelStimulusPage::StoreToData() {
    const auto shown = m_pattern->m_bits.Data();
    m_data.SetBitVector(BitVector(shown.begin(), shown.end()));
    if (!m_level->isHidden()) {
        m_data.SetInitState(InitStateOfLevel(m_level->currentIndex()));
    }
}

bool CVelStimulusPage::OnKillActive() {
    return CommitAllFields();
}

bool CVelStimulusPage::OnApply() {
    if (!IsModified()) {
        return true;
    }
    // Saving keeps the stimulus under its name; Yes and No alike hand the
    // edits to the sheet, which gives them to the caller. Only Cancel keeps
    // the page open.
    const MessageAnswer answer =
        Ask(kApplyQuestion, MessageIcon::Warning, MessageButtons::YesNoCancel);
    if (answer != MessageAnswer::Yes && answer != MessageAnswer::No) {
        return false;
    }
    StoreToData();
    // After Yes applying succeeds only if saving the named stimulus worked;
    // an unnamed one has nowhere to be kept but the caller.
    return answer == MessageAnswer::No || CurrentName().isEmpty() || SaveNamed();
}

bool CVelStimulusPage::OnQueryCancel() {
    return !IsModified() || Ask(kCancelQuestion, MessageIcon::Warning, MessageButtons::OkCancel) ==
                                MessageAnswer::Ok;
}

}  // namespace kv::ui
