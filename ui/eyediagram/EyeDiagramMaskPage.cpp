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

#include "kvcomctl/EyeDiagramControlIds.h"
#include "ui/chart/ChartControl.h"
#include "ui/eyediagram/PageCharts.h"
#include "ui/shared/ControlIds.h"

namespace kv::ui {
namespace {

namespace id = kvcomctl_ids::eye_mask;

QString Text(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

CEyeDiagramMaskPage::CEyeDiagramMaskPage(CStimulusData& data) : m_model(data) {
    setObjectName(QStringLiteral("page596"));
    auto* page = new QHBoxLayout(this);
    auto* left = new QVBoxLayout;
    auto* numbers = new QGroupBox(tr("Mask"), this);
    auto* grid = new QGridLayout(numbers);
    int row = 0;
    for (const MaskField& field : MaskPageModel::Fields()) {
        auto* edit = new QLineEdit(numbers);
        edit->setObjectName(ControlObjectName(field.controlId));
        auto* label = new QLabel(Text(field.label), numbers);
        label->setBuddy(edit);
        grid->addWidget(label, row % 8, (row / 8) * 2);
        grid->addWidget(edit, row % 8, (row / 8) * 2 + 1);
        m_fields[field.controlId] = edit;
        const int controlId = field.controlId;
        connect(edit, &QLineEdit::editingFinished, this, [this, controlId] {
            if (!m_filling && !m_model.Commit(controlId)) {
                ReturnTo(controlId);
            }
        });
        connect(edit, &QLineEdit::textChanged, this, [this, controlId](const QString& text) {
            if (!m_filling) {
                m_model.Type(controlId, text.toStdString());
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
    connect(saveAs, &QPushButton::clicked, this, [this] {
        ReturnTo(m_model.SaveAs(m_name->text().toStdString()));
        ShowModel();
    });
    connect(remove, &QPushButton::clicked, this, [this] {
        m_model.Delete(m_libraryList->currentText().toStdString());
        ShowModel();
    });
    ShowModel();
}

void CEyeDiagramMaskPage::showEvent(QShowEvent* event) {
    CSheetPage::showEvent(event);
    // The bit interval may have changed on another page, and the grid steps
    // that end the fitted view depend on the size the chart is shown in.
    UpdateDrawing();
    // Checked when the page first opens, not when it is made: the sheet makes
    // the page even when it does not show it.
    if (!m_openChecked) {
        m_openChecked = true;
        if (m_model.CheckOnOpen()) {
            ShowModel();
        }
    }
}

void CEyeDiagramMaskPage::ShowModel() {
    m_filling = true;
    for (const auto& [controlId, field] : m_fields) {
        field->setText(QString::fromStdString(m_model.Text(controlId)));
    }
    m_name->setText(Text(m_model.Name()));
    m_libraryList->clear();
    for (const std::string& name : m_model.LibraryNames()) {
        m_libraryList->addItem(QString::fromStdString(name));
    }
    m_libraryList->setCurrentIndex(m_libraryList->findText(Text(m_model.Name())));
    m_filling = false;
    UpdateDrawing();
}

void CEyeDiagramMaskPage::UpdateDrawing() {
    ShowMaskOutline(*m_drawing, m_model.Outline());
}

void CEyeDiagramMaskPage::OnLibraryChosen(int index) {
    if (index >= 0) {
        ReturnTo(m_model.ChooseLibraryMask(m_libraryList->itemText(index).toStdString()));
    }
    ShowModel();
}

bool CEyeDiagramMaskPage::OnKillActive() {
    const std::optional<int> refused = m_model.CommitAll();
    ReturnTo(refused);
    return !refused;
}

bool CEyeDiagramMaskPage::OnApply() {
    return m_model.Apply();
}

}  // namespace kv::ui
