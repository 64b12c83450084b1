// The padstack editor as a host gets it from the factory: a modal dialog over the host's via
// data, answered by the test from inside its event loop. Messages go to a port the test holds;
// the table's rules are the edit model's (tests/core/padstack).

#include <QAbstractItemModel>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QtTest>
#include <cstring>
#include <functional>
#include <vector>

#include "core/padstack/PadstackRow.h"
#include "core/padstack/PadstackUnits.h"
#include "core/via/ViaVizData.h"
#include "module/KVComCtlFactory.h"
#include "tests/support/RecordingMessagePort.h"
#include "ui/padstack/PadstackEditorDlg.h"
#include "ui/shared/ControlIds.h"
#include "ui/via/ViaVisualizerCtrl.h"

using namespace Qt::StringLiterals;

using kv::TableShape;
using kv::ui::CPadstackEditorDlg;
using kv::ui::FindControl;

namespace {

double Mils(double mils) {
    return mils / kv::kMilsPerMetre;
}

PADDATA Pad(TableShape pad, double width, double height, TableShape antiPad, double antiWidth) {
    kv::PadstackRow row;
    row.padShape = pad;
    row.antiPadShape = antiPad;
    row.padWidth = Mils(width);
    row.padHeight = Mils(height);
    row.antiPadWidth = row.antiPadHeight = Mils(antiWidth);
    return kv::PadRecordFromRow(row);
}

STACKUPLAYER Layer(const char* name, int32_t kind) {
    STACKUPLAYER layer{};
    kv::SetRecordName(layer.name, name);
    layer.kind = kind;
    return layer;
}

// A two-layer board: view row 0 is "<default>", 1 is TOP (round 20 in round 30 mils), 2 is
// BOTTOM (rectangle 20 x 16 in round 30). Drill 10 mils, plating 1 (actual drill 12).
void FillBoard(kv::CViaVizData& data) {
    data.SetStackupLayers(std::vector<STACKUPLAYER>{Layer("TOP", STACKUP_CONDUCTOR),
                                                    Layer("CORE", STACKUP_DIELECTRIC),
                                                    Layer("BOTTOM", STACKUP_CONDUCTOR)});
    data.SetPads(std::vector<PADDATA>{Pad(TableShape::Round, 20, 20, TableShape::Round, 30),
                                      PADDATA{},
                                      Pad(TableShape::Rectangular, 20, 16, TableShape::Round, 30)});
    PADSTACK& padstack = *data.GetPadstack();
    kv::SetRecordName(padstack.name, "VIA10");
    padstack.drill = Mils(10);
    padstack.plating = Mils(1);
    padstack.firstLayer = 0;
    padstack.lastLayer = 2;
}

// Notes, for every message, whether the dialog's apply button was on when it appeared.
class ApplyWatchingPort final : public kv::IMessagePort {
public:
    kv::MessageAnswer Show(const kv::MessageRequest& request) override {
        applyOnAtMessage.push_back(apply != nullptr && apply->isEnabled());
        return recorded.Show(request);
    }
    kv::test::RecordingMessagePort recorded;
    QPushButton* apply = nullptr;
    std::vector<bool> applyOnAtMessage;
};

QString Cell(CPadstackEditorDlg& dialog, int row, int column) {
    QAbstractItemModel* model =
        FindControl<QTableView>(&dialog, CPadstackEditorDlg::kTableId)->model();
    return model->index(row, column).data().toString();
}

// Types `text` into view cell (row, column) as the table's editor hands it over.
bool Type(CPadstackEditorDlg& dialog, int row, int column, const QString& text) {
    QAbstractItemModel* model =
        FindControl<QTableView>(&dialog, CPadstackEditorDlg::kTableId)->model();
    return model->setData(model->index(row, column), text, Qt::EditRole);
}

void Click(CPadstackEditorDlg& dialog, int id) {
    FindControl<QPushButton>(&dialog, id)->click();
}

void TypeDrill(CPadstackEditorDlg& dialog, const QString& text) {
    auto* drill = FindControl<QLineEdit>(&dialog, CPadstackEditorDlg::kDrillId);
    drill->setText(text);
    emit drill->editingFinished();
}

// View columns: the grid's columns less the row numbers.
constexpr int kPadShape = 1;
constexpr int kPadWidth = 2;
constexpr int kPadHeight = 3;

}  // namespace

class PadstackEditorTest : public QObject {
    Q_OBJECT

private:
    // Runs Edit on the board with `act` done inside the open dialog; a dialog the actions
    // left open is cancelled, so a failed check cannot hang the test.
    int32_t EditWith(std::function<void(CPadstackEditorDlg&)> act, IViaVizData* data = nullptr) {
        auto* dialog = static_cast<CPadstackEditorDlg*>(m_editor);
        dialog->SetOpenedHook([this, act](CPadstackEditorDlg& open) {
            m_port.apply = FindControl<QPushButton>(&open, CPadstackEditorDlg::kApplyId);
            act(open);
            if (open.isVisible()) {
                open.reject();
            }
        });
        return m_editor->Edit(&m_host, data != nullptr ? data : &m_data);
    }

