#include <gtest/gtest.h>

#include "core/eyediagram/StimulusTransfer.h"
#include "core/stimulus/EyeMask.h"
#include "core/stimulus/StimulusData.h"

namespace {

// Every value the interface carries differs from the defaults in the source;
// the copy must carry each one over, and nothing the interface lacks.
TEST(StimulusTransfer, CopiesEveryInterfaceValue) {
    kv::CStimulusData from;
    from.SetCycleCount(9);
    from.SetSkipBits(3);
    from.SetAuxFlag(false);
    from.SetEyeCount(2);
    from.SetPeriod(1.25);
    from.SetDutyCycle(40.0);
    for (int component = 0; component < 3; ++component) {
        from.SetAddJitter(component, component != 1);
        from.SetJitterAsTime(component, component == 1);
        from.SetFreqMeasured(component, component == 2);
    }
    from.SetAdvancedJitter(true);
    from.SetMaxJitter(0.2);
    from.SetJitterType(2);
    from.SetJitterRepeatable(false);
    from.SetRandomFreq(7.0);
    from.SetSineMag(1.5);
    from.SetSineFreq(8.0);
    from.SetSineInit(0.25);
    from.SetUniformMag(2.5);
    from.SetUniformMean(0.5);
    from.SetSeqType(4);
    from.SetInitState(1);
    from.SetPolyDegree(9);
    EYEMASK mask = kv::DefaultEyeMask();
    mask.PCross = 2.0;
    kv::SetMaskName(mask, "USB");
    from.SetMask(mask);
    from.SetBitVector({1, 0, 0, 1, 1});
    from.m_listMode = 1;

    kv::CStimulusData to;
    kv::CopyStimulusValues(from, to);
    EXPECT_EQ(to.m_cycleCount, 9);
    EXPECT_EQ(to.m_skipBits, 3);
    EXPECT_FALSE(to.m_auxFlag);
    EXPECT_EQ(to.m_eyeCount, 2);
    EXPECT_EQ(to.m_period, 1.25);
    EXPECT_EQ(to.m_dutyCycle, 40.0);
    EXPECT_EQ(to.m_addJitter, (std::array<bool, 3>{true, false, true}));
    EXPECT_EQ(to.m_jitterAsTime, (std::array<bool, 3>{false, true, false}));
    EXPECT_EQ(to.m_freqMeasured, (std::array<bool, 3>{false, false, true}));
    EXPECT_TRUE(to.m_advancedJitter);
    EXPECT_EQ(to.m_maxJitter, 0.2);
    EXPECT_EQ(to.m_jitterType, 2);
    EXPECT_FALSE(to.m_jitterRepeatable);
    EXPECT_EQ(to.m_randomFreq, 7.0);
    EXPECT_EQ(to.m_sineMag, 1.5);
    EXPECT_EQ(to.m_sineFreq, 8.0);
    EXPECT_EQ(to.m_sineInit, 0.25);
    EXPECT_EQ(to.m_uniformMag, 2.5);
    EXPECT_EQ(to.m_uniformMean, 0.5);
    EXPECT_EQ(to.m_seqType, 4);
    EXPECT_EQ(to.m_initState, 1);
    EXPECT_EQ(to.m_polyDegree, 9);
    EXPECT_EQ(to.m_mask.PCross, 2.0);
    EXPECT_EQ(kv::MaskName(to.m_mask), "USB");
    EXPECT_EQ(to.m_bits, (kv::BitVector{1, 0, 0, 1, 1}));
    EXPECT_EQ(to.m_listMode, 0);  // not part of the interface

    from.SetBitVector({});
    kv::CopyStimulusValues(from, to);
    EXPECT_EQ(to.GetBitCount(), 0);
}

}  // namespace
