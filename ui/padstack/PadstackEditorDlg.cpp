#include "ui/padstack/PadstackEditorDlg.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTimer>
#include <QUndoStack>
#include <QVBoxLayout>

#include "core/padstack/PadstackMessages.h"
#include "core/shared/BoundedCopy.h"
#include "core/via/ViaVizData.h"
#include "ui/padstack/PadstackCellDelegate.h"
#include "ui/padstack/PadstackEditCommand.h"
#include "ui/padstack/PadstackTableModel.h"
#include "ui/shared/ControlIds.h"
#include "ui/shared/ModuleState.h"
#include "ui/via/ViaVisualizerCtrl.h"

namespace kv::ui {
namespace {

constexpr int kPreviewSide = 180;

QString Text(const std::string& text) {
    return QString::fromStdString(text);
}

template <class Widget>
Widget* Named(Widget* widget, int id) {
    widget->setObjectName(ControlObjectName(id));
    return widget;
}

QLineEdit* ReadOnlyField(int id) {
    auto* field = Named(new QLineEdit, id);
    field->setReadOnly(true);
    return field;
}

}  // namespace

CPadstackEditorDlg::CPadstackEditorDlg() : m_undo(new QUndoStack(this)) {
    setWindowTitle(QString::fromUtf8(kPadstackEditorTitle.data(),
                                     static_cast<qsizetype>(kPadstackEditorTitle.size())));
    setWindowIcon(ModuleWindowIcon());
    BuildLayout();
}

CPadstackEditorDlg::~CPadstackEditorDlg() = default;

void CPadstackEditorDlg::BuildLayout() {
    auto* layout = new QVBoxLayout(this);
    auto* top = new QHBoxLayout;

    auto* drillBox = new QGroupBox(tr("Drill"));
    drillBox->setObjectName(QStringLiteral("drillGroup"));
    auto* drillForm = new QFormLayout(drillBox);
    m_drill = Named(new QLineEdit, kDrillId);
    m_plating = ReadOnlyField(kPlatingId);
    m_actualDrill = ReadOnlyField(kActualDrillId);
    m_metricBox = Named(new QCheckBox(tr("Metric (mm)")), kMetricId);
    drillForm->addRow(tr("Drill size:"), m_drill);
    drillForm->addRow(tr("Plating:"), m_plating);
    drillForm->addRow(tr("Actual drill size:"), m_actualDrill);
    drillForm->addRow(m_metricBox);
    top->addWidget(drillBox);

    auto* spanBox = new QGroupBox(tr("Layer span"));
    auto* spanForm = new QFormLayout(spanBox);
    m_firstLayer = Named(new QComboBox, kFirstLayerId);
    m_lastLayer = Named(new QComboBox, kLastLayerId);
    spanForm->addRow(tr("Start layer:"), m_firstLayer);
    spanForm->addRow(tr("End layer:"), m_lastLayer);
    top->addWidget(spanBox);

    auto* previewBox = new QGroupBox(tr("Top view"));
    auto* previewLayout = new QVBoxLayout(previewBox);
    m_preview = new CPadTopViewCtrl;
    m_preview->setObjectName(QStringLiteral("padPreviewArea"));
    m_preview->setMinimumSize(kPreviewSide, kPreviewSide);
    previewLayout->addWidget(m_preview);
    top->addWidget(previewBox, 1);
    layout->addLayout(top);

    m_tableModel = new PadstackTableModel(
        m_model,
        [this](int row, int column, const QString& text) { return OnCellEdit(row, column, text); },
        this);
    m_table = Named(new QTableView, kTableId);
    m_table->setModel(m_tableModel);
    m_table->setItemDelegate(new PadstackCellDelegate(m_model, m_table));
    m_table->setSelectionBehavior(QAbstractItemView::SelectItems);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    layout->addWidget(m_table, 1);

    auto* rowButtons = new QHBoxLayout;
    auto* addRow = Named(new QPushButton(tr("Add Row")), kAddRowId);
    auto* removeRow = Named(new QPushButton(tr("Remove Row")), kRemoveRowId);
    auto* undo = Named(new QPushButton(tr("Undo")), kUndoId);
    auto* redo = Named(new QPushButton(tr("Redo")), kRedoId);
    undo->setEnabled(false);
    redo->setEnabled(false);
    rowButtons->addWidget(addRow);
    rowButtons->addWidget(removeRow);
    rowButtons->addStretch();
    rowButtons->addWidget(undo);
    rowButtons->addWidget(redo);
    layout->addLayout(rowButtons);

    m_buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel |
                                     QDialogButtonBox::Apply);
    Named(m_buttons->button(QDialogButtonBox::Ok), kOkId);
    Named(m_buttons->button(QDialogButtonBox::Cancel), kCancelId);
    m_apply = Named(m_buttons->button(QDialogButtonBox::Apply), kApplyId);
    m_apply->setEnabled(false);
    layout->addWidget(m_buttons);

