#include "core/eyediagram/StimulusTransfer.h"

#include <memory>

#include "kvcomctl/EyeMask.h"
#include "kvcomctl/IEyeDiagramData.h"

namespace kv {

void CopyStimulusValues(IEyeDiagramData& from, IEyeDiagramData& to) {
    to.SetCycleCount(from.GetCycleCount());
    to.SetSkipBits(from.GetSkipBits());
    to.SetAuxFlag(from.GetAuxFlag());
    to.SetEyeCount(from.GetEyeCount());
    to.SetPeriod(from.GetPeriod());
    to.SetDutyCycle(from.GetDutyCycle());
    for (int component = 0; component < 3; ++component) {
        to.SetAddJitter(component, from.GetAddJitter(component));
        to.SetJitterAsTime(component, from.GetJitterAsTime(component));
        to.SetFreqMeasured(component, from.GetFreqMeasured(component));
    }
    to.SetAdvancedJitter(from.GetAdvancedJitter());
    to.SetMaxJitter(from.GetMaxJitter());
    to.SetJitterType(from.GetJitterType());
    to.SetJitterRepeatable(from.GetJitterRepeatable());
    to.SetRandomFreq(from.GetRandomFreq());
    to.SetSineMag(from.GetSineMag());
    to.SetSineFreq(from.GetSineFreq());
    to.SetSineInit(from.GetSineInit());
    to.SetUniformMag(from.GetUniformMag());
    to.SetUniformMean(from.GetUniformMean());
    to.SetSeqType(from.GetSeqType());
    to.SetInitState(from.GetInitState());
    to.SetPolyDegree(from.GetPolyDegree());
    to.SetMask(*from.GetMask());
    const int count = from.GetBitCount() > 0 ? from.GetBitCount() : 0;
    const auto bits = std::make_unique<bool[]>(static_cast<std::size_t>(count) + 1);
    for (int i = 0; i < count; ++i) {
        bits[static_cast<std::size_t>(i)] = from.GetBit(i);
    }
    to.SetBits(bits.get(), count);
}

}  // namespace kv
