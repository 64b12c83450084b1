#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

#include <algorithm>
#include <climits>
#include <filesystem>
#include <optional>
#include <string>

#include "apps/python/Bindings.h"
#include "core/stimulus/BitFile.h"
#include "core/stimulus/FixedPatterns.h"
#include "core/stimulus/RegisterFill.h"
#include "core/stimulus/ShiftRegister.h"
#include "core/stimulus/StimulusData.h"
#include "core/stimulus/StreamCheck.h"
#include "core/stimulus/SymbolSource.h"

// The bit sequences, the 8B/10B check and .bit files. Every array is written in place in
// NumPy's buffer; no bit ever becomes a Python object.

namespace kv::python {
namespace {

void Require(bool holds, const std::string& message) {
    if (!holds) {
        throw py::value_error(message);
    }
}

int32_t Seed(long long seed) {
    Require(seed >= INT32_MIN && seed <= INT32_MAX, "seed must fit 32 bits (signed)");
    return static_cast<int32_t>(seed);
}

void RequireState(int init) {
    Require(init == 0 || init == 1, "init must be 0 or 1, not " + std::to_string(init));
}

BitArray ArrayOf(const BitVector& bits) {
    BitArray array = NewBitArray(bits.size());
    std::copy(bits.begin(), bits.end(), array.mutable_data());
    return array;
}

// The source's symbols read straight into the array, then made bits in place: +1 (0x01) is a
// one and -1 (0xff) a zero.
BitArray FromSource(const SymbolSourceConfig& config, std::size_t count) {
    BitArray array = NewBitArray(count);
    uint8_t* data = array.mutable_data();
    SymbolSource source(config);
    int status = 1;
    const std::size_t got =
        source.ReadSymbols(std::span<int8_t>(reinterpret_cast<int8_t*>(data), count), status);
    for (std::size_t i = 0; i < got; ++i) {
        data[i] = static_cast<uint8_t>((data[i] >> 7) ^ 1u);
    }
    std::fill(data + got, data + count, uint8_t{0});
    return array;
}

BitArray Prbs(int degree, int init) {
    Require(degree >= 1 && degree <= 30,
            "degree must be from 1 to 30, not " + std::to_string(degree));
    RequireState(init);
    const auto length = static_cast<std::size_t>(PrbsSequenceLength(degree));
    BitArray array = NewBitArray(length);
    // The sequence starts with `init`: when the register's first output differs, every bit is
    // inverted, as the stimulus data generates it.
    ShiftRegister probe(degree);
    const bool invert = (probe.Step() != 0) != (init == 1);
    const std::span<uint8_t> out(array.mutable_data(), length);
    {
        py::gil_scoped_release unlocked;
        FillRegisterOutput(degree, out, invert);
    }
    return array;
}

BitArray Code8b10b(long long cycles, std::optional<long long> seed) {
    Require(cycles >= 1 && cycles <= 100'000'000,
            "cycles must be from 1 to 100000000, not " + std::to_string(cycles));
    return FromSource(Code8b10bConfig(Seed(seed.value_or(0))),
                      static_cast<std::size_t>(cycles) * 10);
}

BitArray RandomBits(long long count, long long seed) {
    Require(count >= 1 && count <= 1'000'000'000,
            "count must be from 1 to 1000000000, not " + std::to_string(count));
    SymbolSourceConfig config;
    config.seed = Seed(seed);
    return FromSource(config, static_cast<std::size_t>(count));
}

// Whole periods go through the table-driven check in blocks, turned from bits into symbols
// on the way; the last few symbols one at a time.
std::optional<std::string> Check8b10b(const py::handle& bits, int start) {
    Require(start == 0 || start == 4 || start == 6,
            "start must be 4 or 6 (0 means 6), not " + std::to_string(start));
    py::object keeper;
    const std::span<const uint8_t> view = ViewBits(bits, keeper);
    Require(!view.empty(), "the sequence holds no bits to check");
    StreamRules rules(start == 0 ? 6 : start);
    int broken = 0;
    {
        py::gil_scoped_release unlocked;
        constexpr std::size_t kBlock = 10 * 4096;
        std::array<int8_t, kBlock> symbols;
        const std::size_t whole = view.size() / 10 * 10;
        for (std::size_t done = 0; done < whole && broken == 0;) {
            const std::size_t count = std::min(kBlock, whole - done);
            for (std::size_t i = 0; i < count; ++i) {
                symbols[i] = static_cast<int8_t>(view[done + i] == 1 ? 1 : -1);
            }
            std::size_t errorIndex = 0;
            broken = rules.FeedPeriods(std::span<const int8_t>(symbols.data(), count), errorIndex);
            done += count;
        }
        for (std::size_t i = whole; i < view.size() && broken == 0; ++i) {
            broken = rules.Feed(view[i] == 1 ? 1 : -1);
        }
    }
    if (broken == 0) {
        return std::nullopt;
    }
    return std::string(SymbolErrorText(broken));
}

BitArray ReadBits(const std::filesystem::path& path) {
    MessageCapture messages;
    const std::optional<BitVector> bits = ReadBitFile(path.string());
    if (!bits) {
        messages.Raise();
    }
    messages.Warn();  // a file cut at the longest sequence
    return ArrayOf(*bits);
}

void WriteBits(const std::filesystem::path& path, const py::handle& bits) {
    const BitVector copy = CopyBits(bits);
    MessageCapture messages;
    if (!WriteBitFile(path.string(), copy)) {
        messages.Raise();
    }
}

}  // namespace

void BindSequences(py::module_& m) {
    m.def("prbs", &Prbs, py::arg("degree"), py::arg("init") = 0,
          "The maximal-length shift-register sequence of degree 1 to 30 (2**degree - 1 bits;\n"
          "the register clamps degrees below 3), starting with the bit `init` (0 or 1).\n"
          "Returns a numpy.uint8 array of 0 and 1.");
    m.def("code_8b10b", &Code8b10b, py::arg("cycles"), py::arg("seed") = py::none(),
          "`cycles` (1 to 10**8) random 8B/10B code groups, ten bits each, from the random\n"
          "generator seeded with `seed`; a seed that is None or not positive means the fixed\n"
          "seed 91847437. Returns a numpy.uint8 array of 0 and 1.");
    m.def(
        "usb_compliance", [] { return ArrayOf(UsbCompliancePattern()); },
        "The 330 bits of the USB 2.0 compliance pattern as a numpy.uint8 array.");
    m.def(
        "toggling",
        [](int init) {
            RequireState(init);
            return ArrayOf(TogglingBits(init));
        },
        py::arg("init") = 0,
        "The two bits of the toggling sequence from the starting state `init` (0 or 1).");
    m.def("random_bits", &RandomBits, py::arg("count"), py::arg("seed"),
          "`count` (1 to 10**9) random bits from the random generator seeded with `seed` (a\n"
          "32-bit signed integer). Returns a numpy.uint8 array of 0 and 1.");
    m.def("check_8b10b", &Check8b10b, py::arg("bits"), py::arg("start") = 6,
          "Checks a bit array (uint8 or bool, values 0 and 1) against the 8B/10B run-length\n"
          "and running-disparity rules with sub-blocks of 6 and 4 bits (`start` 4: 4 and 6; 0\n"
          "means 6). Returns None when every rule holds, else the text of the broken rule.\n"
          "An empty array, or a value other than 0 and 1, raises ValueError.");
    m.def("read_bit_file", &ReadBits, py::arg("path"),
          "The bits of a .bit file ('0' and '1' characters; blanks, tabs, ',', ';', CR and LF\n"
          "are skipped) as a numpy.uint8 array. A file that cannot be read raises OSError, one\n"
          "that is no sequence file ValueError, both with the library's message. A file of more\n"
          "than 32768 bits is cut there with a UserWarning.");
    m.def("write_bit_file", &WriteBits, py::arg("path"), py::arg("bits"),
          "Writes a bit array (uint8 or bool, values 0 and 1) as a .bit file, replacing the\n"
          "file whole. A file that cannot be written raises OSError with the library's\n"
          "message.");
}

}  // namespace kv::python