    kv::module::CKVComCtlFactory m_factory;
    IPadstackEditorCtrl* m_editor = nullptr;
    kv::CViaVizData m_data;
    QWidget m_host;
    ApplyWatchingPort m_port;
    kv::IMessagePort* m_previousPort = nullptr;

private slots:
    void init() {
        m_previousPort = kv::InstallMessagePort(&m_port);
        m_port = ApplyWatchingPort{};
        FillBoard(m_data);
        m_editor = m_factory.CreatePadstackEditorDlg();
        QVERIFY(m_editor != nullptr);
        m_editor->SetMaxPadSize(Mils(50));
    }

    void cleanup() {
        m_factory.DestroyPadstackEditorDlg(m_editor);
        m_factory.DestroyPadstackEditorDlg(nullptr);
        kv::InstallMessagePort(m_previousPort);
    }

    // Nothing to edit, or a host's own pad array shorter than its stackup: the array is the
    // host's, so the editor can neither grow it nor write every layer's pad into it.
    void refusesWhatItCannotEditWithoutOpening() {
        struct HostVia final : IViaVizData {
            STACKUPLAYER layers[3] = {Layer("TOP", STACKUP_CONDUCTOR),
                                      Layer("CORE", STACKUP_DIELECTRIC),
                                      Layer("BOTTOM", STACKUP_CONDUCTOR)};
            STACKUPARRAY stackup{3, layers};
            PADDATA pad = Pad(TableShape::Round, 20, 20, TableShape::Round, 30);
            PADSTACK padstack{"VIA", Mils(10), 0.0, 0.0, 0, 2, 1, &pad};
            STACKUPARRAY* GetStackup() override { return &stackup; }
            PADSTACK* GetPadstack() override { return &padstack; }
            void* GetViaReference() override { return nullptr; }
            int32_t GetViaCount() override { return 1; }
            void* GetNetReference() override { return nullptr; }
            double GetFirstValue() override { return 0.0; }
            double GetSecondValue() override { return 0.0; }
            double GetThirdValue() override { return 0.0; }
            bool GetFlag() override { return false; }
        } host;
        QCOMPARE(m_editor->Edit(&m_host, nullptr), 0);
        kv::CViaVizData empty;
        bool opened = false;
        for (IViaVizData* data :
             {static_cast<IViaVizData*>(&empty), static_cast<IViaVizData*>(&host)}) {
            QCOMPARE(EditWith([&opened](CPadstackEditorDlg&) { opened = true; }, data), 0);
        }
        QVERIFY(!opened);
        QVERIFY(!m_editor->IsModified());
        QCOMPARE(host.padstack.pads, &host.pad);
        QCOMPARE(host.padstack.padCount, 1);
        QVERIFY(m_port.recorded.Requests().empty());
    }

    void refusedCellTellsWhyAndCancelLeavesTheRecordsAlone() {
        const PADSTACK before = *m_data.GetPadstack();
        const std::vector<PADDATA> pads(before.pads, before.pads + before.padCount);
        const int32_t result = EditWith([this](CPadstackEditorDlg& dialog) {
            QVERIFY(Type(dialog, 1, kPadWidth, u"25"_s));
            QVERIFY(m_port.apply->isEnabled());
            QVERIFY(!Type(dialog, 1, kPadWidth, u"0"_s));
            QCOMPARE(Cell(dialog, 1, kPadWidth), u"25.00"_s);
            QVERIFY(!Type(dialog, 2, kPadHeight, u"11"_s));
            QCOMPARE(Cell(dialog, 2, kPadHeight), u"16.00"_s);
            TypeDrill(dialog, u"8"_s);
            Click(dialog, CPadstackEditorDlg::kAddRowId);
            Click(dialog, CPadstackEditorDlg::kCancelId);
        });
        QCOMPARE(result, 0);
        QVERIFY(!m_editor->IsModified());
        const PADSTACK& after = *m_data.GetPadstack();
        QCOMPARE(after.drill, before.drill);
        QCOMPARE(after.pads, before.pads);
        QCOMPARE(std::memcmp(after.pads, pads.data(), pads.size() * sizeof(PADDATA)), 0);
        const auto& requests = m_port.recorded.Requests();
        QCOMPARE(requests.size(), std::size_t{2});
        QCOMPARE(requests[0].text, std::string("Pad sizes and Clearance must be positive!"));
        QCOMPARE(requests[0].caption, std::string("Padstack Editor"));
        QCOMPARE(requests[1].text, std::string("Pad size must be greater than actual drill size!"));
        QCOMPARE(requests[1].caption, std::string(kv::kMessageCaption));
        // The edit switched Apply off before its rule spoke.
        QCOMPARE(m_port.applyOnAtMessage, (std::vector<bool>{false, false}));
    }

