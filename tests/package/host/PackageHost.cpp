// Calls the library's export directly, through the installed headers and
// the imported target, and checks that a fresh stimulus holds one cycle of
// the degree-5 PRBS.

#include <kvcomctl/kvcomctl.h>

#include <cstdio>
#include <set>

int main() {
    IKVComCtlFactory* factory = GetKVComCtlFactory();
    if (factory == nullptr || factory != GetKVComCtlFactory()) {
        std::fputs("GetKVComCtlFactory did not return one factory\n", stderr);
        return 1;
    }
    IEyeDiagramData* stimulus = factory->CreateStimulusData();
    const int count = stimulus->GetBitCount();
    // A maximal-length sequence of degree 5, read cyclically, shows 31
    // different 5-bit windows (all but one state: all zeros, or all ones when
    // the sequence is inverted).
    std::set<int> states;
    for (int start = 0; count == 31 && start < count; ++start) {
        int state = 0;
        for (int i = 0; i < 5; ++i) {
            state = state * 2 + (stimulus->GetBit((start + i) % count) ? 1 : 0);
        }
        states.insert(state);
    }
    factory->Destroy(stimulus);
    if (count != 31 || states.size() != 31) {
        std::fprintf(stderr,
                     "expected one cycle of the degree-5 PRBS, got %d bits with %zu states\n",
                     count, states.size());
        return 1;
    }
    std::puts("KVComCtl found, linked and loaded: 31 bits of the degree-5 PRBS");
    return 0;
}
