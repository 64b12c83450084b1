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

CChartControl::CChartControl(QWidget* parent)
    : QWidget(parent),
      m_chart(std::make_unique<Chart>()),
      m_dialogChooser(std::make_unique<QtFileChooser>(this)) {
    // The picture covers the whole control: nothing needs erasing first.
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    MeasureFont();
    m_chart->Fit();
}

CChartControl::~CChartControl() = default;

void CChartControl::MeasureFont() {
    // The label spacings and the margins come from the width of a digit and
    // the height of a line of the control's font.
    const QFontMetrics metrics(font());
    m_chart->SetTextMetrics(metrics.horizontalAdvance(QLatin1Char('0')), metrics.height());
    Changed();
}

void CChartControl::Changed() {
    update();
}

void CChartControl::AddCurve(Curve curve) {
    m_chart->AddCurve(std::move(curve));
    Changed();
}

void CChartControl::AddCurve(const double* x, const double* y, int count, uint32_t colour,
                             uint32_t identifier) {
    Curve curve(x, y, count, colour);
    curve.m_identifier = identifier;
    AddCurve(std::move(curve));
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

QImage CChartControl::RenderImage() const {
    return RenderCanvasImage(size(), font(), [this](ICanvas& canvas) { m_chart->Paint(canvas); });
}

void CChartControl::CopyImage() {
    QApplication::clipboard()->setImage(RenderImage());
}

bool CChartControl::SaveImage() {
    IFileChooser& chooser = m_chooser != nullptr ? *m_chooser : *m_dialogChooser;
    return SaveCanvasImageAs(chooser, {"chart", QStringLiteral("Chart"), size(), font()},
                             [this](ICanvas& canvas) { m_chart->Paint(canvas); });
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
    m_chart->Paint(canvas);
}

void CChartControl::resizeEvent(QResizeEvent* /*event*/) {
    m_chart->SetClientRect({0, 0, width(), height()});
    Changed();
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
