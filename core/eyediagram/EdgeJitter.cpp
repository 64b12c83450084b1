#include "core/eyediagram/EdgeJitter.h"

#include <chrono>
#include <cmath>
#include <numbers>

#include "core/shared/AppProfile.h"
#include "core/stimulus/Jitter.h"
#include "core/stimulus/JitterSeed.h"
#include "core/stimulus/Random.h"
#include "kvcomctl/IEyeDiagramData.h"

namespace kv {
namespace {

constexpr int kGaussian = 0;
constexpr int kUniform = 1;
constexpr int kSine = 2;
constexpr double kNanosecond = 1e-9;
constexpr double kMegahertz = 1e6;

// A magnitude in the unit the stimulus gives it (percent of the bit
// interval, or ns) in seconds; the period is positive here, as the
// conversion asks.
double Seconds(double magnitude, bool asTime, double periodNs) {
    CJitter jitter;
    jitter.m_magnitude = magnitude;
    jitter.m_asTime = asTime ? 1 : 0;
    return MagnitudeInPercent(jitter, periodNs) * 0.01 * periodNs * kNanosecond;
}

bool IsFinite(const EdgeJitterSettings& settings) {
    return std::isfinite(settings.gaussianSigma) && std::isfinite(settings.uniformWidth) &&
           std::isfinite(settings.uniformMean) && std::isfinite(settings.sineAmplitude) &&
           std::isfinite(settings.sineFrequency) && std::isfinite(settings.sinePhase);
}

// The sine part's frequency and phase, which the simple sine shares.
void SetSineTiming(const IEyeDiagramData& data, EdgeJitterSettings& settings) {
    settings.sineFrequency = data.GetSineFreq() * kMegahertz;
    settings.sinePhase = data.GetSineInit() * std::numbers::pi / 180.0;
}

std::optional<EdgeJitterSettings> SimpleJitter(const IEyeDiagramData& data) {
    const double magnitude = data.GetMaxJitter() * kNanosecond;
    EdgeJitterSettings settings;
    switch (data.GetJitterType()) {
        case kGaussian:
            settings.gaussianSigma = magnitude;
            break;
        case kUniform:
            settings.uniform = true;
            settings.uniformWidth = magnitude;
            break;
        case kSine:
            settings.sineAmplitude = magnitude;
            SetSineTiming(data, settings);
            break;
        default:
            return std::nullopt;
    }
    return settings;
}

EdgeJitterSettings AdvancedJitter(const IEyeDiagramData& data, double periodNs) {
    const auto seconds = [&](double magnitude, int component) {
        return Seconds(magnitude, data.GetJitterAsTime(component), periodNs);
    };
    EdgeJitterSettings settings;
    if (data.GetAddJitter(kGaussian)) {
        settings.gaussianSigma = seconds(data.GetMaxJitter(), kGaussian);
    }
    if (data.GetAddJitter(kUniform)) {
        settings.uniform = true;
        settings.uniformWidth = seconds(data.GetUniformMag(), kUniform);
        settings.uniformMean = seconds(data.GetUniformMean(), kUniform);
    }
    if (data.GetAddJitter(kSine)) {
        settings.sineAmplitude = seconds(data.GetSineMag(), kSine);
        SetSineTiming(data, settings);
    }
    return settings;
}

}  // namespace

bool EdgeJitterSettings::MovesEdges() const {
    return gaussianSigma != 0.0 || (uniform && (uniformWidth != 0.0 || uniformMean != 0.0)) ||
           sineAmplitude != 0.0;
}

std::optional<EdgeJitterSettings> EdgeJitterFromData(const IEyeDiagramData& data) {
    const double periodNs = data.GetPeriod();
    if (!(periodNs > 0.0) || !std::isfinite(periodNs)) {
        return std::nullopt;
    }
    const std::optional<EdgeJitterSettings> settings =
        data.GetAdvancedJitter() ? AdvancedJitter(data, periodNs) : SimpleJitter(data);
    if (!settings || !IsFinite(*settings) || settings->gaussianSigma < 0.0 ||
        settings->uniformWidth < 0.0 || settings->sineAmplitude < 0.0) {
        return std::nullopt;
    }
    return settings;
}

int32_t EdgeJitterSeedWord(bool repeatable) {
    const int seed = NextJitterSeed(repeatable, ModuleProfile());
    if (seed >= 0) {
        return -seed;
    }
    // No fixed seed: the clock's nanoseconds and a count of builds, mixed so
    // that builds close in time start far apart, into 1 to 2^31 - 2.
    static uint64_t builds = 0;
    uint64_t mixed =
        static_cast<uint64_t>(std::chrono::system_clock::now().time_since_epoch().count()) ^
        (++builds * 0x9E3779B97F4A7C15u);
    mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9u;
    mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBu;
    mixed ^= mixed >> 31;
    return -static_cast<int32_t>(mixed % 2147483646u + 1u);
}

double EdgeJitter::Next(double time) {
    constexpr double kTwoPi = 2.0 * std::numbers::pi;
    double shift = 0.0;
    if (m_settings.gaussianSigma > 0.0) {
        const double u1 = Ran1(m_seedWord);
        const double u2 = Ran1(m_seedWord);
        shift +=
            m_settings.gaussianSigma * std::sqrt(-2.0 * std::log(1.0 - u1)) * std::cos(kTwoPi * u2);
    }
    if (m_settings.uniform) {
        if (m_settings.uniformWidth > 0.0) {
            shift += m_settings.uniformWidth * (Ran1(m_seedWord) - 0.5);
        }
        shift += m_settings.uniformMean;
    }
    if (m_settings.sineAmplitude > 0.0) {
        shift += m_settings.sineAmplitude *
                 std::sin(kTwoPi * (m_settings.sineFrequency * time) + m_settings.sinePhase);
    }
    return shift;
}

}  // namespace kv