    QAction* undoAction = m_undo->createUndoAction(this);
    undoAction->setShortcut(QKeySequence::Undo);
    QAction* redoAction = m_undo->createRedoAction(this);
    redoAction->setShortcut(QKeySequence::Redo);
    addAction(undoAction);
    addAction(redoAction);

    connect(m_table->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &CPadstackEditorDlg::selectedPadChanged);
    connect(this, &CPadstackEditorDlg::selectedPadChanged, this,
            &CPadstackEditorDlg::UpdatePreview);
    connect(m_drill, &QLineEdit::editingFinished, this, &CPadstackEditorDlg::OnDrillEdited);
    connect(m_firstLayer, &QComboBox::textActivated, this,
            [this](const QString& choice) { OnSpanChosen(true, choice); });
    connect(m_lastLayer, &QComboBox::textActivated, this,
            [this](const QString& choice) { OnSpanChosen(false, choice); });
    connect(m_metricBox, &QCheckBox::toggled, this, &CPadstackEditorDlg::OnMetricToggled);
    connect(addRow, &QPushButton::clicked, this, &CPadstackEditorDlg::OnAddRow);
    connect(removeRow, &QPushButton::clicked, this, &CPadstackEditorDlg::OnRemoveRow);
    connect(undo, &QPushButton::clicked, m_undo, &QUndoStack::undo);
    connect(redo, &QPushButton::clicked, m_undo, &QUndoStack::redo);
    connect(m_undo, &QUndoStack::canUndoChanged, undo, &QPushButton::setEnabled);
    connect(m_undo, &QUndoStack::canRedoChanged, redo, &QPushButton::setEnabled);
    connect(m_buttons, &QDialogButtonBox::accepted, this, &CPadstackEditorDlg::accept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &CPadstackEditorDlg::reject);
    connect(m_apply, &QPushButton::clicked, this, &CPadstackEditorDlg::OnApply);
}

int32_t CPadstackEditorDlg::Edit(QWidget* parent, IViaVizData* data) {
    m_modified = false;
    STACKUPARRAY* stackup = data != nullptr ? data->GetStackup() : nullptr;
    PADSTACK* padstack = data != nullptr ? data->GetPadstack() : nullptr;
    if (stackup == nullptr || padstack == nullptr) {
        return 0;
    }
    // OK writes a pad for every layer. Via data of the library's own holds arrays from new[],
    // which a short one is replaced by; a host's own array is the host's to allocate, so one
    // that cannot take every layer's pad is refused before anything is shown.
    const bool ownArrays = dynamic_cast<const CViaVizData*>(data) != nullptr;
    if (!ownArrays && (padstack->pads == nullptr || padstack->padCount < stackup->count)) {
        return 0;
    }
    m_model.SetMetric(m_metric);
    if (!m_model.Load(*stackup, *padstack, m_defaultPad)) {
        return 0;
    }
    m_loaded = m_applied = m_model.State();
    m_undo->clear();
    const std::string_view name = kv::FieldText(padstack->name);
    setWindowTitle(QString::fromUtf8(kPadstackEditorTitle.data(),
                                     static_cast<qsizetype>(kPadstackEditorTitle.size())) +
                   QStringLiteral(" - ") +
                   QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())));
    RefreshAll();
    m_table->setCurrentIndex(m_tableModel->index(0, 0));

    // Modal over the host's window while it runs; the factory, not the host window, owns the
    // dialog before and after.
    setParent(parent, Qt::Dialog);
    if (m_openedHook) {
        QTimer::singleShot(0, this, [this] {
            auto hook = std::move(m_openedHook);
            m_openedHook = nullptr;
            hook(*this);
        });
    }
    const int result = exec();
    setParent(nullptr, Qt::Dialog);
    if (result != QDialog::Accepted) {
        return 0;
    }
    m_model.WriteTo(*padstack);
    m_defaultPad = m_model.DefaultPadRecord();
    m_modified = m_model.State() != m_loaded;
    return 1;
}

