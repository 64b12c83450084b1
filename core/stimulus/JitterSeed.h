#pragma once

// The module's jitter seed: one seed word for the life of the module, kept in
// the application's settings store ("STIMULUSDATA" / "jitterSeed") so that
// repeatable jitter (and 8B/10B data) is the same from run to run.

#include "core/shared/AppProfile.h"

namespace kv {

inline constexpr int kDefaultJitterSeed = 9796543;

// The seed for one use. Repeatable: the stored seed (the default seed when
// none is stored). Not repeatable: -1, no fixed seed; the first such use
// after a repeatable one makes a new odd seed from the clock and every such
// use stores the current seed. The seed lives in the application's own
// store, never in a location a caller saves a stimulus to.
int NextJitterSeed(bool repeatable, const AppProfile& applicationProfile);

// Sets the seed word; a negative seed restores the default.
void SetJitterSeed(int seed);
int CurrentJitterSeed();

// Back to the start of the module: the default seed, no repeatable use yet.
void ResetJitterSeedState();

}  // namespace kv
