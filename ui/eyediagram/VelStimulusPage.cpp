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

#include "core/stimulus/SequenceType.h"
#include "core/stimulus/StimulusRules.h"
#include "kvcomctl/EyeDiagramControlIds.h"
#include "ui/bitpattern/BitPatternCtrl.h"
#include "ui/ports/QtFileChooser.h"
#include "ui/shared/ControlIds.h"

namespace kv::ui {
namespace {

namespace id = kvcomctl_ids::stimulus_edit;

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

void SetText(QLineEdit& field, const QString& text) {
    if (field.text() != text) {  // leaves the cursor of an unchanged field alone
        field.setText(text);
    }
}

}  // namespace

CVelStimulusPage::CVelStimulusPage(CStimulusData& data, int pageArgB) : m_model(data) {
    (void)pageArgB;
    setObjectName(QStringLiteral("page4018"));
    BuildControls();
    ConnectControls();
    ShowModel();
}

CVelStimulusPage::~CVelStimulusPage() = default;

void CVelStimulusPage::showEvent(QShowEvent* event) {
    CSheetPage::showEvent(event);
    // Checked when the page first opens, as the mask page checks its mask.
    if (!m_openChecked) {
        m_openChecked = true;
        if (m_model.CheckOnOpen()) {
            ShowModel();
        }
    }
}

void CVelStimulusPage::BuildControls() {
    auto* page = new QVBoxLayout(this);
    const auto field = [this](int controlId, QWidget* parent) {
        auto* edit = Make<QLineEdit>(controlId, parent);
        edit->setMinimumWidth(edit->fontMetrics().horizontalAdvance(QStringLiteral("0000.000")) +
                              12);
        m_fields[controlId] = edit;
        return edit;
    };

    // The named stimuli kept beside the module's settings.
    auto* names = new QHBoxLayout;
    m_nameList = Make<QComboBox>(id::kNameList, this);
    names->addWidget(Label(0, tr("Stimulus Name:"), this, m_nameList));
    names->addWidget(m_nameList, 1);
    m_nameEdit = Make<QLineEdit>(id::kNameEdit, this);
    names->addWidget(m_nameEdit, 1);
    for (const auto& [controlId, text] :
         {std::pair{id::kOpen, tr("Open...")}, std::pair{id::kSave, tr("Save")},
          std::pair{id::kRemove, tr("Remove")}, std::pair{id::kNew, tr("New")}}) {
        names->addWidget(Make<QPushButton>(controlId, this, text));
    }
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
    m_level->addItems({QString(), QString()});
    m_levelLabel = Label(id::kLevelLabel, QString(), patternGroup, m_level);
    kinds->addWidget(m_levelLabel);
    kinds->addWidget(m_level);
    kinds->addStretch();
    kinds->addWidget(Make<QPushButton>(id::kLoad, patternGroup, tr("Load...")));
    kinds->addWidget(Make<QPushButton>(id::kSaveBits, patternGroup, tr("Save...")));
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
    QLineEdit* period = field(id::kPeriod, stimulus);
    m_periodLabel = Label(id::kPeriodLabel, QString(), stimulus, period);
    grid->addWidget(m_periodLabel, 0, 0);
    grid->addWidget(period, 0, 1);
    grid->addWidget(Label(id::kPeriodUnit, tr("ns"), stimulus), 0, 3);
    QLineEdit* duty = field(id::kDuty, stimulus);
    m_dutySpin = Spin(id::kDutySpin, stimulus, "DUTYCYCLE");
    grid->addWidget(Label(id::kDutyLabel, tr("&Duty cycle:"), stimulus, duty), 1, 0);
    grid->addWidget(duty, 1, 1);
    grid->addWidget(m_dutySpin, 1, 2);
    grid->addWidget(Label(id::kDutyUnit, tr("% high"), stimulus), 1, 3);
    m_repetitionsLabel = Label(id::kRepetitionsLabel, QString(), stimulus);
    m_repetitionsSpin = Spin(id::kRepetitionsSpin, stimulus, "CYCLECOUNT");
    grid->addWidget(m_repetitionsLabel, 2, 0);
    grid->addWidget(field(id::kRepetitions, stimulus), 2, 1);
    grid->addWidget(m_repetitionsSpin, 2, 2);
    grid->addWidget(field(id::kFrequency, stimulus), 3, 1);
    grid->addWidget(Label(id::kFrequencyUnit, tr("MHz"), stimulus), 3, 3);
    QLineEdit* high = field(id::kHighTime, stimulus);
    grid->addWidget(Label(id::kHighLabel, tr("&High time:"), stimulus, high), 4, 0);
    grid->addWidget(high, 4, 1);
    grid->addWidget(Label(id::kHighUnit, tr("ns"), stimulus), 4, 3);
    QLineEdit* low = field(id::kLowTime, stimulus);
    grid->addWidget(Label(id::kLowLabel, tr("&Low time:"), stimulus, low), 5, 0);
    grid->addWidget(low, 5, 1);
    grid->addWidget(Label(id::kLowUnit, tr("ns"), stimulus), 5, 3);
    lower->addWidget(stimulus);

    auto* jitter = Make<QGroupBox>(id::kJitterGroup, this, tr("Random jitter"));
    auto* jitterGrid = new QGridLayout(jitter);
    QLineEdit* amount = field(id::kJitter, jitter);
    m_jitterLabel = Label(id::kJitterLabel, QString(), jitter, amount);
    m_jitterUnit = Make<QComboBox>(id::kJitterUnit, jitter);
    m_jitterUnit->addItems({QString(), QString()});
    jitterGrid->addWidget(m_jitterLabel, 0, 0);
    jitterGrid->addWidget(amount, 0, 1);
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
}

void CVelStimulusPage::ConnectControls() {
    const auto onIndex = [this](QComboBox* list, void (StimulusEditPageModel::*set)(int)) {
        connect(list, &QComboBox::currentIndexChanged, this,
                [this, set](int index) { Forward([&] { (m_model.*set)(index); }); });
    };
    connect(m_sequence, &QComboBox::currentIndexChanged, this, [this](int index) {
        if (index >= 0) {
            Forward([&] { m_model.ChoosePosition(index + 1); });
        }
    });
    onIndex(m_level, &StimulusEditPageModel::SetLevelIndex);
    onIndex(m_bitOrder, &StimulusEditPageModel::SetBitOrderIndex);
    onIndex(m_jitterUnit, &StimulusEditPageModel::SetJitterUnitIndex);
    onIndex(m_distribution, &StimulusEditPageModel::SetDistributionIndex);
    connect(m_repeatJitter, &QCheckBox::toggled, this,
            [this](bool repeat) { Forward([&] { m_model.SetRepeatJitter(repeat); }); });
    for (const auto& [controlId, field] : m_fields) {
        const int fieldId = controlId;
        connect(field, &QLineEdit::textChanged, this, [this, fieldId](const QString& text) {
            if (!m_filling) {
                m_model.Type(fieldId, text.toStdString());
            }
        });
        connect(field, &QLineEdit::editingFinished, this, [this, fieldId] {
            bool accepted = true;
            Forward([&] { accepted = m_model.Commit(fieldId); });
            if (!accepted) {
                ReturnTo(fieldId);
            }
        });
    }
    for (const auto& [spin, fieldId] :
         {std::pair{m_dutySpin, id::kDuty}, std::pair{m_repetitionsSpin, id::kRepetitions}}) {
        connect(spin, &QSpinBox::valueChanged, this, [this, fieldId](int value) {
            bool accepted = true;
            Forward([&] { accepted = m_model.Spin(fieldId, value); });
            if (!accepted) {
                ReturnTo(fieldId);
            }
        });
    }
    connect(m_nameList, &QComboBox::activated, this, [this](int index) {
        if (index >= 0) {
            Forward([&] { m_model.OpenNamed(m_nameList->itemText(index).toStdString()); });
        }
    });
    connect(m_nameEdit, &QLineEdit::textChanged, this, [this](const QString& text) {
        if (!m_filling) {
            m_model.Type(id::kNameEdit, text.toStdString());
        }
    });
    const auto onClick = [this](int controlId, auto action) {
        connect(FindControl<QPushButton>(this, controlId), &QPushButton::clicked, this,
                [this, action] { Forward([&] { action(); }); });
    };
    onClick(id::kOpen, [this] { WithChooser([this](IFileChooser& c) { m_model.OpenFile(c); }); });
    onClick(id::kSave, [this] { m_model.SaveNamed(); });
    onClick(id::kRemove, [this] { m_model.RemoveNamed(); });
    connect(FindControl<QPushButton>(this, id::kNew), &QPushButton::clicked, this, [this] {
        Forward([&] { m_model.StartNewName(); });
        m_nameEdit->setFocus();
    });
    onClick(id::kSaveBits,
            [this] { WithChooser([this](IFileChooser& c) { m_model.SaveBits(c); }); });
    connect(FindControl<QPushButton>(this, id::kLoad), &QPushButton::clicked, this, [this] {
        bool loaded = false;
        Forward([&] { WithChooser([&](IFileChooser& c) { loaded = m_model.LoadBits(c); }); });
        if (loaded) {
            m_pattern->SetCaretIndex(0);
            m_pattern->EnsureCaretVisible();
            m_pattern->update();
        }
    });
}

template <class Change>
void CVelStimulusPage::Forward(Change change) {
    if (!m_filling) {
        SyncBits();
        change();
        ShowModel();
    }
}

template <class Use>
void CVelStimulusPage::WithChooser(Use use) {
    QtFileChooser ownDialog(this);
    IFileChooser* chooser = InstalledFileChooser();
    use(chooser != nullptr ? *chooser : ownDialog);
}

void CVelStimulusPage::ShowModel() {
    m_filling = true;
    QStringList names;
    for (const std::string& name : m_model.Names()) {
        names << QString::fromStdString(name);
    }
    QStringList listed;
    for (int i = 0; i < m_nameList->count(); ++i) {
        listed << m_nameList->itemText(i);
    }
    if (listed != names) {
        m_nameList->clear();
        m_nameList->addItems(names);
    }
    m_nameList->setCurrentIndex(
        m_nameList->findText(QString::fromStdString(m_model.SelectedName())));
    if (m_model.NamingNew() && m_nameEdit->isHidden()) {
        m_nameEdit->clear();
    }
    m_nameList->setVisible(m_model.IsShown(id::kNameList));
    m_nameEdit->setVisible(m_model.IsShown(id::kNameEdit));

    m_sequence->setCurrentIndex(m_model.Position() - 1);
    m_bitOrder->setCurrentIndex(m_model.BitOrderIndex());
    m_levelLabel->setText(Text(m_model.Label(id::kLevelLabel)));
    for (int item = 0; item < 2; ++item) {
        m_level->setItemText(item, Text(m_model.ItemText(id::kLevel, item)));
        m_jitterUnit->setItemText(item, Text(m_model.ItemText(id::kJitterUnit, item)));
    }
    m_level->setCurrentIndex(m_model.LevelIndex());
    m_jitterUnit->setCurrentIndex(m_model.JitterUnitIndex());
    m_distribution->setCurrentIndex(m_model.DistributionIndex());
    m_repeatJitter->setChecked(m_model.RepeatJitter());
    m_periodLabel->setText(Text(m_model.Label(id::kPeriodLabel)));
    m_jitterLabel->setText(Text(m_model.Label(id::kJitterLabel)));
    m_repetitionsLabel->setText(Text(m_model.Label(id::kRepetitionsLabel)));
    m_repetitionsLabel->setBuddy(
        m_fields[m_model.IsShown(id::kFrequency) ? id::kFrequency : id::kRepetitions]);
    for (const int controlId : StimulusEditPageModel::ControlsWithVisibility()) {
        if (QWidget* control = FindControl<QWidget>(this, controlId)) {
            control->setVisible(m_model.IsShown(controlId));
        }
    }

    for (const auto& [controlId, field] : m_fields) {
        SetText(*field, QString::fromStdString(m_model.Text(controlId)));
    }
    m_dutySpin->setValue(m_model.SpinValue(id::kDutySpin));
    m_repetitionsSpin->setValue(m_model.SpinValue(id::kRepetitionsSpin));
    SetText(*m_fileName, QString::fromStdString(m_model.FileName()));

    if (m_shownLook != m_model.LookRevision()) {
        m_shownLook = m_model.LookRevision();
        m_pattern->SetReadOnly(m_model.PatternReadOnly());
        m_pattern->SetPaintMode(m_model.PaintMode(), m_model.PaintRepetitions());
        m_pattern->update();
    }
    if (m_shownBits != m_model.BitsRevision()) {
        m_shownBits = m_model.BitsRevision();
        m_pattern->SetPattern(m_model.Bits().data(), static_cast<int>(m_model.Bits().size()));
        m_pattern->update();
    }
    m_filling = false;
}

void CVelStimulusPage::SyncBits() {
    const auto shown = m_pattern->m_bits.Data();
    if (!std::equal(shown.begin(), shown.end(), m_model.Bits().begin(), m_model.Bits().end())) {
        m_model.SetBits(BitVector(shown.begin(), shown.end()));
    }
}

bool CVelStimulusPage::OnKillActive() {
    SyncBits();
    const std::optional<int> refused = m_model.CommitAll();
    ShowModel();
    if (refused) {
        ReturnTo(*refused);
    }
    return !refused;
}

bool CVelStimulusPage::OnApply() {
    SyncBits();
    const bool applied = m_model.Apply();
    ShowModel();
    return applied;
}

bool CVelStimulusPage::OnQueryCancel() {
    SyncBits();
    return m_model.QueryCancel();
}

}  // namespace kv::ui
