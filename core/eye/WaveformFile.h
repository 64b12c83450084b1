#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Simulation results as a waveform: time in seconds and one vector's values,
// read as piecewise linear between the samples. Three kinds of file are read,
// told apart by their first bytes:
// - a raw file of the SPICE simulator (a "Title:" header, then "Values:" in
//   text or "Binary:" little-endian doubles): the first plot whose scale is
//   time, so a file that also holds an operating point still reads;
// - the simulator's "wrdata" text: blank-separated columns, optionally below a
//   line of vector names, each vector beside its own copy of the scale or, with
//   a single scale, all beside the first column;
// - a CSV table: time, then one or more value columns, separated by "," or
//   ";" (one of them for the whole file), optionally below a line of names.
// In every table the first column is time. Without a vector name the first
// value column is taken. A file is read whole or not at all: any problem gives
// a message naming the file, the line (text) or byte offset (binary) and what
// is wrong, and no samples.

namespace kv {

struct Waveform {
    std::vector<double> time;   // seconds, never decreasing
    std::vector<double> value;  // the vector's values, one per time
    std::string name;           // the vector's name, empty for a table without names
};

struct WaveformRead {
    std::optional<Waveform> waveform;  // none when the file cannot be read
    std::string error;                 // why, when there is no waveform
};

// The largest file read: a binary raw file of 10^8 points of four vectors.
inline constexpr std::size_t kMaxWaveformFileBytes = std::size_t{4} << 30;

// `vector` names the vector to read (case-insensitive; "out" also finds
// "v(out)"); empty takes the first vector that is not the scale.
WaveformRead ReadWaveformFile(const std::filesystem::path& path, std::string_view vector = {});

// The same reading over a file's bytes; `fileName` names the file in messages.
WaveformRead ReadWaveformBytes(std::string_view bytes, std::string_view vector,
                               std::string_view fileName);

}  // namespace kv
