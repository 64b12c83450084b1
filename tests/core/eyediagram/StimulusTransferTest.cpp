#include <gtest/gtest.h>

#include "core/eyediagram/StimulusTransfer.h"
#include "core/stimulus/EyeMask.h"
#include "core/stimulus/SequenceType.h"
#include "core/stimulus/StimulusData.h"
#include "core/stimulus/StimulusPersistence.h"
#include "core/stimulus/StimulusRules.h"

namespace {

// Every value the interface carries differs from the defaults in the source;
// the copy must carry each one over, and nothing the interface lacks.
TEST(StimulusTransfer, CopiesEveryInterfaceValue) {
    kv::CStimulusData from;
    for (const kv::StimulusRule& rule : kv::StimulusRules()) {
        const double value = rule.get(from);
        rule.set(from, rule.kind == kv::ValueKind::Bool ? (value != 0 ? 0 : 1) : value + 1);
    }
    from.SetAuxFlag(false);
    from.SetSeqType(kv::seq::kCustom);
    from.SetBitVector({1, 0, 0, 1, 1});
    kv::SetMaskName(*from.GetMask(), "USB");
    from.m_listMode = 1;

    kv::CStimulusData to;
    kv::CopyStimulusValues(from, to);
    EXPECT_EQ(kv::PersistedEntries(to), kv::PersistedEntries(from));
    EXPECT_FALSE(to.GetAuxFlag());
    EXPECT_EQ(to.m_listMode, 0);  // not part of the interface

    from.SetBitVector({});
    kv::CopyStimulusValues(from, to);
    EXPECT_EQ(to.GetBitCount(), 0);
}

}  // namespace
