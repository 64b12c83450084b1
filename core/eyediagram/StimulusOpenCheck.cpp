#include "core/eyediagram/StimulusOpenCheck.h"

#include "core/stimulus/StimulusRules.h"

namespace kv {

bool ReplaceValuesPagesCannotUse(CStimulusData& data) {
    const CStimulusData defaults;
    bool replaced = false;
    // In the order of the keys, so that the skip is held to the cycle count
    // as it stands after its own check.
    for (const StimulusRule& rule : StimulusRules()) {
        if (!rule.IsMaskValue() && !IsHeld(rule, data, true)) {
            rule.set(data, rule.get(defaults));
            replaced = true;
        }
    }
    return replaced;
}

}  // namespace kv
