#pragma once

#include <cstdint>
#include <string>

// What the walker's region row shows and allows: the caption and whether the
// user can step back or on. Regions are counted from 0 by the host and shown
// from 1.

namespace kv {

struct RegionState {
    std::string caption;
    bool canGoBack = false;
    bool canGoOn = false;
};

// "Region 2 of 5: <title>" for index 1 of 5; without a title the colon goes
// too. No regions (count 0 or less) read "No coupling region"; an index off
// the range still shows, with both steps towards the range allowed.
RegionState DescribeRegion(int32_t index, int32_t count, const char* title);

}  // namespace kv
