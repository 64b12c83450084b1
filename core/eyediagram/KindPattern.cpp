#include "core/eyediagram/KindPattern.h"

#include "core/stimulus/FixedPatterns.h"
#include "core/stimulus/SequenceType.h"

namespace kv {

BitVector KindPattern(int kind, int levelIndex, const CStimulusData& data) {
    const int initState = InitStateOfLevel(levelIndex);
    if (kind == seq::kCustom) {
        return {};
    }
    if (std::optional<BitVector> fixed = FixedPattern(kind, initState)) {
        return *fixed;
    }
    CStimulusData generator(data);
    generator.m_seqType = kind;
    BitVector bits;
    generator.GenerateSequence(initState, bits);
    return bits;
}

}  // namespace kv