void CPadstackEditorDlg::SetMetric(bool metric) {
    m_metric = metric;
    m_metricBox->setChecked(metric);  // refreshes through OnMetricToggled
    m_model.SetMetric(metric);
}

void CPadstackEditorDlg::SetMaxPadSize(double metres) {
    m_model.SetMaxPadSize(metres);
}

void CPadstackEditorDlg::SetUsedLayers(const int32_t* layers, int32_t count) {
    std::vector<int32_t> used;
    if (layers != nullptr && count > 0) {
        used.assign(layers, layers + count);
    }
    m_model.SetUsedLayers(std::move(used));
}

void CPadstackEditorDlg::SetDefaultPad(const PADDATA* pad) {
    m_defaultPad = pad != nullptr ? *pad : PADDATA{};
}

bool CPadstackEditorDlg::GetDefaultPad(PADDATA* pad) const {
    if (pad == nullptr) {
        return false;
    }
    *pad = m_defaultPad;
    return true;
}

bool CPadstackEditorDlg::IsModified() const {
    return m_modified;
}

int CPadstackEditorDlg::SelectedGridRow() const {
    const QModelIndex current = m_table->currentIndex();
    return current.isValid() ? PadstackTableModel::GridRow(current) : kDefaultGridRow;
}

PADDATA CPadstackEditorDlg::SelectedPad() const {
    if (m_model.GridRowCount() <= kDefaultGridRow) {
        return PADDATA{};
    }
    return PadRecordFromRow(m_model.RowAt(SelectedGridRow()));
}

PADDATA CPadstackEditorDlg::SelectedPadAsDrawn() const {
    if (m_model.GridRowCount() <= kDefaultGridRow) {
        return PADDATA{};
    }
    return PadRecordFromRow(
        RowAsDrawn(m_model.RowAt(SelectedGridRow()), m_model.RowAt(kDefaultGridRow)));
}

// The preview shows the finished hole (the drill size) inside the drilled one.
void CPadstackEditorDlg::UpdatePreview() {
    if (m_model.GridRowCount() <= kDefaultGridRow) {
        m_preview->SetPad(nullptr, 0.0, 0.0, m_metric);
        return;
    }
    const PADDATA pad = SelectedPadAsDrawn();
    const int gridRow = SelectedGridRow();
    m_preview->SetPad(&pad, m_model.State().drill, m_model.Plating(), m_model.Units().Metric(),
                      Text(m_model.CellText(gridRow, kLayerNameColumn)));
}

void CPadstackEditorDlg::SetOpenedHook(std::function<void(CPadstackEditorDlg&)> hook) {
    m_openedHook = std::move(hook);
}

// OK writes the padstack back only when the whole table holds together.
void CPadstackEditorDlg::accept() {
    if (m_model.CheckTable()) {
        QDialog::accept();
    }
}

void CPadstackEditorDlg::RefreshAll() {
    m_updatingFields = true;
    const QString unit = m_model.Units().Metric() ? tr("mm") : tr("mils");
    if (auto* drillBox = findChild<QGroupBox*>(QStringLiteral("drillGroup"))) {
        drillBox->setTitle(tr("Drill (%1)").arg(unit));
    }
    m_drill->setText(Text(m_model.DrillText()));
    m_plating->setText(Text(m_model.PlatingText()));
    m_actualDrill->setText(Text(m_model.ActualDrillText()));
    QStringList choices;
    for (const std::string& choice : m_model.SpanChoices()) {
        choices << Text(choice);
    }
    for (QComboBox* combo : {m_firstLayer, m_lastLayer}) {
        combo->clear();
        combo->addItems(choices);
    }
    m_firstLayer->setCurrentText(Text(m_model.FirstLayerText()));
    m_lastLayer->setCurrentText(Text(m_model.LastLayerText()));
    m_updatingFields = false;
    m_tableModel->Reload();
    UpdateApply();
    emit selectedPadChanged();
}

