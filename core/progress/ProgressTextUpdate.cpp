#include "core/progress/ProgressTextUpdate.h"

namespace kv {

TextUpdatePlan PlanTextUpdate(bool controlExists, std::string_view stored, std::string_view next,
                              TextUpdateMode mode) {
    TextUpdatePlan plan;
    if (!controlExists) {
        // Nothing on screen yet: Attach shows the stored text later.
        plan.storeText = true;
        return plan;
    }
    const bool single = mode == TextUpdateMode::Single;
    if (next == stored) {
        plan.pumpMessages = single;
        return plan;
    }
    plan.storeText = true;
    plan.setControl = true;
    plan.repaintNow = !single;
    plan.pumpMessages = single;
    return plan;
}

}  // namespace kv
