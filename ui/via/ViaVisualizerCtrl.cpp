#include "ui/via/ViaVisualizerCtrl.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QImage>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

#include "core/ports/MessagePort.h"
#include "ui/canvas/CanvasExport.h"
#include "ui/canvas/QtCanvas.h"
#include "ui/shared/ControlIds.h"

namespace kv::ui {
namespace {

Rect ClientOf(QSize size) {
    return {0, 0, size.width(), size.height()};
}

bool IsSvgPath(const QString& path) {
    return path.endsWith(QStringLiteral(".svg"), Qt::CaseInsensitive);
}

}  // namespace

CViaVisualizerCtrl::CViaVisualizerCtrl(QWidget* parent) : QWidget(parent), m_qtChooser(this) {
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setContextMenuPolicy(Qt::DefaultContextMenu);
}

CViaVisualizerCtrl::~CViaVisualizerCtrl() = default;

bool CViaVisualizerCtrl::Create(QWidget* parent, int32_t id) {
    if (m_created) {
        return false;
    }
    // Without a parent the control becomes a window of its own.
    setParent(parent);
    setObjectName(ControlObjectName(id));
    m_created = true;
    show();
    return true;
}

QWidget* CViaVisualizerCtrl::GetWindow() const {
    return m_created ? const_cast<CViaVisualizerCtrl*>(this) : nullptr;
}

IViaVizData* CViaVisualizerCtrl::GetViaData(int32_t via) {
    return m_model.ViaData(via);
}

void CViaVisualizerCtrl::SetPair(bool pair) {
    m_model.SetPair(pair);
    update();
}

bool CViaVisualizerCtrl::IsPair() const {
    return m_model.IsPair();
}

void CViaVisualizerCtrl::SetElements(int32_t via, const VIAELEMENT* elements, int32_t count) {
    if (m_model.SetElements(via, elements, count)) {
        update();
    }
}

void CViaVisualizerCtrl::SetPorts(int32_t via, const int32_t* layers, int32_t count) {
    if (m_model.SetPorts(via, layers, count)) {
        update();
    }
}

void CViaVisualizerCtrl::SetNames(const char* subcircuit, const char* baseName,
                                  const char* exportFile) {
    m_model.SetNames(subcircuit, baseName, exportFile);
}

void CViaVisualizerCtrl::SetMetric(bool metric) {
    m_model.SetMetric(metric);
    update();
}

void CViaVisualizerCtrl::SetView(int32_t view) {
    if (m_model.SetView(view)) {
        update();
    }
}

void CViaVisualizerCtrl::SetTopViewLayer(int32_t layer) {
    m_model.SetTopViewLayer(layer);
    update();
}

void CViaVisualizerCtrl::Refresh() {
    m_model.Invalidate();
    update();
}

bool CViaVisualizerCtrl::ExportToSpice() {
    return m_model.ExportToSpice(Chooser()) == SpiceExportOutcome::Written;
}

bool CViaVisualizerCtrl::ExportToSpiceFile(const char* path) {
    return path != nullptr && m_model.ExportToSpiceFile(path);
}

void CViaVisualizerCtrl::SetFileChooser(IFileChooser* chooser) {
    m_chooser = chooser;
}

IFileChooser& CViaVisualizerCtrl::Chooser() {
    return m_chooser != nullptr ? *m_chooser : m_qtChooser;
}

bool CViaVisualizerCtrl::SaveImage(const QString& path, QSize size) const {
    const auto draw = [this, size](ICanvas& canvas) { m_model.Paint(canvas, ClientOf(size)); };
    if (IsSvgPath(path)) {
        return SaveCanvasSvg(path, size, font(), QStringLiteral("Via"), draw);
    }
    return SaveCanvasPng(path, size, font(), draw);
}

bool CViaVisualizerCtrl::SaveImageInteractively() {
    const SpiceExportNames names = m_model.Names();
    const CanvasImageSave image{names.baseName.empty() ? std::string("via") : names.baseName,
                                QStringLiteral("Via"), size(), font()};
    return SaveCanvasImageAs(Chooser(), image,
                             [this](ICanvas& canvas) { m_model.Paint(canvas, ClientOf(size())); });
}

void CViaVisualizerCtrl::CopyImage() const {
    QGuiApplication::clipboard()->setImage(RenderCanvasImage(
        size(), font(), [this](ICanvas& canvas) { m_model.Paint(canvas, ClientOf(size())); }));
}

QString CViaVisualizerCtrl::HoverText(QPoint at) const {
    const QFontMetrics metrics = fontMetrics();
    // The layout is worked out with this widget's font, as it is painted.
    struct Metrics final : ITextMetrics {
        const QFontMetrics& qt;
        explicit Metrics(const QFontMetrics& m) : qt(m) {}
        Extent TextExtent(std::string_view text) const override {
            const QString q = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
            return {qt.horizontalAdvance(q), qt.height()};
        }
    } textMetrics(metrics);
    return QString::fromStdString(
        m_model.HoverText({at.x(), at.y()}, ClientOf(size()), textMetrics));
}

std::unique_ptr<QMenu> CViaVisualizerCtrl::CreateContextMenu() {
    auto menu = std::make_unique<QMenu>(this);
    menu->addAction(QString::fromLatin1(kExportText), this, [this] { ExportToSpice(); })
        ->setEnabled(m_model.HasData());
    menu->addSeparator();
    QAction* side =
        menu->addAction(QString::fromLatin1(kSideViewText), this, [this] { SetView(0); });
    QAction* top = menu->addAction(QString::fromLatin1(kTopViewText), this, [this] { SetView(1); });
    side->setCheckable(true);
    top->setCheckable(true);
    side->setChecked(m_model.View() == ViaView::Side);
    top->setChecked(m_model.View() == ViaView::Top);
    menu->addSeparator();
    menu->addAction(QString::fromLatin1(kCopyImageText), this, [this] { CopyImage(); });
    menu->addAction(QString::fromLatin1(kSaveImageText), this,
                    [this] { SaveImageInteractively(); });
    return menu;
}

QSize CViaVisualizerCtrl::sizeHint() const {
    return {640, 480};
}

void CViaVisualizerCtrl::paintEvent(QPaintEvent* /*event*/) {
    // Painted straight onto the widget: its backing store already buffers, and a widget
    // rendered into an SVG generator stays vector graphics.
    QtCanvas canvas(*this, font());
    m_model.Paint(canvas, ClientOf(size()));
}

void CViaVisualizerCtrl::mouseMoveEvent(QMouseEvent* event) {
    const QPoint at = event->position().toPoint();
    const QString text = HoverText(at);
    if (text.isEmpty()) {
        QToolTip::hideText();
    } else {
        QToolTip::showText(event->globalPosition().toPoint(), text, this);
    }
    QWidget::mouseMoveEvent(event);
}

void CViaVisualizerCtrl::contextMenuEvent(QContextMenuEvent* event) {
    const std::unique_ptr<QMenu> menu = CreateContextMenu();
    menu->exec(event->globalPos());
}

CPadTopViewCtrl::CPadTopViewCtrl(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void CPadTopViewCtrl::SetPad(const PADDATA* pad, double drill, double plating, bool metric,
                             const QString& title) {
    m_pad.reset();
    if (pad != nullptr) {
        m_pad = *pad;
    }
    m_input.drill = drill;
    m_input.plating = plating;
    m_input.metric = metric;
    m_input.title = title.toStdString();
    update();
}

QSize CPadTopViewCtrl::sizeHint() const {
    return {320, 320};
}

PadTopViewInput CPadTopViewCtrl::Input() const {
    PadTopViewInput input = m_input;
    input.pad = m_pad ? &*m_pad : nullptr;
    return input;
}

void CPadTopViewCtrl::paintEvent(QPaintEvent* /*event*/) {
    QtCanvas canvas(*this, font());
    DrawLayerPadTopView(canvas, ClientOf(size()), Input());
}

}  // namespace kv::ui
