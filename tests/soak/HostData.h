#pragma once

#include <algorithm>
#include <climits>
#include <cstring>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "kvcomctl/kvcomctl.h"
#include "tests/soak/SoakRandom.h"

// What a host hands the library: valid values, or (when `hostile`) anything the contract's
// types allow: NaN, infinities, zero, negative and huge numbers, null and unterminated texts,
// counts that disagree with each other.
namespace kv::soak {

inline double AnyReal(SoakRandom& random, bool hostile, double valid) {
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInf = std::numeric_limits<double>::infinity();
    static constexpr double kHostile[] = {kNaN,    kInf,   -kInf,  0.0,    -0.0, -1.0,
                                          1e308,   -1e308, 5e-324, 1e-300, 1e9,  2147483648.0,
                                          -2.5e-4, 1e-12,  4e9,    -1e-9};
    return hostile && random.Chance(0.4) ? random.Pick(kHostile) : valid;
}

inline constexpr int32_t kHostileInts[] = {0,     -1,     1,    INT_MIN, INT_MAX, 32767, 32768,
                                           40000, 100000, -100, 7,       200,     31,    32};

inline int32_t AnyInt(SoakRandom& random, bool hostile, int32_t valid) {
    return hostile && random.Chance(0.4) ? random.Pick(kHostileInts) : valid;
}

// A text argument: nullopt stands for a null pointer.
inline std::optional<std::string> AnyText(SoakRandom& random, bool hostile,
                                          const std::string& valid) {
    static const std::string kHostile[] = {
        "", std::string("\xff\xfe\xc3(\xe2\x82", 6),  // not UTF-8
        "%s%n%d%%", "line\nbreak\ttab", "\xe2\x82\xac uro \xc3\x84"};
    if (!hostile || random.Chance(0.5)) {
        return valid;
    }
    switch (const int pick = random.Below(7)) {
        case 0:
            return std::nullopt;
        case 1:
            return std::string(random.Chance(0.5) ? 64 : 40000, 'N');
        default:
            return kHostile[pick - 2];
    }
}
inline const char* Pointer(const std::optional<std::string>& text) {
    return text ? text->c_str() : nullptr;
}

// A fixed-size name field, when hostile sometimes filled to the last byte without a NUL.
template <std::size_t size>
void FillName(SoakRandom& random, bool hostile, char (&name)[size], const std::string& valid) {
    if (hostile && random.Chance(0.3)) {
        std::memset(name, random.Chance(0.5) ? 'Z' : '\xc3', size);
        return;
    }
    const std::size_t kept = std::min(valid.size(), size - 1);
    std::memcpy(name, valid.data(), kept);
    std::memset(name + kept, 0, size - kept);
}

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

template <class Record, class Make>
Counted<Record> MakeCounted(SoakRandom& random, bool hostile, int size, Make make) {
    static constexpr int32_t kNegative[] = {-1, -5, INT_MIN};
    Counted<Record> list;
    for (int i = 0; i < size; ++i) {
        list.records.push_back(make(i));
    }
    list.count = static_cast<int32_t>(size);
    if (hostile && random.Chance(0.2)) {
        list.count = random.Chance(0.5) ? random.Pick(kNegative) : random.Below(size + 1);
    }
    list.null = hostile && random.Chance(0.1);
    return list;
}

// The bits the data generated, or a host's: short, just past the longest register's, longer
// than any sequence and constant, or an array and a count that disagree.
inline void FillBits(SoakRandom& random, bool hostile, IEyeDiagramData& data) {
    static constexpr int kLengths[] = {0, -1, 1, 5, 32768, 32769, 40000};
    if (random.Chance(0.3)) {
        return;
    }
    const int length =
        hostile && random.Chance(0.6) ? random.Pick(kLengths) : random.Between(1, 64);
    std::vector<char> bits(static_cast<std::size_t>(std::max(1, length)));
    for (char& bit : bits) {
        bit = static_cast<char>(length == 40000 || random.Below(2) == 1);  // the longest, constant
    }
    // A bool array is what the contract takes; char holds the same 0 and 1.
    const bool null = hostile && random.Chance(0.2);
    data.SetBits(null ? nullptr : reinterpret_cast<const bool*>(bits.data()),
                 null ? random.Between(0, 40) : length);
}

inline void FillStimulus(SoakRandom& random, bool hostile, IEyeDiagramData& data) {
    static constexpr int32_t kSequenceKinds[] = {0, 1, 2, 3, 4, 7, 8, 9};  // and the default
    data.SetSeqType(hostile && random.Chance(0.3) ? random.Pick(kHostileInts)
                                                  : random.Pick(kSequenceKinds));
    data.SetPolyDegree(AnyInt(random, hostile, random.Between(3, 15)));
    data.SetInitState(AnyInt(random, hostile, random.Below(2)));
    data.SetCycleCount(AnyInt(random, hostile, random.Between(1, 16)));
    data.SetSkipBits(AnyInt(random, hostile, random.Between(0, 8)));
    data.SetAuxFlag(random.Chance(0.5));
    data.SetEyeCount(AnyInt(random, hostile, random.Between(1, 4)));
    data.SetPeriod(AnyReal(random, hostile, random.Real(0.1, 10.0)));
    data.SetDutyCycle(AnyReal(random, hostile, random.Real(10.0, 90.0)));
    for (int component = 0; component < 3; ++component) {
        data.SetAddJitter(component, random.Chance(0.5));
        data.SetJitterAsTime(component, random.Chance(0.5));
        data.SetFreqMeasured(component, random.Chance(0.5));
    }
    data.SetAdvancedJitter(random.Chance(0.5));
    data.SetMaxJitter(AnyReal(random, hostile, random.Real(0.0, 20.0)));
    data.SetJitterType(AnyInt(random, hostile, random.Below(3)));
    data.SetJitterRepeatable(random.Chance(0.5));
    data.SetRandomFreq(AnyReal(random, hostile, random.Real(1.0, 1000.0)));
    data.SetSineMag(AnyReal(random, hostile, random.Real(0.0, 10.0)));
    data.SetSineFreq(AnyReal(random, hostile, random.Real(1.0, 1000.0)));
    data.SetSineInit(AnyReal(random, hostile, random.Real(0.0, 360.0)));
    data.SetUniformMag(AnyReal(random, hostile, random.Real(0.0, 10.0)));
    data.SetUniformMean(AnyReal(random, hostile, random.Real(-5.0, 5.0)));
    EYEMASK mask = *data.GetMask();
    for (double* field : {&mask.PTopMax, &mask.PTopMin, &mask.PBaseMin, &mask.PBaseMax,
                          &mask.PCross, &mask.TCross1Min, &mask.TCross1Max, &mask.TRiseDelay,
                          &mask.TCross2Max, &mask.TCross2Min, &mask.TFallDelay, &mask.ScaleTime,
                          &mask.ScaleVolt, &mask.OffsetTime, &mask.OffsetVolt, &mask.m_extra}) {
        *field = AnyReal(random, hostile, *field);
    }
    FillName(random, hostile, mask.MaskName, "Host mask");
    mask.m_flag1 = static_cast<unsigned char>(hostile ? random.Below(256) : mask.m_flag1);
    mask.m_flag2 = static_cast<unsigned char>(hostile ? random.Below(256) : mask.m_flag2);
    data.SetMask(mask);
    FillBits(random, hostile, data);
}

inline PADDATA AnyPad(SoakRandom& random, bool hostile) {
    PADDATA pad{};
    pad.padType = AnyInt(random, hostile, random.Below(3));
    pad.shape = AnyInt(random, hostile, random.Below(7));
    pad.pad_x = AnyReal(random, hostile, random.Real(3e-4, 8e-4));
    pad.pad_y = AnyReal(random, hostile, random.Chance(0.5) ? pad.pad_x : random.Real(3e-4, 8e-4));
    pad.angle = AnyReal(random, hostile, random.Chance(0.7) ? 0.0 : random.Real(-360.0, 360.0));
    pad.antipad_x = AnyReal(random, hostile, random.Real(8e-4, 1.5e-3));
    pad.antipad_y = AnyReal(random, hostile, random.Chance(0.5) ? pad.antipad_x : 1.2e-3);
    pad.antipadAngle = AnyReal(random, hostile, random.Chance(0.7) ? pad.angle : 45.0);
    pad.antipadShape = AnyInt(random, hostile, random.Below(8));
    pad.shapeStyle = AnyInt(random, hostile, random.Below(4));
    pad.clearance = AnyReal(random, hostile, random.Real(0.0, 3e-4));
    return pad;
}

inline Counted<VIAELEMENT> MakeElements(SoakRandom& random, bool hostile, int32_t layers) {
    const int size = random.Between(0, hostile && random.Chance(0.1) ? 3000 : 12);
    return MakeCounted<VIAELEMENT>(random, hostile, size, [&](int) {
        VIAELEMENT element{};
        element.kind = AnyInt(random, hostile, random.Chance(0.5) ? 1 : 4);
        element.startEndType = AnyInt(random, hostile, random.Chance(0.5) ? 2 : 0);
        element.endEndType = AnyInt(random, hostile, random.Chance(0.5) ? 2 : 0);
        element.startLayer = AnyInt(random, hostile, random.Below(layers));
        element.endLayer = AnyInt(random, hostile, random.Below(layers));
        element.value = AnyReal(random, hostile, element.kind == 1 ? 1e-10 : 50.0);
        element.startCapacitance = AnyReal(random, hostile, 1e-13);
        element.endCapacitance = AnyReal(random, hostile, 2e-13);
        element.delay = AnyReal(random, hostile, 5e-12);
        return element;
    });
}

inline Counted<int32_t> MakeLayerList(SoakRandom& random, bool hostile, int32_t layers) {
    const int size = hostile && random.Chance(0.05) ? 100000 : random.Between(0, 4);
    return MakeCounted<int32_t>(random, hostile, size,
                                [&](int) { return AnyInt(random, hostile, random.Below(layers)); });
}

inline Counted<CROSSSECTIONTRACE> MakeTraces(SoakRandom& random, bool hostile, int32_t layers) {
    const int size = random.Between(0, hostile && random.Chance(0.1) ? 2000 : 8);
    return MakeCounted<CROSSSECTIONTRACE>(random, hostile, size, [&](int i) {
        CROSSSECTIONTRACE trace{};
        trace.layer = AnyInt(random, hostile, random.Below(layers));
        trace.x = AnyReal(random, hostile, random.Real(-1e-3, 1e-3));
        trace.width = AnyReal(random, hostile, random.Real(5e-5, 3e-4));
        trace.role = AnyInt(random, hostile, i == 0 ? 0 : random.Below(3));
        FillName(random, hostile, trace.net, "NET" + std::to_string(i));
        return trace;
    });
}

// A board as a host describes it: a stackup and a padstack with one pad per layer, or a
// number of pads that disagrees with it.
struct HostBoard {
    Counted<STACKUPLAYER> layers;
    PADSTACK padstack{};
    Counted<PADDATA> pads;

