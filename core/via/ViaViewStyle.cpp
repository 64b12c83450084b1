#include "core/via/ViaViewStyle.h"

#include "core/shared/Misc_String.h"
#include "kvcomctl/ViaRecords.h"

namespace kv::via_view {

std::string LengthText(double metres, bool metric) {
    char text[kNumberTextCapacity + kUnitTextCapacity + 2];
    FormatLength(metres, text, sizeof text - 1, metric);
    return text;
}

std::string ShapeText(int32_t shape) {
    switch (shape) {
        case PAD_SHAPE_ROUND:
            return "RND";
        case PAD_SHAPE_RECTANGLE:
            return "RECT";
        case PAD_SHAPE_OVAL:
            return "OVAL";
        case PAD_SHAPE_OBLONG:
            return "OBL";
        case PAD_SHAPE_CUSTOM:
            return "CUST";
        default:
            return "";
    }
}

}  // namespace kv::via_view
