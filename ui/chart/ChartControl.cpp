#include "ui/chart/ChartControl.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QWheelEvent>
#include <array>

#include "core/ports/MessagePort.h"
#include "ui/canvas/CanvasExport.h"
#include "ui/canvas/QtCanvas.h"
#include "ui/ports/QtFileChooser.h"

namespace kv::ui {
namespace {

struct KeyName {
    int qtKey;
    ChartKey key;
};

constexpr std::array kKeyNames{
    KeyName{Qt::Key_Home, ChartKey::Home},  KeyName{Qt::Key_Plus, ChartKey::Plus},
    KeyName{Qt::Key_Equal, ChartKey::Plus}, KeyName{Qt::Key_Minus, ChartKey::Minus},
    KeyName{Qt::Key_Left, ChartKey::Left},  KeyName{Qt::Key_Right, ChartKey::Right},
    KeyName{Qt::Key_Up, ChartKey::Up},      KeyName{Qt::Key_Down, ChartKey::Down},
};

ChartKey ToChartKey(int qtKey) {
    for (const KeyName& name : kKeyNames) {
        if (name.qtKey == qtKey) {
            return name.key;
        }
    }
    return ChartKey::Other;
}

Point ToPoint(const QPointF& at) {
    const QPoint point = at.toPoint();
    return {point.x(), point.y()};
}

// One wheel notch is 120 eighths of a degree; a push away zooms in.
constexpr double kEighthsPerNotch = 120.0;

}  // namespace

CChartControl::CChartControl(QWidget* parent) : CChartControl(std::make_unique<Chart>(), parent) {}

CChartControl::CChartControl(std::unique_ptr<Chart> chart, QWidget* parent)
    : CChartControl(*chart, parent, "chart", QStringLiteral("Chart")) {
    m_ownChart = std::move(chart);
}

CChartControl::CChartControl(Chart& chart, QWidget* parent, std::string imageName,
                             QString imageTitle)
    : QWidget(parent),
      m_chart(&chart),
      m_dialogChooser(std::make_unique<QtFileChooser>(this)),
      m_imageName(std::move(imageName)),
      m_imageTitle(std::move(imageTitle)) {
    // The picture covers the whole control: nothing needs erasing first.
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    MeasureFont();
    m_chart->Fit();
}

CChartControl::~CChartControl() = default;

bool CChartControl::Create(QWidget* parent) {
    if (m_created || parent == nullptr) {
        return false;
    }
    setParent(parent);
    m_created = true;
    show();
    return true;
}

QWidget* CChartControl::GetWindow() {
    return m_created ? this : nullptr;
}

bool CChartControl::AddCurve(const double* x, const double* y, int32_t count, uint32_t colour,
                             uint32_t identifier) {
    std::optional<Curve> curve = HostCurve(x, y, count, colour, identifier);
    if (!curve) {
        return false;
    }
    AddCurve(std::move(*curve));
    return true;
}

void CChartControl::SetCurveName(uint32_t identifier, const char* name) {
    if (name != nullptr) {
        SetCurveName(identifier, std::string(name));
    }
}

void CChartControl::SetUnits(const char* xUnit, const char* yUnit) {
    if (xUnit != nullptr && yUnit != nullptr) {
        SetUnits(std::string(xUnit), std::string(yUnit));
    }
}

void CChartControl::SetLogarithmic(bool xAxis, bool yAxis) {
    SetLogarithmic(ChartAxis::X, xAxis);
    SetLogarithmic(ChartAxis::Y, yAxis);
}

bool CChartControl::SaveImage(const char* path) {
    if (!m_created || path == nullptr) {
        return false;
    }
    LayOutForSize();
    const QString file = QString::fromUtf8(path);
    const auto draw = [this](ICanvas& canvas) { PaintPicture(canvas); };
    if (file.endsWith(QStringLiteral(".png"), Qt::CaseInsensitive)) {
        return SaveCanvasPng(file, size(), font(), draw);
    }
    if (file.endsWith(QStringLiteral(".svg"), Qt::CaseInsensitive)) {
        return SaveCanvasSvg(file, size(), font(), m_imageTitle, draw);
    }
    return false;
}

void CChartControl::PaintPicture(ICanvas& canvas) const {
    m_chart->Paint(canvas);
}

void CChartControl::LayOutPicture(const Rect& client) {
    m_chart->SetClientRect(client);
}

void CChartControl::LayOut() {
    m_laidOutSize = size();
    LayOutPicture({0, 0, width(), height()});
    Changed();
}

void CChartControl::LayOutForSize() {
    if (m_laidOutSize != size()) {
        LayOut();
    }
}

void CChartControl::MeasureFont() {
    // The label spacings and the margins come from the width of a digit and
    // the height of a line of the control's font.
    const QFontMetrics metrics(font());
    m_chart->SetTextMetrics(metrics.horizontalAdvance(QLatin1Char('0')), metrics.height());
    LayOut();
}

void CChartControl::Changed() {
    update();
}

void CChartControl::AddCurve(Curve curve) {
    m_chart->AddCurve(std::move(curve));
    Changed();
}

void CChartControl::RemoveAllCurves() {
    m_chart->RemoveAllCurves();
    Changed();
}

void CChartControl::SetCurveName(uint32_t identifier, const std::string& name) {
    m_chart->SetCurveName(identifier, name);
    Changed();
}

void CChartControl::SetUnits(const std::string& xUnit, const std::string& yUnit) {
    m_chart->SetUnit(ChartAxis::X, xUnit);
    m_chart->SetUnit(ChartAxis::Y, yUnit);
    Changed();
}

void CChartControl::SetLogarithmic(ChartAxis axis, bool logarithmic) {
    m_chart->SetLogarithmic(axis, logarithmic);
    Changed();
}

void CChartControl::SetPrefixes(bool prefixes) {
    m_chart->SetPrefixes(prefixes);
    Changed();
}

void CChartControl::Fit() {
    m_chart->Fit();
    Changed();
}

QImage CChartControl::RenderImage() {
    LayOutForSize();
    return RenderCanvasImage(size(), font(), [this](ICanvas& canvas) { PaintPicture(canvas); });
}

void CChartControl::CopyImage() {
    QApplication::clipboard()->setImage(RenderImage());
}

bool CChartControl::SaveImage() {
    LayOutForSize();
    IFileChooser& chooser = m_chooser != nullptr ? *m_chooser : *m_dialogChooser;
    return SaveCanvasImageAs(chooser, {m_imageName, m_imageTitle, size(), font()},
                             [this](ICanvas& canvas) { PaintPicture(canvas); });
}

QSize CChartControl::sizeHint() const {
    const QFontMetrics metrics(font());
    return {metrics.horizontalAdvance(QLatin1Char('0')) * 80, metrics.height() * 24};
}

void CChartControl::paintEvent(QPaintEvent* /*event*/) {
    // Straight into the window's back buffer, which the window system shows
    // only once the paint is done: a buffer of its own would cost a copy of
    // every pixel.
    QtCanvas canvas(*this, font(), &m_texts);
    PaintPicture(canvas);
}

void CChartControl::resizeEvent(QResizeEvent* /*event*/) {
    LayOut();
}

void CChartControl::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange) {
        MeasureFont();
    }
    QWidget::changeEvent(event);
}

