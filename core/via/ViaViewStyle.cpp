#include "core/via/ViaViewStyle.h"

#include <array>

#include "kvcomctl/ViaRecords.h"

namespace kv::via_view {

std::string ShapeText(int32_t shape) {
    // Indexed by the shape code; 0 and 1 are no shape.
    static constexpr std::array<const char*, 7> kShapes{"",     "",    "RND", "RECT",
                                                        "OVAL", "OBL", "CUST"};
    return shape >= 0 && shape < static_cast<int32_t>(kShapes.size())
               ? kShapes[static_cast<std::size_t>(shape)]
               : "";
}

}  // namespace kv::via_view
