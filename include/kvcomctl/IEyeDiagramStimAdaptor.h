#pragma once

#include <cstdint>

// The stimulus adaptor: turns a stimulus data object into the piecewise-linear
// waveform a host's simulator is driven with. Operation order is the
// virtual-table order the host binds to.

class IEyeDiagramData;

struct STIMPOINT {
    double time;
    double level;
};  // seconds, volts

class IEyeDiagramStimAdaptor {
public:
    virtual int32_t Build(IEyeDiagramData* data, double lowLevel, double highLevel, double riseTime,
                          double fallTime) = 0;      // 0
    virtual int32_t GetPointCount() const = 0;       // 1
    virtual const STIMPOINT* GetPoints() const = 0;  // 2
    virtual double GetDuration() const = 0;          // 3
    virtual void Clear() = 0;                        // 4
    virtual bool WritePwl(const char* path, const char* sourceName,
                          const char* node) const = 0;  // 5

    // What Build makes, with every edge (every ramp) moved in time by the
    // stimulus's jitter. Returns the point count, or -1 with no points kept
    // for whatever Build refuses and for jitter values that are not finite
    // numbers (also once converted to seconds and hertz), a negative
    // magnitude, a simple jitter type outside 0 to 2, or a sine whose phase
    // overflows at an edge's time.
    //
    // Units. P is the bit period (GetPeriod, ns). A magnitude "as time" is in
    // ns; one in percent of the bit interval is percent * P / 100 ns.
    // Frequencies are in MHz, the sine's initial phase in degrees.
    //
    // The displacement of an edge is the sum of the parts below, in seconds;
    // a positive one makes the edge later.
    // - Simple jitter (GetAdvancedJitter false), magnitude m = GetMaxJitter ns:
    //   type 0 Gaussian with standard deviation m; type 1 uniform with
    //   peak-to-peak width m around 0; type 2 sine of amplitude m with the
    //   sine component's frequency and initial phase (GetSineFreq,
    //   GetSineInit).
    // - Advanced jitter (GetAdvancedJitter true): each component whose
    //   GetAddJitter is true, its magnitude as time or in percent by its
    //   GetJitterAsTime: 0 Gaussian with standard deviation GetMaxJitter;
    //   1 uniform of peak-to-peak width GetUniformMag around the mean
    //   GetUniformMean (in the uniform's own unit); 2 sine of amplitude
    //   GetSineMag, frequency GetSineFreq and initial phase GetSineInit.
    //   The Gaussian's frequency (GetRandomFreq) and the measured-frequency
    //   flags do not enter: each edge's random part is drawn independently.
    // With every part zero (simple magnitude 0, or advanced jitter with no
    // component switched on) the waveform equals Build's, point for point.
    //
    // Random numbers u come from the library's uniform generator: the
    // multiplicative congruential generator x <- 16807 * x mod (2^31 - 1)
    // behind a 32-entry shuffle table. A restart from seed s (0 counts as 1)
    // steps x = s eight times unused, then fills the table from entry 31 down
    // to 0 with the next 32 values, and the last output is entry 0. Each draw
    // steps x, outputs y = table[last output / 67108864], puts x in that
    // entry, and gives u = y / (2^31 - 1), at most 0.99999988. With
    // GetJitterRepeatable true the generator restarts from the stored jitter
    // seed (settings store "STIMULUSDATA" / "jitterSeed", 9796543 when none
    // is stored) at the start of every build, so that builds repeat exactly;
    // otherwise from a seed taken from the clock, different for every build
    // (the seed is then stored as the library does for every use that is not
    // repeatable). Edges are taken in
    // time order; per edge, with a Gaussian part, two draws u1 then u2 give
    // sigma * sqrt(-2 ln(1 - u1)) * cos(2 pi u2); then, with a uniform part
    // of width w > 0, one draw u gives mean + w * (u - 0.5). A sine part of
    // amplitude a is a * sin(2 pi f t + phase), t the edge's nominal start
    // in seconds from the start of the waveform; it draws nothing.
    //
    // Bound: edges keep their order and their ramps. An edge's ramp starts
    // no earlier than the previous edge's (moved) ramp ends, or than time 0,
    // and ends no later than the next edge's nominal start, or than the end
    // of the waveform; a displacement beyond that is clamped to it. Times
    // therefore stay increasing however large the jitter is.
    virtual int32_t BuildJittered(IEyeDiagramData* data, double lowLevel, double highLevel,
                                  double riseTime, double fallTime) = 0;  // 6
protected:
    ~IEyeDiagramStimAdaptor() = default;
};
