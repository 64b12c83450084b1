#pragma once

#include <type_traits>

// The eye-mask record, copied by value between the host, the stimulus data
// object and the mask library. Its layout is part of the host contract: a host
// compiled against another copy of this declaration must see the same bytes.
// Levels are volts, time points are in the units of the eye's time axis.
struct EYEMASK {
    double PTopMax;     // upper limit of the top level
    double PTopMin;     // lower limit of the top level
    double PBaseMin;    // lower limit of the base level
    double PBaseMax;    // upper limit of the base level
    double PCross;      // crossing level
    double TCross1Min;  // earliest first crossing
    double TCross1Max;  // latest first crossing
    double TRiseDelay;  // rise delay
    double TCross2Max;  // latest second crossing
    double TCross2Min;  // earliest second crossing
    double TFallDelay;  // fall delay
    double ScaleTime;   // time scale factor (0.5 to 2.0)
    double ScaleVolt;   // voltage scale factor
    double OffsetTime;  // time offset (0 to 1000)
    double OffsetVolt;  // voltage offset (-10 to 10)
    char MaskName[21];  // library key: at most 20 characters and the terminator
    unsigned char m_flag1;
    unsigned char m_flag2;
    double m_extra;
};

static_assert(std::is_standard_layout_v<EYEMASK> && std::is_trivially_copyable_v<EYEMASK>);
