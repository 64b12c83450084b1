#include <gtest/gtest.h>

#include <cmath>

#include "core/stimulus/EyeMask.h"
#include "core/stimulus/StimulusRules.h"

namespace {

TEST(EyeMask, FirstBrokenRuleIsReported) {
    EYEMASK mask = kv::DefaultEyeMask();
    mask.PTopMin = 2.0;  // below the crossing level of 2.5
    EXPECT_EQ(kv::FindMaskOrderError(mask), "Ptop min value less than Pcross value");
    mask.PTopMax = 1.0;  // now the first rule breaks too and wins
    EXPECT_EQ(kv::FindMaskOrderError(mask), "Ptop max value less than Ptop min value");

    mask = kv::DefaultEyeMask();
    mask.TCross2Max = 99;
    EXPECT_EQ(kv::FindMaskOrderError(mask), "Tcross2 min value greater than Tcross2 max value");
    mask = kv::DefaultEyeMask();
    mask.TFallDelay = 15;
    EXPECT_EQ(kv::FindMaskOrderError(mask), "Rise delay value greater than Fall delay value");
}

TEST(EyeMask, OpeningCheckIgnoresTheUpperVoltageScale) {
    EYEMASK mask = kv::DefaultEyeMask();
    mask.ScaleVolt = 3.0;
    EXPECT_TRUE(kv::MaskAcceptedOnOpen(mask));
    mask.ScaleVolt = 0.4;
    EXPECT_FALSE(kv::MaskAcceptedOnOpen(mask));
    mask = kv::DefaultEyeMask();
    mask.ScaleTime = 3.0;
    EXPECT_FALSE(kv::MaskAcceptedOnOpen(mask));
    mask = kv::DefaultEyeMask();
    mask.OffsetVolt = -10.5;
    EXPECT_FALSE(kv::MaskAcceptedOnOpen(mask));
    mask.OffsetVolt = -10;
    mask.OffsetTime = 1000;
    EXPECT_TRUE(kv::MaskAcceptedOnOpen(mask));
    mask.PCross = std::nan("");  // every number must be one
    EXPECT_FALSE(kv::MaskAcceptedOnOpen(mask));
}

TEST(EyeMask, NameKeepsTwentyCharacters) {
    EYEMASK mask = kv::DefaultEyeMask();
    kv::SetMaskName(mask, "ABCDEFGHIJKLMNOPQRSTU");
    EXPECT_EQ(kv::MaskName(mask), "ABCDEFGHIJKLMNOPQRST");
    EXPECT_EQ(mask.MaskName[20], '\0');
    kv::SetMaskName(mask, "PCIe");
    EXPECT_EQ(kv::MaskName(mask), "PCIe");
}

}  // namespace