    STACKUPARRAY Stackup() { return {layers.count, layers.Data()}; }
};

inline HostBoard MakeBoard(SoakRandom& random, bool hostile) {
    static constexpr int kSizes[] = {1, 3, 5, 6, 11, 0, 2, 200};
    const int layers = kSizes[random.Below(hostile ? 8 : 5)];
    HostBoard board;
    board.layers = MakeCounted<STACKUPLAYER>(random, hostile, layers, [&](int i) {
        STACKUPLAYER layer{};
        const bool conductor = i % 2 == 0;
        FillName(random, hostile, layer.name, (conductor ? "SIG" : "DIEL") + std::to_string(i));
        layer.kind = AnyInt(random, hostile, conductor ? STACKUP_CONDUCTOR : STACKUP_DIELECTRIC);
        layer.usage = AnyInt(random, hostile, random.Below(3));
        layer.thickness = AnyReal(random, hostile, conductor ? 35e-6 : random.Real(50e-6, 500e-6));
        return layer;
    });
    PADSTACK& padstack = board.padstack;
    FillName(random, hostile, padstack.name, "VIA_SOAK");
    padstack.drill = AnyReal(random, hostile, random.Real(1e-4, 3e-4));
    padstack.drillExtra = AnyReal(random, hostile, 0.0);
    padstack.plating = AnyReal(random, hostile, random.Real(0.0, 3e-5));
    const int32_t last = std::max(0, layers - 1);
    padstack.firstLayer = AnyInt(random, hostile, random.Chance(0.7) ? 0 : random.Between(0, last));
    padstack.lastLayer =
        AnyInt(random, hostile, random.Chance(0.7) ? last : random.Between(0, last));
    const int pads = hostile && random.Chance(0.4) ? random.Pick(kSizes) : layers;
    board.pads =
        MakeCounted<PADDATA>(random, hostile, pads, [&](int) { return AnyPad(random, hostile); });
    padstack.padCount = board.pads.count;
    return board;
}

// A copy of the records in an array from new[], as the library's own via data holds and frees.
template <class Record>
Record* NewArray(const Counted<Record>& list) {
    if (list.null) {
        return nullptr;
    }
    auto* array = new Record[list.records.size()];
    std::ranges::copy(list.records, array);
    return array;
}

// Copies the board into via data of the library's own.
inline void PlaceBoard(const HostBoard& board, IViaVizData& data) {
    STACKUPARRAY* stackup = data.GetStackup();
    PADSTACK* padstack = data.GetPadstack();
    if (stackup == nullptr || padstack == nullptr) {
        return;
    }
    delete[] stackup->layers;
    *stackup = {board.layers.count, NewArray(board.layers)};
    delete[] padstack->pads;
    *padstack = board.padstack;
    padstack->pads = NewArray(board.pads);
}

// The host's own via data, as a host hands the padstack editor its via.
class HostViaData final : public IViaVizData {
public:
    explicit HostViaData(HostBoard board)
        : m_board(std::move(board)), m_stackup(m_board.Stackup()) {
        m_board.padstack.pads = m_board.pads.Data();
    }
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
    STACKUPARRAY m_stackup;
};

}  // namespace kv::soak
