#pragma once

#include "core/stimulus/StimulusData.h"

// The bit pattern the stimulus pages show for a sequence kind, and their
// level list: its first item ("High" / "Falling") stands for initial state
// 1, its second ("Low" / "Rising") for 0.

namespace kv {

inline int InitStateOfLevel(int levelIndex) {
    return levelIndex == 0 ? 1 : 0;
}
inline int LevelOfInitState(int initState) {
    return initState != 0 ? 0 : 1;
}

// The pattern of `kind` with the level list at `levelIndex`: none for a
// custom sequence (the user draws it), the fixed patterns, and every other
// kind generated from `data`'s settings.
BitVector KindPattern(int kind, int levelIndex, const CStimulusData& data);

}  // namespace kv
