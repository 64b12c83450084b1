#include "core/stimulus/Jitter.h"

#include "core/ports/MessagePort.h"
#include "core/shared/Assert.h"

namespace kv {

double MagnitudeInPercent(const CJitter& jitter, double period) {
    KV_ASSERT_IN("Jitter.cpp", period > 0);
    return jitter.m_asTime ? jitter.m_magnitude * 100.0 / period : jitter.m_magnitude;
}

double MagnitudeFromPercent(const CJitter& jitter, double percent, double period) {
    KV_ASSERT_IN("Jitter.cpp", period > 0);
    return jitter.m_asTime ? percent * period * 0.01 : percent;
}

bool IsJitterMagnitudeAllowed(const CJitter& jitter, double period) {
    return !jitter.m_enabled || MagnitudeInPercent(jitter, period) * 0.01 < 0.5;
}

bool CheckJitterMagnitude(const CJitter& jitter, double period) {
    if (IsJitterMagnitudeAllowed(jitter, period)) {
        return true;
    }
    ShowMessage(kJitterMagnitudeTooLarge, MessageIcon::Warning, MessageButtons::Ok);
    return false;
}

}  // namespace kv
