#include "core/walker/RegionCaption.h"

namespace kv {

RegionState DescribeRegion(int32_t index, int32_t count, const char* title) {
    RegionState state;
    if (count <= 0) {
        state.caption = "No coupling region";
        return state;
    }
    state.caption = "Region " + std::to_string(static_cast<int64_t>(index) + 1) + " of " +
                    std::to_string(count);
    if (title != nullptr && *title != '\0') {
        state.caption += ": ";
        state.caption += title;
    }
    state.canGoBack = index > 0;
    state.canGoOn = index < count - 1;
    return state;
}

}  // namespace kv
