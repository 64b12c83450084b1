#pragma once

#include "core/stimulus/StimulusData.h"

// What the stimulus pages check when they open, as the mask page checks the
// mask: the setters take any value from a host, but a page can only show and
// convert values it could have been given by its own fields. A bit interval
// must be a positive finite number before jitter is converted between time
// and percent of it; counts must lie within the data object's own limits, so
// that a generated sequence stays bounded; every other real must be a number.

namespace kv {

// Replaces each value of `data` that a stimulus page cannot work with by its
// default, leaving the others; true when anything was replaced.
bool ReplaceValuesPagesCannotUse(CStimulusData& data);

}  // namespace kv
