#pragma once

#include "core/stimulus/StimulusData.h"

// What the stimulus pages check when they open, as the mask page checks the
// mask. The setters take any value from a host, but before a page converts
// jitter between time and percent of the bit interval, or generates a
// sequence, it needs a bit interval that is a positive finite number, counts
// within the data object's own limits (so that a sequence stays bounded) and
// reals that are numbers.

namespace kv {

// Replaces each value of `data` that a stimulus page cannot work with by its
// default, leaving the others; true when anything was replaced.
bool ReplaceValuesPagesCannotUse(CStimulusData& data);

}  // namespace kv
