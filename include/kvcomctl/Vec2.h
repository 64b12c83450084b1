#pragma once

#include <type_traits>

// One point of a chart curve, in the base units of the chart's two axes.
struct VEC2 {
    double x;  // abscissa
    double y;  // ordinate
};

static_assert(std::is_standard_layout_v<VEC2> && std::is_trivially_copyable_v<VEC2>);
