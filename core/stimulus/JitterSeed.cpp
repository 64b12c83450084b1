#include "core/stimulus/JitterSeed.h"

#include <ctime>

#include "core/settings/ProfileStore.h"

namespace kv {
namespace {

constexpr std::string_view kSection = "STIMULUSDATA";
constexpr std::string_view kEntry = "jitterSeed";

int g_seed = kDefaultJitterSeed;
bool g_lastRepeatable = false;

}  // namespace

void SetJitterSeed(int seed) {
    g_seed = seed < 0 ? kDefaultJitterSeed : seed;
}

int CurrentJitterSeed() {
    return g_seed;
}

void ResetJitterSeedState() {
    g_seed = kDefaultJitterSeed;
    g_lastRepeatable = false;
}

int NextJitterSeed(bool repeatable, const AppProfile& applicationProfile) {
    const auto store = OpenProfileStore(applicationProfile);
    if (repeatable) {
        SetJitterSeed(-1);
        SetJitterSeed(GetProfileInt(*store, kSection, kEntry, g_seed));
        g_lastRepeatable = true;
        return g_seed;
    }
    if (g_lastRepeatable) {
        const auto now = static_cast<long long>(std::time(nullptr));
        int seed = static_cast<int>(now & 0x7fffffff);
        if (seed % 2 == 0) {
            ++seed;
        }
        SetJitterSeed(seed);
        g_lastRepeatable = false;
    }
    WriteProfileInt(*store, kSection, kEntry, g_seed);
    return -1;
}

}  // namespace kv
