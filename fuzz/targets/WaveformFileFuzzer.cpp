// Simulation results: any bytes read as a waveform either give samples whose
// times never go back and whose values are finite, or an error that names
// the file, and never a half-read waveform.

#include <algorithm>
#include <cmath>

#include "FuzzSupport.h"
#include "core/eye/WaveformFile.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    const std::string_view bytes = kv::fuzz::AsText(data, size);
    for (const std::string_view vector : {std::string_view(), std::string_view("b")}) {
        const kv::WaveformRead read = kv::ReadWaveformBytes(bytes, vector, "f");
        if (!read.waveform) {
            kv::fuzz::Expect(read.error.rfind("f: ", 0) == 0,
                             "an error that does not name the file: " + read.error);
            continue;
        }
        const kv::Waveform& wave = *read.waveform;
        kv::fuzz::Expect(
            read.error.empty() && wave.time.size() == wave.value.size() && wave.time.size() >= 2,
            "a waveform without its two samples per time");
        kv::fuzz::Expect(std::is_sorted(wave.time.begin(), wave.time.end()),
                         "times that go back in \"" + kv::fuzz::Escaped(bytes) + "\"");
        kv::fuzz::Expect(std::all_of(wave.value.begin(), wave.value.end(),
                                     [](double v) { return std::isfinite(v); }),
                         "a value that is not finite");
    }
    return 0;
}