// The apply button goes off first, whatever the edit turns out to be; it comes back when
// there are changes it has not applied yet.
bool CPadstackEditorDlg::OnCellEdit(int gridRow, int gridColumn, const QString& text) {
    m_apply->setEnabled(false);
    const PadstackEditState before = m_model.State();
    const CellEditResult result = m_model.EditCell(gridRow, gridColumn, text.toStdString());
    const bool accepted = result.outcome == EditOutcome::Accepted;
    if (accepted) {
        m_tableModel->RefreshRow(gridRow);
        emit selectedPadChanged();
        PushChange(tr("Edit %1").arg(Text(m_model.CellText(kTitleRow, gridColumn))), before);
    }
    UpdateApply();
    return accepted;
}

void CPadstackEditorDlg::OnDrillEdited() {
    if (m_updatingFields) {
        return;
    }
    m_updatingFields = true;
    const PadstackEditState before = m_model.State();
    const DrillEditResult result = m_model.EditDrill(m_drill->text().toStdString());
    m_drill->setText(Text(result.drillText));
    m_actualDrill->setText(Text(result.actualDrillText));
    m_updatingFields = false;
    if (result.outcome == EditOutcome::Accepted) {
        emit selectedPadChanged();  // the drill hole is part of the view
        PushChange(tr("Edit drill size"), before);
    }
    UpdateApply();
}

void CPadstackEditorDlg::OnSpanChosen(bool first, const QString& choice) {
    if (m_updatingFields) {
        return;
    }
    const PadstackEditState before = m_model.State();
    const std::string text = choice.toStdString();
    if (first ? m_model.SetFirstLayer(text) : m_model.SetLastLayer(text)) {
        PushChange(first ? tr("Set start layer") : tr("Set end layer"), before);
    }
    m_updatingFields = true;
    m_firstLayer->setCurrentText(Text(m_model.FirstLayerText()));
    m_lastLayer->setCurrentText(Text(m_model.LastLayerText()));
    m_updatingFields = false;
    UpdateApply();
}

void CPadstackEditorDlg::OnAddRow() {
    const PadstackEditState before = m_model.State();
    const int gridRow = m_model.AddRow();
    if (gridRow < 0) {
        return;
    }
    m_tableModel->Reload();
    m_table->setCurrentIndex(m_tableModel->index(gridRow - 1, 0));
    PushChange(tr("Add row"), before);
    UpdateApply();
}

void CPadstackEditorDlg::OnRemoveRow() {
    const QModelIndex current = m_table->currentIndex();
    if (!current.isValid()) {
        return;
    }
    const PadstackEditState before = m_model.State();
    if (m_model.RemoveRow(PadstackTableModel::GridRow(current))) {
        m_tableModel->Reload();
        PushChange(tr("Remove row"), before);
    }
    UpdateApply();
}

void CPadstackEditorDlg::OnMetricToggled(bool metric) {
    m_metric = metric;
    m_model.SetMetric(metric);
    RefreshAll();
}

// Apply checks the whole table now and takes the checked state as applied; the host's records
// are written on OK only.
void CPadstackEditorDlg::OnApply() {
    if (m_model.CheckTable()) {
        m_applied = m_model.State();
    }
    UpdateApply();
}

void CPadstackEditorDlg::PushChange(const QString& what, const PadstackEditState& before) {
    if (m_model.State() == before) {
        return;
    }
    m_undo->push(
        new PadstackEditCommand(what, before, m_model.State(),
                                [this](const PadstackEditState& state) { RestoreState(state); }));
}

void CPadstackEditorDlg::RestoreState(const PadstackEditState& state) {
    m_model.Restore(state);
    RefreshAll();
}

void CPadstackEditorDlg::UpdateApply() {
    m_apply->setEnabled(m_model.State() != m_applied);
}

}  // namespace kv::ui