    void editsAndUndoRedoReachTheTable() {
        PADDATA defaultPad = Pad(TableShape::Round, 18, 18, TableShape::Round, 28);
        m_editor->SetDefaultPad(&defaultPad);
        const int32_t result = EditWith([](CPadstackEditorDlg& dialog) {
            QVERIFY(Type(dialog, 1, kPadWidth, u"25"_s));
            // The bottom rectangle turned round through the shape cell's combo box.
            auto* view = FindControl<QTableView>(&dialog, CPadstackEditorDlg::kTableId);
            const QModelIndex shape = view->model()->index(2, kPadShape);
            QWidget* editor = view->itemDelegate()->createEditor(view->viewport(), {}, shape);
            auto* combo = qobject_cast<QComboBox*>(editor);
            QVERIFY(combo != nullptr);
            combo->setCurrentText(u"Round"_s);
            view->itemDelegate()->setModelData(combo, view->model(), shape);
            delete editor;
            QCOMPARE(Cell(dialog, 2, kPadShape), u"Round"_s);

            Click(dialog, CPadstackEditorDlg::kUndoId);
            QCOMPARE(Cell(dialog, 2, kPadShape), u"Rectangular"_s);
            Click(dialog, CPadstackEditorDlg::kUndoId);
            QCOMPARE(Cell(dialog, 1, kPadWidth), u"20.00"_s);
            QVERIFY(!FindControl<QPushButton>(&dialog, CPadstackEditorDlg::kApplyId)->isEnabled());
            Click(dialog, CPadstackEditorDlg::kRedoId);
            QCOMPARE(Cell(dialog, 1, kPadWidth), u"25.00"_s);

            // The default row's pad gets wider too.
            QVERIFY(Type(dialog, 0, kPadWidth, u"22"_s));
            Click(dialog, CPadstackEditorDlg::kOkId);
        });
        QCOMPARE(result, 1);
        QVERIFY(m_editor->IsModified());
        const PADSTACK& padstack = *m_data.GetPadstack();
        QCOMPARE(padstack.pads[0].pad_x, Mils(25));
        QCOMPARE(padstack.pads[2].shape, PAD_SHAPE_RECTANGLE);  // its change was undone
        PADDATA after{};
        QVERIFY(m_editor->GetDefaultPad(&after));
        QCOMPARE(after.pad_x, Mils(22));
    }

    void okWaitsForASoundTableThenWritesIt() {
        m_editor->SetMetric(true);
        const int32_t result = EditWith([this](CPadstackEditorDlg& dialog) {
            QCOMPARE(FindControl<QLineEdit>(&dialog, CPadstackEditorDlg::kDrillId)->text(),
                     u"0.25"_s);
            TypeDrill(dialog, u"0.75"_s);  // through every anti-pad
            Click(dialog, CPadstackEditorDlg::kOkId);
            QVERIFY(dialog.isVisible());
            QCOMPARE(m_port.recorded.Requests().back().text,
                     std::string("Actual drill size must be less then all anti-pad sizes!"));
            TypeDrill(dialog, u"0.3"_s);
            auto* last = FindControl<QComboBox>(&dialog, CPadstackEditorDlg::kLastLayerId);
            QCOMPARE(last->currentText(), u"<bottom>"_s);
            Click(dialog, CPadstackEditorDlg::kOkId);
        });
        QCOMPARE(result, 1);
        QCOMPARE(m_data.GetPadstack()->drill, 0.0003);
        QCOMPARE(m_data.GetPadstack()->pads[0].shape, PAD_SHAPE_ROUND);
        QCOMPARE(m_data.GetPadstack()->pads[1].padType, PAD_TYPE_NONE);
    }

    void previewFollowsTheSelectedRowAndItsEdits() {
        const PADDATA defaultPad = Pad(TableShape::Oval, 18, 22, TableShape::Round, 28);
        m_editor->SetDefaultPad(&defaultPad);
        EditWith([](CPadstackEditorDlg& dialog) {
            auto* preview = dialog.findChild<kv::ui::CPadTopViewCtrl*>(u"padPreviewArea"_s);
            QVERIFY(preview != nullptr);
            auto* table = FindControl<QTableView>(&dialog, CPadstackEditorDlg::kTableId);
            table->setCurrentIndex(table->model()->index(2, kPadWidth));
            QCOMPARE(preview->Input().pad->shape, PAD_SHAPE_RECTANGLE);
            QCOMPARE(preview->Input().drill, Mils(10));
            QCOMPARE(QString::fromStdString(preview->Input().title), u"BOTTOM"_s);
            table->setCurrentIndex(table->model()->index(1, kPadWidth));
            QVERIFY(Type(dialog, 1, kPadWidth, u"26"_s));
            QCOMPARE(preview->Input().pad->pad_x, Mils(26));
            // An "<Auto>" pad is drawn as the "<default>" row's.
            QVERIFY(Type(dialog, 1, kPadShape, u"<Auto>"_s));
            QCOMPARE(dialog.SelectedPad().shape, PAD_SHAPE_UNSET);
            QCOMPARE(preview->Input().pad->shape, PAD_SHAPE_OVAL);
            QCOMPARE(preview->Input().pad->pad_y, Mils(22));
            TypeDrill(dialog, u"8"_s);
            QCOMPARE(preview->Input().drill, Mils(8));
        });
    }
};

QTEST_MAIN(PadstackEditorTest)
#include "PadstackEditorTest.moc"
