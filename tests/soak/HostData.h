#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "kvcomctl/kvcomctl.h"
#include "tests/soak/SoakRandom.h"

namespace kv::soak {

// What a host hands the library: valid values, or (when `hostile`) anything the contract's
// types allow: NaN, infinities, zero, negative and huge numbers, null and unterminated texts,
// counts that disagree with each other.
double AnyReal(SoakRandom& random, bool hostile, double valid);
int32_t AnyInt(SoakRandom& random, bool hostile, int32_t valid);
// A text argument: nullopt stands for a null pointer.
std::optional<std::string> AnyText(SoakRandom& random, bool hostile, const std::string& valid);
inline const char* Pointer(const std::optional<std::string>& text) {
    return text ? text->c_str() : nullptr;
}
// A fixed-size name field, when hostile sometimes filled to the last byte without a NUL.
void FillName(SoakRandom& random, bool hostile, char* name, std::size_t size,
              const std::string& valid);

void FillStimulus(SoakRandom& random, bool hostile, IEyeDiagramData& data);
PADDATA AnyPad(SoakRandom& random, bool hostile);

// Records a host passes with a count. The array holds as many records as the vector; the count
// the host declares may be smaller, zero or negative, and the pointer may be null whatever the
// count says. A count larger than its array would be the host's own overrun, which no callee
// can see, so it is never given.
template <class Record>
struct Counted {
    std::vector<Record> records;
    int32_t count = 0;
    bool null = false;
    Record* Data() { return null ? nullptr : records.data(); }
    const Record* Data() const { return null ? nullptr : records.data(); }
};
Counted<VIAELEMENT> MakeElements(SoakRandom& random, bool hostile, int32_t layers);
Counted<int32_t> MakeLayerList(SoakRandom& random, bool hostile, int32_t layers);
Counted<CROSSSECTIONTRACE> MakeTraces(SoakRandom& random, bool hostile, int32_t layers);

// A board as a host describes it: a stackup and a padstack with one pad per layer, or a
// number of pads that disagrees with it.
struct HostBoard {
    Counted<STACKUPLAYER> layers;
    PADSTACK padstack{};
    Counted<PADDATA> pads;
};
HostBoard MakeBoard(SoakRandom& random, bool hostile);
// Copies the board into data the library owns and frees (arrays from new[]).
void PlaceBoard(const HostBoard& board, IViaVizData& data);
// The stackup record of a board, pointing into it.
STACKUPARRAY StackupOf(HostBoard& board);

// The host's own via data, as a host hands the padstack editor its via.
class HostViaData final : public IViaVizData {
public:
    explicit HostViaData(HostBoard board);
    STACKUPARRAY* GetStackup() override { return &m_stackup; }
    PADSTACK* GetPadstack() override { return &m_board.padstack; }
    void* GetViaReference() override { return nullptr; }
    int32_t GetViaCount() override { return 1; }
    void* GetNetReference() override { return nullptr; }
    double GetFirstValue() override { return 0.0; }
    double GetSecondValue() override { return 0.0; }
    double GetThirdValue() override { return 0.0; }
    bool GetFlag() override { return false; }

private:
    HostBoard m_board;
    STACKUPARRAY m_stackup{};
};

}  // namespace kv::soak