void CChartControl::mousePressEvent(QMouseEvent* event) {
    const bool panKeys = event->modifiers() & (Qt::ShiftModifier | Qt::ControlModifier);
    const bool pan =
        event->button() == Qt::MiddleButton || (event->button() == Qt::LeftButton && panKeys);
    if (event->button() != Qt::LeftButton && !pan) {
        return;
    }
    setFocus(Qt::MouseFocusReason);
    m_chart->OnMouseDown(ToPoint(event->position()), pan);
    if (m_chart->IsPanning()) {
        setCursor(Qt::ClosedHandCursor);
    }
    Changed();
}

void CChartControl::mouseMoveEvent(QMouseEvent* event) {
    m_chart->OnMouseMove(ToPoint(event->position()));
    Changed();
}

void CChartControl::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton || event->button() == Qt::MiddleButton) {
        m_chart->OnMouseUp(ToPoint(event->position()));
        unsetCursor();
        Changed();
    }
}

void CChartControl::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        m_chart->OnDoubleClick(ToPoint(event->position()));
        Changed();
    }
}

void CChartControl::wheelEvent(QWheelEvent* event) {
    const double notches = event->angleDelta().y() / kEighthsPerNotch;
    if (notches == 0.0) {
        event->ignore();
        return;
    }
    m_chart->OnWheel(ToPoint(event->position()), notches);
    event->accept();
    Changed();
}

void CChartControl::leaveEvent(QEvent* event) {
    m_chart->OnMouseLeave();
    Changed();
    QWidget::leaveEvent(event);
}

void CChartControl::keyPressEvent(QKeyEvent* event) {
    if (m_chart->OnKey(ToChartKey(event->key()))) {
        event->accept();
        Changed();
        return;
    }
    QWidget::keyPressEvent(event);
}

void CChartControl::contextMenuEvent(QContextMenuEvent* event) {
    QMenu menu(this);
    menu.setObjectName(QStringLiteral("chartMenu"));
    menu.addAction(QStringLiteral("Fit"), this, &CChartControl::Fit);
    const auto addSwitch = [&menu](const QString& text, bool on, auto apply) {
        QAction* action = menu.addAction(text);
        action->setCheckable(true);
        action->setChecked(on);
        QObject::connect(action, &QAction::toggled, &menu, apply);
    };
    addSwitch(QStringLiteral("Logarithmic X"), m_chart->Axis(ChartAxis::X).logarithmic,
              [this](bool on) { SetLogarithmic(ChartAxis::X, on); });
    addSwitch(QStringLiteral("Logarithmic Y"), m_chart->Axis(ChartAxis::Y).logarithmic,
              [this](bool on) { SetLogarithmic(ChartAxis::Y, on); });
    addSwitch(QStringLiteral("Prefixes"), m_chart->Prefixes(),
              [this](bool on) { SetPrefixes(on); });
    menu.addSeparator();
    menu.addAction(QStringLiteral("Copy image"), this, &CChartControl::CopyImage);
    menu.addAction(QStringLiteral("Save image..."), this, [this] { SaveImage(); });
    menu.exec(event->globalPos());
}

}  // namespace kv::ui
