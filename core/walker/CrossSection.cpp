#include "core/walker/CrossSection.h"

#include <algorithm>
#include <cmath>

#include "core/shared/Misc_String.h"
#include "core/via/LayerRole.h"

namespace kv {
namespace {

namespace color = crosssection_colors;

// Room left and right of the outermost traces, as a share of their span.
constexpr double kSideRoom = 1.25;
constexpr int kTickHalf = 3;
constexpr int kLabelGap = 6;

constexpr BandColors kBandColors{color::kDielectric, color::kSignalLayer, color::kPlane};

uint32_t RoleColor(int32_t role) {
    switch (role) {
        case CROSSSECTION_ROLE_CURRENT:
            return color::kCurrentNet;
        case CROSSSECTION_ROLE_COUPLED:
            return color::kCoupledNet;
        default:
            return color::kOtherNet;
    }
}

bool OnStackup(const CrossSectionData& data, const CrossSectionTrace& trace) {
    return trace.layer >= 0 && trace.layer < static_cast<int32_t>(data.layers.size());
}

// Edge-to-edge separations between the current net and each coupled net on
// the same layer, stacked upwards above the layer when there are several.
void AddDimensions(const CrossSectionData& data, CrossSectionLayout& layout, int textHeight) {
    std::vector<int> perLayer(data.layers.size(), 0);
    for (const CrossSectionTrace& victim : data.traces) {
        if (victim.role != CROSSSECTION_ROLE_CURRENT || !OnStackup(data, victim)) {
            continue;
        }
        for (const CrossSectionTrace& other : data.traces) {
            if (other.role != CROSSSECTION_ROLE_COUPLED || other.layer != victim.layer) {
                continue;
            }
            const double gap = std::abs(other.x - victim.x) - (other.width + victim.width) / 2;
            if (gap <= 0) {
                continue;
            }
            const double sign = other.x > victim.x ? 1.0 : -1.0;
            const double fromX = victim.x + sign * victim.width / 2;
            const double toX = other.x - sign * other.width / 2;
            const auto toPixel = [&](double x) {
                return layout.centreX + static_cast<int>(std::lround(x * layout.pixelsPerMetre));
            };
            const int level = perLayer[static_cast<std::size_t>(victim.layer)]++;
            const int bandTop = layout.bands[static_cast<std::size_t>(victim.layer)].rect.top;
            CrossSectionDimension dimension;
            dimension.y = bandTop - kTickHalf - 1 - level * (textHeight + kTickHalf + 2);
            dimension.x1 = std::min(toPixel(fromX), toPixel(toX));
            dimension.x2 = std::max(toPixel(fromX), toPixel(toX));
            dimension.text = LengthText(gap, true);
            layout.dimensions.push_back(std::move(dimension));
        }
    }
}

}  // namespace

CrossSectionData CrossSectionData::Copy(const STACKUPARRAY* stackup,
                                        const CROSSSECTIONTRACE* traces, int32_t count) {
    CrossSectionData data;
    if (stackup != nullptr && stackup->layers != nullptr && stackup->count > 0) {
        for (int32_t i = 0; i < stackup->count; ++i) {
            const STACKUPLAYER& layer = stackup->layers[i];
            data.layers.push_back(
                {std::string(FieldText(layer.name)), layer.kind, layer.usage,
                 std::isfinite(layer.thickness) ? std::max(0.0, layer.thickness) : 0.0});
        }
    }
    if (traces != nullptr && count > 0) {
        for (int32_t i = 0; i < count; ++i) {
            const CROSSSECTIONTRACE& trace = traces[i];
            if (!std::isfinite(trace.x) || !std::isfinite(trace.width)) {
                continue;  // no place on the board to draw it at
            }
            data.traces.push_back({trace.layer, trace.x, std::max(0.0, trace.width), trace.role,
                                   std::string(FieldText(trace.net))});
        }
    }
    return data;
}

CrossSectionLayout ComputeCrossSectionLayout(const CrossSectionData& data, const Rect& client,
                                             std::string_view highlightedNet,
                                             const ITextMetrics& metrics) {
    CrossSectionLayout layout;
    layout.client = client;
    double thickness = 0;
    for (const CrossSectionLayer& layer : data.layers) {
        thickness += layer.thickness;
    }
    if (data.layers.empty() || thickness <= 0) {
        layout.emptyText = "No cross-section for this region";
        return layout;
    }
    int labelWidth = 0;
    for (const CrossSectionLayer& layer : data.layers) {
        labelWidth = std::max(labelWidth, metrics.TextExtent(layer.name).width);
    }
    const int textHeight = std::max(1, metrics.TextExtent("0").height);
    // Room above the stackup for a dimension on the top layer.
    const int top = client.top + kCrossSectionMargin + textHeight + kTickHalf + 2;
    layout.area = {client.left + kCrossSectionMargin + labelWidth + kLabelGap, top,
                   client.right - kCrossSectionMargin, client.bottom - kCrossSectionMargin};
    if (layout.area.Width() <= 0 || layout.area.Height() <= 0) {
        layout.emptyText = "No room to draw";
        return layout;
    }

    // The widest reach of any trace from the current net's centre decides
    // the horizontal scale; with none, the stackup is shown as wide as thick.
    double reach = 0;
    for (const CrossSectionTrace& trace : data.traces) {
        if (OnStackup(data, trace)) {
            reach = std::max(reach, std::abs(trace.x) + trace.width / 2);
        }
    }
    const double halfSpan = reach > 0 ? reach * kSideRoom : thickness;
    layout.pixelsPerMetre =
        std::min(layout.area.Width() / (2 * halfSpan), layout.area.Height() / thickness);
    layout.centreX = layout.area.left + layout.area.Width() / 2;

    // Bands tile without gaps: each edge is the rounded running thickness.
    const int stackHeight = static_cast<int>(std::lround(thickness * layout.pixelsPerMetre));
    const int stackTop = layout.area.top + (layout.area.Height() - stackHeight) / 2;
    double running = 0;
    for (std::size_t i = 0; i < data.layers.size(); ++i) {
        const int bandTop =
            stackTop + static_cast<int>(std::lround(running * layout.pixelsPerMetre));
        running += data.layers[i].thickness;
        const int bandBottom =
            stackTop + static_cast<int>(std::lround(running * layout.pixelsPerMetre));
        layout.bands.push_back({{layout.area.left, bandTop, layout.area.right, bandBottom},
                                static_cast<int>(i),
                                BandColor(data.layers[i].kind, data.layers[i].usage, kBandColors)});
        const int labelY = (bandTop + bandBottom - textHeight) / 2;
        layout.labels.push_back({{client.left + kCrossSectionMargin, labelY}, data.layers[i].name});
    }
    // Neighbouring thin layers would print their names over each other:
    // a name too close to the one above it is left out.
    for (std::size_t i = 1, shown = 0; i < layout.labels.size(); ++i) {
        if (layout.labels[i].first.y < layout.labels[shown].first.y + textHeight) {
            layout.labels[i].second.clear();
        } else {
            shown = i;
        }
    }

    for (std::size_t i = 0; i < data.traces.size(); ++i) {
        const CrossSectionTrace& trace = data.traces[i];
        if (!OnStackup(data, trace)) {
            continue;
        }
        const Rect band = layout.bands[static_cast<std::size_t>(trace.layer)].rect;
        const int left =
            layout.centreX +
            static_cast<int>(std::lround((trace.x - trace.width / 2) * layout.pixelsPerMetre));
        const int right = std::max(
            left + 1, layout.centreX + static_cast<int>(std::lround((trace.x + trace.width / 2) *
                                                                    layout.pixelsPerMetre)));
        const bool highlighted = !highlightedNet.empty() && trace.net == highlightedNet;
        layout.traces.push_back({{left, band.top, right, std::max(band.top + 1, band.bottom)},
                                 static_cast<int>(i),
                                 highlighted ? color::kHighlighted : RoleColor(trace.role),
                                 highlighted});
    }
    AddDimensions(data, layout, textHeight);
    return layout;
}

void PaintCrossSection(ICanvas& canvas, const CrossSectionLayout& layout) {
    canvas.FillRect(layout.client, color::kBackground);
    canvas.SetTransparentBackground(true);
    canvas.SetTextColor(color::kText);
    if (!layout.emptyText.empty()) {
        canvas.DrawTextCentered(layout.client, layout.emptyText);
        return;
    }
    canvas.SelectPen(color::kBandEdge, 0);
    for (const CrossSectionBand& band : layout.bands) {
        canvas.FillRect(band.rect, band.color);
        canvas.MoveTo({band.rect.left, band.rect.top});
        canvas.LineTo({band.rect.right, band.rect.top});
    }
    if (!layout.bands.empty()) {
        const int bottom = layout.bands.back().rect.bottom;
        canvas.MoveTo({layout.area.left, bottom});
        canvas.LineTo({layout.area.right, bottom});
    }
    for (const auto& [at, name] : layout.labels) {
        if (!name.empty()) {
            canvas.TextOut(at, name);
        }
    }
    // Highlighted traces last, so nothing covers their outline.
    for (const bool highlightedPass : {false, true}) {
        for (const CrossSectionTraceBox& box : layout.traces) {
            if (box.highlighted != highlightedPass) {
                continue;
            }
            canvas.FillRect(box.rect, box.color);
            if (box.highlighted) {
                canvas.SelectPen(color::kOutline, 1);
                canvas.SelectBrush(box.color);
                canvas.Rectangle(
                    {box.rect.left - 1, box.rect.top - 1, box.rect.right + 1, box.rect.bottom + 1});
            }
        }
    }
    canvas.SelectPen(color::kDimension, 0);
    for (const CrossSectionDimension& d : layout.dimensions) {
        canvas.MoveTo({d.x1, d.y});
        canvas.LineTo({d.x2 + 1, d.y});
        for (const int x : {d.x1, d.x2}) {
            canvas.MoveTo({x, d.y - kTickHalf});
            canvas.LineTo({x, d.y + kTickHalf + 1});
        }
        const Extent extent = canvas.TextExtent(d.text);
        canvas.TextOut({(d.x1 + d.x2 - extent.width) / 2, d.y - kTickHalf - extent.height}, d.text);
    }
}

}  // namespace kv
