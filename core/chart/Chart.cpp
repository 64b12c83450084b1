#include "core/chart/Chart.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "core/chart/AxisMapping.h"
#include "core/chart/AxisText.h"
#include "core/chart/CurveReduction.h"

namespace kv {
namespace {

// Room around the plot in digits and text lines: y labels as wide as
// " -8.88e+88 " and the unit, half an x label to the right, a line above,
// and below the x labels, the legend-free gap and the readout line.
constexpr int kLeftDigits = 11;
constexpr int kRightDigits = 4;
constexpr int kBottomLines = 4;
// The smallest relative range a zoom goes down to, well above the 1e-12
// at which a range counts as degenerate and would be widened.
constexpr double kMinimumRelativeRange = 1e-9;

constexpr Range kDefaultLinear{0.0, 1.0};
constexpr Range kDefaultLogarithmic{1.0, 10.0};

double ToExponent(double value, bool logarithmic) {
    return logarithmic ? std::log10(value) : value;
}

double FromExponent(double exponent, bool logarithmic) {
    return logarithmic ? std::pow(10.0, exponent) : exponent;
}

bool Resolvable(Range range, bool logarithmic) {
    const double lo = ToExponent(range.lo, logarithmic);
    const double hi = ToExponent(range.hi, logarithmic);
    if (!std::isfinite(lo) || !std::isfinite(hi) || !(lo < hi)) {
        return false;
    }
    const double magnitude = std::fmax(std::fabs(range.lo), std::fabs(range.hi));
    return magnitude == 0.0 || (range.hi - range.lo) / magnitude >= kMinimumRelativeRange;
}

}  // namespace

LabelSpacing LabelSpacingFromFont(int digitWidth, int textHeight) {
    return {8 * std::max(digitWidth, 1), std::max(textHeight, 1)};
}

Chart::Chart() {
    SetTextMetrics(kNominalDigitWidth, kNominalTextHeight);
}

void Chart::AddCurve(Curve curve) {
    m_indexes.emplace_back(curve.m_points);
    m_curves.push_back(std::move(curve));
    m_tracked.reset();
}

void Chart::RemoveAllCurves() {
    m_curves.clear();
    m_indexes.clear();
    m_tracked.reset();
}

void Chart::SetCurveName(uint32_t identifier, std::string name) {
    for (auto& [id, text] : m_names) {
        if (id == identifier) {
            text = std::move(name);
            return;
        }
    }
    m_names.emplace_back(identifier, std::move(name));
}

std::optional<std::string_view> Chart::CurveName(uint32_t identifier) const {
    for (const auto& [id, text] : m_names) {
        if (id == identifier) {
            return text;
        }
    }
    return std::nullopt;
}

void Chart::SetUnit(ChartAxis axis, std::string unit) {
    m_axes[Index(axis)].unit = std::move(unit);
    LayOut();
}

void Chart::SetLogarithmic(ChartAxis axis, bool logarithmic) {
    if (m_axes[Index(axis)].logarithmic != logarithmic) {
        m_axes[Index(axis)].logarithmic = logarithmic;
        FitAxis(axis);
    }
}

void Chart::SetPrefixes(bool prefixes) {
    m_prefixes = prefixes;
    UpdateScales();
}

void Chart::SetTextMetrics(int digitWidth, int textHeight) {
    m_digitWidth = std::max(digitWidth, 1);
    m_textHeight = std::max(textHeight, 1);
    const LabelSpacing spacing = LabelSpacingFromFont(m_digitWidth, m_textHeight);
    m_axes[Index(ChartAxis::X)].minLabelSpacing = spacing.x;
    m_axes[Index(ChartAxis::Y)].minLabelSpacing = spacing.y;
    LayOut();
}

void Chart::SetClientRect(const Rect& client) {
    m_client = client;
    LayOut();
}

void Chart::LayOut() {
    const int unitDigits = static_cast<int>(m_axes[Index(ChartAxis::Y)].unit.size());
    m_plot.left = m_client.left + m_digitWidth * (kLeftDigits + unitDigits);
    m_plot.right = std::max(m_plot.left + 2, m_client.right - m_digitWidth * kRightDigits);
    m_plot.top = m_client.top + m_textHeight;
    m_plot.bottom =
        std::max(m_plot.top + 2, m_client.bottom - kBottomLines * m_textHeight - kChartTickLength);
    m_tracked.reset();
    UpdateScales();
}

void Chart::UpdateScales() {
    for (const ChartAxis axis : {ChartAxis::X, ChartAxis::Y}) {
        ChartAxisState& state = m_axes[Index(axis)];
        AxisRequest request;
        request.lo = state.visible.lo;
        request.hi = state.visible.hi;
        request.pixels = axis == ChartAxis::X ? m_plot.Width() : m_plot.Height();
        request.logarithmic = state.logarithmic;
        request.unit = state.unit;
        request.prefixes = m_prefixes;
        request.minLabelSpacing = state.minLabelSpacing;
        request.yAxis = axis == ChartAxis::Y;
        try {
            m_scales[Index(axis)] = ScaleAxis(request);
            state.majorStep = m_scales[Index(axis)]->step;
        } catch (const std::invalid_argument&) {
            // No grid for a range no step fits; the curves still draw.
            m_scales[Index(axis)].reset();
        }
    }
}

std::optional<Range> Chart::DataRange(ChartAxis axis) const {
    const bool logarithmic = m_axes[Index(axis)].logarithmic;
    std::optional<Range> range;
    const auto include = [&range](double lo, double hi) {
        range = range ? Range{std::fmin(range->lo, lo), std::fmax(range->hi, hi)} : Range{lo, hi};
    };
    const double VEC2::*coordinate = axis == ChartAxis::X ? &VEC2::x : &VEC2::y;
    if (m_layer != nullptr) {
        if (const auto extent = m_layer->Extent()) {
            const double lo = extent->first.*coordinate;
            const double hi = extent->second.*coordinate;
            // On a logarithmic axis only the part above 0 shows.
            if (!logarithmic || hi > 0.0) {
                include(logarithmic && lo <= 0.0 ? hi : lo, hi);
            }
        }
    }
    for (const Curve& curve : m_curves) {
        if (curve.m_points.empty()) {
            continue;
        }
        const double lo = curve.m_minimum.*coordinate;
        const double hi = curve.m_maximum.*coordinate;
        if (!logarithmic || lo > 0.0) {
            include(lo, hi);
            continue;
        }
        // A logarithmic axis shows only the values above 0.
        for (const VEC2& point : curve.m_points) {
            const double value = point.*coordinate;
            if (value > 0.0) {
                include(value, value);
            }
        }
    }
    return range;
}

void Chart::Fit() {
    FitAxis(ChartAxis::X);
    FitAxis(ChartAxis::Y);
}

void Chart::FitAxis(ChartAxis axis) {
    ChartAxisState& state = m_axes[Index(axis)];
    const Range fallback = state.logarithmic ? kDefaultLogarithmic : kDefaultLinear;
    const Range data = WidenRange(DataRange(axis).value_or(fallback), state.logarithmic);
    state.visible = data;
    UpdateScales();
    // The fitted view ends on the first and last grid lines around the data.
    if (const auto& scale = m_scales[Index(axis)]; scale && !scale->lines.empty()) {
        state.visible = {scale->lines.front().value, scale->lines.back().value};
    } else if (!Resolvable(data, state.logarithmic)) {
        state.visible = fallback;
    }
    m_tracked.reset();
    UpdateScales();
}

void Chart::SetVisibleRange(ChartAxis axis, Range range) {
    ChartAxisState& state = m_axes[Index(axis)];
    if (range.hi < range.lo) {
        std::swap(range.lo, range.hi);
    }
    range = WidenRange(range, state.logarithmic);
    if (Resolvable(range, state.logarithmic)) {
        state.visible = range;
        m_tracked.reset();
        UpdateScales();
    }
}

void Chart::ZoomAbout(Point at, double factor) {
    at.x = std::clamp(at.x, m_plot.left, m_plot.right - 1);
    at.y = std::clamp(at.y, m_plot.top, m_plot.bottom - 1);
    const VEC2 centre = ToValue(at);
    for (const ChartAxis axis : {ChartAxis::X, ChartAxis::Y}) {
        const ChartAxisState& state = m_axes[Index(axis)];
        const bool logarithmic = state.logarithmic;
        const double c = ToExponent(axis == ChartAxis::X ? centre.x : centre.y, logarithmic);
        const double lo = ToExponent(state.visible.lo, logarithmic);
        const double hi = ToExponent(state.visible.hi, logarithmic);
        SetVisibleRange(axis, {FromExponent(c - (c - lo) * factor, logarithmic),
                               FromExponent(c + (hi - c) * factor, logarithmic)});
    }
}

void Chart::ZoomToPixels(const Rect& band) {
    const VEC2 a = ToValue({band.left, band.bottom - 1});
    const VEC2 b = ToValue({band.right - 1, band.top});
    SetVisibleRange(ChartAxis::X, {std::fmin(a.x, b.x), std::fmax(a.x, b.x)});
    SetVisibleRange(ChartAxis::Y, {std::fmin(a.y, b.y), std::fmax(a.y, b.y)});
}

void Chart::PanPixels(int dx, int dy) {
    const Point centre{(m_plot.left + m_plot.right) / 2, (m_plot.top + m_plot.bottom) / 2};
    const VEC2 from = ToValue(centre);
    const VEC2 to = ToValue({centre.x - dx, centre.y - dy});
    for (const ChartAxis axis : {ChartAxis::X, ChartAxis::Y}) {
        const ChartAxisState& state = m_axes[Index(axis)];
        const bool logarithmic = state.logarithmic;
        const double shift = axis == ChartAxis::X
                                 ? ToExponent(to.x, logarithmic) - ToExponent(from.x, logarithmic)
                                 : ToExponent(to.y, logarithmic) - ToExponent(from.y, logarithmic);
        SetVisibleRange(
            axis, {FromExponent(ToExponent(state.visible.lo, logarithmic) + shift, logarithmic),
                   FromExponent(ToExponent(state.visible.hi, logarithmic) + shift, logarithmic)});
    }
}

AxisMapping Chart::Mapping(ChartAxis axis) const {
    const ChartAxisState& state = m_axes[Index(axis)];
    return axis == ChartAxis::X
               ? AxisMapping(state.visible, state.logarithmic, m_plot.left, m_plot.right - 1)
               : AxisMapping(state.visible, state.logarithmic, m_plot.bottom - 1, m_plot.top);
}

Point Chart::ToPixel(const VEC2& value) const {
    const AxisMapping x = Mapping(ChartAxis::X);
    const AxisMapping y = Mapping(ChartAxis::Y);
    return {x.ToPixel(value.x), y.ToPixel(value.y)};
}

VEC2 Chart::ToValue(Point pixel) const {
    const AxisMapping x = Mapping(ChartAxis::X);
    const AxisMapping y = Mapping(ChartAxis::Y);
    return {x.ToValue(pixel.x), y.ToValue(pixel.y)};
}

void Chart::OnMouseDown(Point at, bool pan) {
    if (!m_plot.Contains(at)) {
        return;
    }
    if (pan) {
        m_panning = true;
        m_panFrom = at;
        m_panStart[0] = m_axes[0].visible;
        m_panStart[1] = m_axes[1].visible;
        m_tracked.reset();
    } else {
        m_bandActive = true;
        m_bandFrom = at;
        m_bandTo = at;
    }
}

void Chart::OnMouseMove(Point at) {
    if (m_panning) {
        // Always from where the drag began, so rounding never adds up.
        m_axes[0].visible = m_panStart[0];
        m_axes[1].visible = m_panStart[1];
        PanPixels(at.x - m_panFrom.x, at.y - m_panFrom.y);
        m_pointer.reset();
        return;
    }
    if (m_bandActive) {
        m_bandTo = {std::clamp(at.x, m_plot.left, m_plot.right - 1),
                    std::clamp(at.y, m_plot.top, m_plot.bottom - 1)};
    }
    if (m_plot.Contains(at)) {
        m_pointer = at;
        Track(at);
    } else {
        m_pointer.reset();
        m_tracked.reset();
    }
}

void Chart::OnMouseUp(Point at) {
    if (m_panning) {
        m_panning = false;
        OnMouseMove(at);
        return;
    }
    if (m_bandActive) {
        m_bandActive = false;
        const Rect band = RubberBand();
        if (band.Width() >= kRubberBandMinimum && band.Height() >= kRubberBandMinimum) {
            ZoomToPixels(band);
        }
    }
}

void Chart::OnMouseLeave() {
    m_pointer.reset();
    m_tracked.reset();
}

void Chart::OnWheel(Point at, double notches) {
    ZoomAbout(at, std::pow(kWheelZoom, notches));
    if (m_pointer) {
        Track(*m_pointer);
    }
}

void Chart::OnDoubleClick(Point /*at*/) {
    m_bandActive = false;
    Fit();
}

bool Chart::OnKey(ChartKey key) {
    const Point centre{(m_plot.left + m_plot.right) / 2, (m_plot.top + m_plot.bottom) / 2};
    const int stepX = std::max(m_plot.Width() / 10, 1);
    const int stepY = std::max(m_plot.Height() / 10, 1);
    switch (key) {
        case ChartKey::Home:
            Fit();
            return true;
        case ChartKey::Plus:
            ZoomAbout(centre, kWheelZoom);
            return true;
        case ChartKey::Minus:
            ZoomAbout(centre, 1.0 / kWheelZoom);
            return true;
        case ChartKey::Left:
            PanPixels(stepX, 0);
            return true;
        case ChartKey::Right:
            PanPixels(-stepX, 0);
            return true;
        case ChartKey::Up:
            PanPixels(0, stepY);
            return true;
        case ChartKey::Down:
            PanPixels(0, -stepY);
            return true;
        case ChartKey::Other:
            break;
    }
    return false;
}

Rect Chart::RubberBand() const {
    return {std::min(m_bandFrom.x, m_bandTo.x), std::min(m_bandFrom.y, m_bandTo.y),
            std::max(m_bandFrom.x, m_bandTo.x) + 1, std::max(m_bandFrom.y, m_bandTo.y) + 1};
}

void Chart::Track(Point at) {
    m_tracked.reset();
    const AxisMapping x = Mapping(ChartAxis::X);
    const AxisMapping y = Mapping(ChartAxis::Y);
    // Within a text line of the pointer, the nearest place on any curve.
    const int radius = m_textHeight;
    double best = static_cast<double>(radius) * radius;
    for (size_t c = 0; c < m_curves.size(); ++c) {
        const std::span<const VEC2> points = m_curves[c].m_points;
        IndexRange range{0, points.size()};
        if (m_indexes[c].RisingX()) {
            range = VisibleIndexRange(points, x, at.x - radius, at.x + radius);
        }
        for (size_t i = range.begin; i < range.end; ++i) {
            const Point a{x.ToPixel(points[i].x), y.ToPixel(points[i].y)};
            const size_t next = i + 1 < range.end ? i + 1 : i;
            const Point b{x.ToPixel(points[next].x), y.ToPixel(points[next].y)};
            const double dx = b.x - a.x;
            const double dy = b.y - a.y;
            const double length = dx * dx + dy * dy;
            double t = length > 0.0 ? ((at.x - a.x) * dx + (at.y - a.y) * dy) / length : 0.0;
            t = std::clamp(t, 0.0, 1.0);
            const double px = a.x + t * dx - at.x;
            const double py = a.y + t * dy - at.y;
            const double distance = px * px + py * py;
            if (distance <= best) {
                best = distance;
                const VEC2& p = points[i];
                const VEC2& q = points[next];
                m_tracked = TrackedPoint{c,
                                         {p.x + t * (q.x - p.x), p.y + t * (q.y - p.y)},
                                         {static_cast<int>(std::lround(a.x + t * dx)),
                                          static_cast<int>(std::lround(a.y + t * dy))}};
            }
        }
    }
}

std::string Chart::Readout() const {
    if (!m_pointer || m_panning) {
        return {};
    }
    ReadoutRequest request;
    request.xUnit = m_axes[0].unit;
    request.yUnit = m_axes[1].unit;
    request.prefixes = m_prefixes;
    if (m_tracked) {
        request.x = m_tracked->value.x;
        request.y = m_tracked->value.y;
        request.curveName = CurveName(m_curves[m_tracked->curve].m_identifier).value_or("");
    } else {
        const VEC2 value = ToValue(*m_pointer);
        request.x = value.x;
        request.y = value.y;
    }
    return ReadoutText(request);
}

}  // namespace kv
