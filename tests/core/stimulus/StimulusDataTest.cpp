#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "core/stimulus/EyeMask.h"
#include "core/stimulus/SequenceType.h"
#include "core/stimulus/StimulusData.h"
#include "core/stimulus/StimulusPersistence.h"

namespace {

using kv::CStimulusData;

// Every non-zero window of `degree` bits occurs exactly once per cycle of a
// maximal-length sequence, read cyclically (inverted, the all-ones window is
// the missing one instead of all-zeros).
bool HasMaximalLengthWindows(const kv::BitVector& bits, int degree) {
    std::vector<int> seen(std::size_t{1} << degree, 0);
    for (std::size_t start = 0; start < bits.size(); ++start) {
        unsigned window = 0;
        for (int k = 0; k < degree; ++k) {
            window = (window << 1) | bits[(start + static_cast<std::size_t>(k)) % bits.size()];
        }
        if (++seen[window] > 1) {
            return false;
        }
    }
    return true;
}

// Every persisted value of a new object, its keys in the order they are saved.
TEST(StimulusData, NewObjectHoldsTheDefaults) {
    const CStimulusData data;
    std::string text;
    for (const auto& [key, value] : kv::PersistedEntries(data)) {
        text += std::string(key) + "=" + value + " ";
    }
    EXPECT_EQ(text,
              "CYCLECOUNT=4 SKIPBITS=0 EYECOUNT=1 PERIOD=3.3 DUTYCYCLE=50 MAXJITTER=1 "
              "RANDOMFREQ=100 SINEMAG=0 SINEFREQ=100 SINEINIT=0 UNIFORMMAG=0 UNIFORMMEAN=0 "
              "ADDGAUSSIAN=0 ADDUNIFORM=0 ADDSINE=0 ADVJITTER=0 GAUSSIANFREQMEAS=0 "
              "UNIFORMFREQMEAS=0 SINEFREQMEAS=0 JITTERTYPE=0 JITTERREPEATABLE=1 "
              "GAUSSIANJITASTIME=0 UNIFORMJITASTIME=0 SINEJITASTIME=0 SEQTYPE=7 INITSTATE=0 "
              "POLYDEGREE=5 SEQUENCELENGTH=31 MASKNAME= PTOPMAX=5.5 PTOPMIN=4.5 PBASEMIN=-0.5 "
              "PBASEMAX=0.5 PCROSS=2.5 TCROSS1MIN=0 TCROSS1MAX=10 TRISEDELAY=20 TCROSS2MAX=110 "
              "TCROSS2MIN=100 TFALLDELAY=90 SCALETIME=1 SCALEVOLT=1 OFFSETTIME=0 OFFSETVOLT=0 ");
    EXPECT_TRUE(data.GetAuxFlag());
    EXPECT_FALSE(data.GetBit(0));
    EXPECT_TRUE(HasMaximalLengthWindows(data.Bits(), 5));
    EXPECT_TRUE(data.IsValid(31));
}

TEST(StimulusData, BitsResizeAndOutOfRangeIndexThrows) {
    CStimulusData data;
    data.SetBits(nullptr, 0);
    EXPECT_EQ(data.GetBitCount(), 0);
    EXPECT_THROW(data.GetBit(0), std::out_of_range);
    const bool bits[] = {true, true, false};
    data.SetBits(bits, 3);
    EXPECT_EQ(data.GetBitCount(), 3);
    EXPECT_TRUE(data.GetBit(1));
    EXPECT_FALSE(data.GetBit(2));
    EXPECT_THROW(data.GetBit(-1), std::out_of_range);
    EXPECT_THROW(data.GetBit(3), std::out_of_range);
}

TEST(StimulusData, AssignmentCopiesEverythingButTheDescription) {
    CStimulusData source;
    source.m_description = "source";
    source.SetCycleCount(9);
    source.m_cycleMarks = {1, 2};
    source.m_listMode = 1;
    source.SetAuxFlag(false);
    kv::SetMaskName(*source.GetMask(), "USB");
    source.GetMask()->ScaleVolt = 1.5;
    source.SetSeqType(kv::seq::kCustom);
    source.SetBitVector({1});

    CStimulusData target;
    target.m_description = "target";
    target = source;
    EXPECT_EQ(target.m_description, "target");
    EXPECT_EQ(kv::PersistedEntries(target), kv::PersistedEntries(source));
    EXPECT_EQ(target.m_cycleMarks, source.m_cycleMarks);
    EXPECT_EQ(target.m_listMode, 1);
    EXPECT_FALSE(target.GetAuxFlag());
    // A copy, unlike an assignment, takes the description along.
    EXPECT_EQ(CStimulusData(source).m_description, "source");
}

TEST(StimulusData, PrbsStartsInTheRequestedStateAndInvertsOtherwise) {
    CStimulusData data;
    data.SetSeqType(kv::seq::kPrbs);
    for (int degree : {3, 7, 11, 16}) {
        data.SetPolyDegree(degree);
        kv::BitVector zeroFirst, oneFirst;
        data.GenerateSequence(0, zeroFirst);
        data.GenerateSequence(1, oneFirst);
        ASSERT_EQ(zeroFirst.size(), (std::size_t{1} << degree) - 1);
        EXPECT_EQ(zeroFirst[0], 0);
        EXPECT_EQ(oneFirst[0], 1);
        for (std::size_t i = 0; i < zeroFirst.size(); ++i) {
            ASSERT_NE(zeroFirst[i], oneFirst[i]) << "degree " << degree << " bit " << i;
        }
        EXPECT_TRUE(HasMaximalLengthWindows(zeroFirst, degree)) << "degree " << degree;
        kv::BitVector again;
        data.GenerateSequence(0, again);
        EXPECT_EQ(again, zeroFirst);
    }
}

TEST(StimulusData, DegreeOutsideTheRegisterUsesTheClampedRegisterButTheGivenLength) {
    CStimulusData data;
    data.SetSeqType(kv::seq::kPrbs);
    data.SetPolyDegree(2);
    kv::BitVector bits;
    data.GenerateSequence(0, bits);
    EXPECT_EQ(bits.size(), 3u);  // 2^2 - 1 bits of the degree-3 register

    // Lengths that cannot be a bit count leave the bits as they were.
    data.SetPolyDegree(40);
    data.GenerateSequence(0, bits);
    EXPECT_EQ(bits.size(), 3u);
}

TEST(StimulusData, EightBTenBBeyondTheLargestCycleCountLeavesTheBits) {
    CStimulusData data;
    data.SetSeqType(kv::seq::k8b10b);
    data.SetCycleCount(32768);
    kv::BitVector bits;
    data.GenerateSequence(0, bits);
    EXPECT_EQ(bits.size(), 327680u);
    // A host's count past what the data can hold: no sequence of tens of gigabytes.
    data.SetCycleCount(32769);
    bits = {1, 0, 1};
    data.GenerateSequence(0, bits);
    EXPECT_EQ(bits, (kv::BitVector{1, 0, 1}));
}

TEST(StimulusData, TypesThatAreNotGeneratedLeaveTheBits) {
    CStimulusData data;
    const kv::BitVector before = data.Bits();
    for (int code : {2, 3, 4, 5, 6, 8, 9}) {
        data.SetSeqType(code);
        kv::BitVector bits = before;
        data.GenerateSequence(1, bits);
        EXPECT_EQ(bits, before) << "code " << code;
    }
}

TEST(StimulusData, ValidityRulesEachRejectTheirField) {
    const auto invalidAfter = [](auto change, int storedLength = 31) {
        CStimulusData data;
        change(data);
        return !data.IsValid(storedLength);
    };
    EXPECT_TRUE(invalidAfter([](CStimulusData& d) { d.SetCycleCount(0); }));
    EXPECT_TRUE(invalidAfter([](CStimulusData& d) { d.SetCycleCount(32769); }));
    EXPECT_FALSE(invalidAfter([](CStimulusData& d) { d.SetCycleCount(32768); }));
    EXPECT_TRUE(invalidAfter([](CStimulusData& d) { d.SetSkipBits(-1); }));
    EXPECT_FALSE(invalidAfter([](CStimulusData& d) { d.SetSkipBits(4 * 31); }));
    EXPECT_TRUE(invalidAfter([](CStimulusData& d) { d.SetSkipBits(4 * 31 + 1); }));
    EXPECT_TRUE(invalidAfter([](CStimulusData& d) { d.SetEyeCount(4); }));
    EXPECT_TRUE(invalidAfter([](CStimulusData& d) { d.SetDutyCycle(100); }));
    EXPECT_TRUE(invalidAfter([](CStimulusData& d) { d.SetDutyCycle(0); }));
    EXPECT_TRUE(invalidAfter([](CStimulusData& d) { d.SetJitterType(3); }));
    EXPECT_TRUE(invalidAfter([](CStimulusData& d) { d.SetSeqType(10); }));
    EXPECT_TRUE(invalidAfter([](CStimulusData& d) { d.SetInitState(2); }));
    EXPECT_TRUE(invalidAfter([](CStimulusData& d) { d.SetPolyDegree(17); }));
    // Bit counts against the type.
    EXPECT_TRUE(invalidAfter([](CStimulusData& d) { d.SetSeqType(0); }, 100));
    EXPECT_FALSE(invalidAfter([](CStimulusData& d) { d.SetSeqType(0); }, 31));
    EXPECT_TRUE(invalidAfter([](CStimulusData& d) { d.SetSeqType(1); }));
    EXPECT_TRUE(invalidAfter([](CStimulusData& d) { d.SetSeqType(3); }));
    EXPECT_FALSE(invalidAfter([](CStimulusData& d) {
        d.SetSeqType(3);
        d.SetBitVector(kv::BitVector(330, 0));
    }));
    // An empty sequence counts as one bit for the skip range.
    EXPECT_FALSE(invalidAfter([](CStimulusData& d) {
        d.SetSeqType(4);
        d.SetBits(nullptr, 0);
        d.SetSkipBits(4);
    }));
}

TEST(SequenceTypes, ListsShowTheirNamesInOrder) {
    EXPECT_EQ(kv::SequenceTypeNameFor(2, 0), "Toggling");
    EXPECT_EQ(kv::SequenceTypeNameFor(2, 1), "Oscillator");
    EXPECT_FALSE(kv::SequenceTypeNameFor(8, 0).has_value());
    EXPECT_EQ(kv::SequenceTypeNameFor(8, 1), "Edge");
    EXPECT_EQ(kv::kStimulusSequenceList.front().name, "Oscillator");
    EXPECT_EQ(kv::kEyeDiagramSequenceList.back().name, "<Custom>");
}

}  // namespace
