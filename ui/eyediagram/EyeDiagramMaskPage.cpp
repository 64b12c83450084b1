#include "ui/eyediagram/EyeDiagramMaskPage.h"

#include <QComboBox>
#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/eyediagram/MaskFields.h"
#include "core/eyediagram/MaskOutline.h"
#include "core/eyediagram/StimulusEditRules.h"
#include "core/ports/MessagePort.h"
#include "core/settings/ProfileStore.h"
#include "core/stimulus/EyeMask.h"
#include "core/stimulus/StimulusData.h"
#include "core/stimulus/StimulusRules.h"
#include "kvcomctl/EyeDiagramControlIds.h"
#include "ui/chart/ChartControl.h"
#include "ui/eyediagram/PageCharts.h"
#include "ui/shared/ControlIds.h"

namespace kv::ui {
namespace {

namespace id = kvcomctl_ids::eye_mask;
using mask_page::MaskField;

QString Text(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

MaskLibrary LoadLibrary() {
    const auto store = OpenProfileStore(ModuleProfile());
    return store ? MaskLibrary::Load(*store) : MaskLibrary{};
}

}  // namespace

CEyeDiagramMaskPage::CEyeDiagramMaskPage(CStimulusData& data)
    : m_data(data), m_library(LoadLibrary()) {
    setObjectName(QStringLiteral("page596"));
    auto* page = new QHBoxLayout(this);
    auto* left = new QVBoxLayout;
    auto* numbers = new QGroupBox(tr("Mask"), this);
    auto* grid = new QGridLayout(numbers);
    int row = 0;
    for (const MaskField& field : mask_page::MaskFields()) {
        auto* edit = new QLineEdit(numbers);
        edit->setObjectName(ControlObjectName(field.controlId));
        auto* label = new QLabel(Text(field.label), numbers);
        label->setBuddy(edit);
        grid->addWidget(label, row % 8, (row / 8) * 2);
        grid->addWidget(edit, row % 8, (row / 8) * 2 + 1);
        m_fields[field.controlId] = edit;
        connect(edit, &QLineEdit::editingFinished, this, [this, edit] { CommitField(edit); });
        connect(edit, &QLineEdit::textChanged, this, [this] {
            if (!m_filling) {
                UpdateDrawing();
            }
        });
        ++row;
    }
    left->addWidget(numbers);

    auto* library = new QGroupBox(tr("Mask library"), this);
    auto* libraryLayout = new QGridLayout(library);
    m_libraryList = new QComboBox(library);
    m_libraryList->setObjectName(ControlObjectName(id::kLibrary));
    m_name = new QLineEdit(library);
    m_name->setObjectName(ControlObjectName(id::kName));
    m_name->setMaxLength(static_cast<int>(sizeof(EYEMASK::MaskName)) - 1);
    auto* saveAs = new QPushButton(tr("Save As..."), library);
    saveAs->setObjectName(ControlObjectName(id::kSaveAs));
    auto* remove = new QPushButton(tr("Delete"), library);
    remove->setObjectName(ControlObjectName(id::kDelete));
    libraryLayout->addWidget(new QLabel(tr("Library mask:"), library), 0, 0);
    libraryLayout->addWidget(m_libraryList, 0, 1);
    libraryLayout->addWidget(remove, 0, 2);
    libraryLayout->addWidget(new QLabel(tr("Name:"), library), 1, 0);
    libraryLayout->addWidget(m_name, 1, 1);
    libraryLayout->addWidget(saveAs, 1, 2);
    left->addWidget(library);
    left->addStretch();
    page->addLayout(left);

    auto* drawing = new QFrame(this);
    drawing->setObjectName(QStringLiteral("maskDrawingArea"));
    drawing->setFrameShape(QFrame::StyledPanel);
    drawing->setMinimumSize(240, 200);
    page->addWidget(drawing, 1);
    m_drawing = MakeMaskChart(drawing);

    connect(m_libraryList, &QComboBox::activated, this, &CEyeDiagramMaskPage::OnLibraryChosen);
    connect(saveAs, &QPushButton::clicked, this, &CEyeDiagramMaskPage::OnSaveAs);
    connect(remove, &QPushButton::clicked, this, &CEyeDiagramMaskPage::OnDelete);
    FillLibraryList();
    ShowMask();
}

void CEyeDiagramMaskPage::showEvent(QShowEvent* event) {
    CSheetPage::showEvent(event);
    // The bit interval may have changed on another page, and the grid steps
    // that end the fitted view depend on the size the chart is shown in.
    UpdateDrawing();
    if (m_openChecked) {
        return;
    }
    // Checked when the page first opens, not when it is made: the sheet makes
    // the page even when it does not show it.
    m_openChecked = true;
    if (!MaskAcceptedOnOpen(m_data.m_mask)) {
        ShowMessage(kMaskInvalidOnOpen, MessageIcon::Warning);
        m_data.m_mask = DefaultEyeMask();
        ShowMask();
    }
}

void CEyeDiagramMaskPage::ShowMask() {
    m_filling = true;
    for (const MaskField& field : mask_page::MaskFields()) {
        m_fields[field.controlId]->setText(
            QString::fromStdString(stimulus_edit::FormatField(ShownValue(field, m_data.m_mask))));
    }
    m_name->setText(Text(MaskName(m_data.m_mask)));
    m_libraryList->setCurrentIndex(m_libraryList->findText(Text(MaskName(m_data.m_mask))));
    m_filling = false;
    UpdateDrawing();
}

void CEyeDiagramMaskPage::UpdateDrawing() {
    // The mask as the fields read now, typed values before they are checked,
    // so the drawing moves with every keystroke.
    EYEMASK shown = m_data.m_mask;
    for (const MaskField& field : mask_page::MaskFields()) {
        if (const std::optional<double> typed =
                stimulus_edit::ParseField(m_fields[field.controlId]->text().toStdString())) {
            mask_page::StoreShownValue(field, shown, *typed);
        }
    }
    ShowMaskOutline(*m_drawing, BuildMaskOutline(shown, m_data.GetPeriod() * 1e-9));
}

bool CEyeDiagramMaskPage::CommitField(QLineEdit* field) {
    if (m_filling) {
        return true;
    }
    const MaskField* maskField = mask_page::FindMaskField(field->objectName().mid(3).toInt());
    if (maskField == nullptr) {
        return true;
    }
    const std::optional<double> typed = stimulus_edit::ParseField(field->text().toStdString());
    const std::string shown = stimulus_edit::FormatField(ShownValue(*maskField, m_data.m_mask));
    if (typed && stimulus_edit::ParseField(shown) == typed) {
        return true;  // untouched: a stored mask may have equal neighbours
    }
    const std::optional<std::string_view> problem =
        typed ? mask_page::CheckMaskField(*maskField, m_data.m_mask, *typed)
              : std::optional<std::string_view>(maskField->rule->message);
    if (problem) {
        RefuseField(*field, *problem, kMessageCaption, m_filling);
        return false;
    }
    mask_page::StoreShownValue(*maskField, m_data.m_mask, *typed);
    return true;
}

bool CEyeDiagramMaskPage::CommitAllFields() {
    for (const MaskField& field : mask_page::MaskFields()) {
        if (!CommitField(m_fields[field.controlId])) {
            return false;
        }
    }
    if (const std::optional<std::string_view> broken = FindMaskOrderError(m_data.m_mask)) {
        ShowMessage(*broken, MessageIcon::Warning);
        return false;
    }
    return true;
}

bool CEyeDiagramMaskPage::OnKillActive() {
    return CommitAllFields();
}

bool CEyeDiagramMaskPage::OnApply() {
    return OfferLibrarySave();
}

bool CEyeDiagramMaskPage::OfferLibrarySave() {
    const EYEMASK* kept = m_library.Find(MaskName(m_data.m_mask));
    if (kept == nullptr || SameMaskNumbers(*kept, m_data.m_mask)) {
        return true;
    }
    switch (
        ShowMessage(kMaskDiffersFromLibrary, MessageIcon::Question, MessageButtons::YesNoCancel)) {
        case MessageAnswer::Yes:
            m_library.Put(m_data.m_mask);
            SaveLibrary();
            return true;
        case MessageAnswer::No:
            return true;
        default:
            return false;
    }
}

void CEyeDiagramMaskPage::OnLibraryChosen(int index) {
    if (index < 0 || !CommitAllFields() || !OfferLibrarySave()) {
        ShowMask();
        return;
    }
    if (const EYEMASK* chosen = m_library.Find(m_libraryList->itemText(index).toStdString())) {
        m_data.m_mask = *chosen;
    }
    ShowMask();
}

void CEyeDiagramMaskPage::OnSaveAs() {
    const std::string name = m_name->text().trimmed().toStdString();
    if (name.empty() || !CommitAllFields()) {
        return;
    }
    SetMaskName(m_data.m_mask, name);
    m_library.Put(m_data.m_mask);
    SaveLibrary();
    FillLibraryList();
    ShowMask();
}

void CEyeDiagramMaskPage::OnDelete() {
    const QString name = m_libraryList->currentText();
    if (name.isEmpty() || !m_library.Remove(name.toStdString())) {
        return;
    }
    SaveLibrary();
    FillLibraryList();
    ShowMask();
}

void CEyeDiagramMaskPage::FillLibraryList() {
    m_libraryList->clear();
    for (const EYEMASK& mask : m_library.Masks()) {
        m_libraryList->addItem(Text(MaskName(mask)));
    }
}

void CEyeDiagramMaskPage::SaveLibrary() {
    const auto store = OpenProfileStore(ModuleProfile());
    if (!store || !m_library.Save(*store)) {
        ShowMessage("Unable to save the mask library.", MessageIcon::Warning);
    }
}

}  // namespace kv::ui
