#pragma once

// Numeric ids of the controls of the eye-diagram pages. Every control carries
// its id as its objectName, "ctl<id>", so a host or a test finds it with
// findChild<...>("ctl1005").

namespace kvcomctl_ids {

// The sheet's own buttons.
inline constexpr int kSheetOk = 1;
inline constexpr int kSheetCancel = 2;
inline constexpr int kSheetHelp = 9;

// The stimulus editing page (template 4018).
namespace stimulus_edit {
inline constexpr int kNameList = 3012;
inline constexpr int kNameEdit = 3002;
inline constexpr int kOpen = 3000;
inline constexpr int kSave = 3001;
inline constexpr int kRemove = 2172;
inline constexpr int kNew = 3010;
inline constexpr int kSequence = 1005;
inline constexpr int kBitOrderLabel = 1934;
inline constexpr int kBitOrder = 1935;
inline constexpr int kLevelLabel = 1014;  // "&Initial state:" or "&Direction:"
inline constexpr int kLevel = 1013;
inline constexpr int kLoad = 2158;
inline constexpr int kSaveBits = 1933;
inline constexpr int kPattern = 1000;
inline constexpr int kFileName = 2176;
inline constexpr int kStimulusGroup = 4170;
inline constexpr int kPeriodLabel = 2193;
inline constexpr int kPeriod = 1002;
inline constexpr int kPeriodUnit = 4171;
inline constexpr int kDutyLabel = 2191;
inline constexpr int kDuty = 1003;
inline constexpr int kDutySpin = 1011;
inline constexpr int kDutyUnit = 2192;
inline constexpr int kRepetitionsLabel = 4169;  // "&Frequency:" or "Sequence &repetitions:"
inline constexpr int kRepetitions = 1007;
inline constexpr int kRepetitionsSpin = 1009;
inline constexpr int kFrequency = 4167;
inline constexpr int kFrequencyUnit = 4168;
inline constexpr int kHighLabel = 4165;
inline constexpr int kHighTime = 4077;
inline constexpr int kHighUnit = 4163;
inline constexpr int kLowLabel = 4166;
inline constexpr int kLowTime = 4078;
inline constexpr int kLowUnit = 4164;
inline constexpr int kJitterGroup = 4052;
inline constexpr int kJitterLabel = 4053;
inline constexpr int kJitter = 1004;
inline constexpr int kJitterUnit = 2190;
inline constexpr int kDistributionLabel = 4054;
inline constexpr int kDistribution = 2162;
inline constexpr int kRepeatJitter = 2175;
}  // namespace stimulus_edit

}  // namespace kvcomctl_ids

namespace kvcomctl_ids {

// The eye mask page (template 596): the fifteen numbers in the order of the
// mask record, then the library of named masks.
namespace eye_mask {
inline constexpr int kTopMax = 1110;
inline constexpr int kTopMin = 1111;
inline constexpr int kBaseMin = 1112;
inline constexpr int kBaseMax = 1113;
inline constexpr int kCross = 1114;
inline constexpr int kCross1Min = 1115;
inline constexpr int kCross1Max = 1116;
inline constexpr int kRiseDelay = 1117;
inline constexpr int kCross2Max = 1118;
inline constexpr int kCross2Min = 1119;
inline constexpr int kFallDelay = 1120;
inline constexpr int kScaleTime = 1121;  // percent, 50 to 200
inline constexpr int kScaleVolt = 1122;  // percent, 50 to 200
inline constexpr int kOffsetTime = 1123;
inline constexpr int kOffsetVolt = 1124;
inline constexpr int kLibrary = 1130;
inline constexpr int kSaveAs = 1131;
inline constexpr int kDelete = 1132;
inline constexpr int kName = 1133;
}  // namespace eye_mask

}  // namespace kvcomctl_ids

namespace kvcomctl_ids {

// The eye-diagram stimulus page (template 595). Jitter components are
// indexed 0 Gaussian, 1 uniform, 2 sine.
namespace eye_stimulus {
inline constexpr int kCycles = 1201;
inline constexpr int kSkipBits = 1202;
inline constexpr int kEyes = 1203;
inline constexpr int kBitInterval = 1204;
inline constexpr int kDutyCycle = 1205;
inline constexpr int kSimpleJitter = 1206;
inline constexpr int kAdvancedJitter = 1207;
inline constexpr int kMaxJitter = 1208;
inline constexpr int kJitterType = 1209;
inline constexpr int kRepeatable = 1210;
inline constexpr int kSequence = 1211;
inline constexpr int kPolyDegree = 1212;
inline constexpr int kInitState = 1213;
inline constexpr int kPattern = 1000;
inline constexpr int kComponentEnabled = 1220;    // + component
inline constexpr int kComponentMagnitude = 1230;  // + component
inline constexpr int kComponentUnit = 1240;       // + component: "%" or "ns"
inline constexpr int kComponentValue2 = 1250;     // + component: frequency or mean
inline constexpr int kComponentValue3 = 1260;     // sine: initial phase
}  // namespace eye_stimulus

}  // namespace kvcomctl_ids
