#include <gtest/gtest.h>

#include "core/eyediagram/MaskLibrary.h"
#include "core/settings/ProfileStore.h"
#include "core/stimulus/EyeMask.h"
#include "tests/support/TestSupport.h"

namespace {

// The library survives its store: every number exactly, names with commas,
// and a damaged entry costs only itself.
TEST(MaskLibrary, RoundTripsThroughTheStoreAndSkipsDamagedEntries) {
    const TestFolder folder;
    const auto store = kv::OpenProfileStore(kv::AppProfile::File(folder.File("masks.ini")));
    kv::MaskLibrary library;
    EYEMASK first = kv::DefaultEyeMask();
    first.PCross = 0.1 + 0.2;  // not a short decimal
    kv::SetMaskName(first, "USB, high speed");
    EYEMASK second = kv::DefaultEyeMask();
    second.OffsetVolt = -3.25;
    kv::SetMaskName(second, "PCIe");
    library.Put(first);
    library.Put(second);
    second.ScaleTime = 1.5;
    library.Put(second);  // same name: replaced, not added
    ASSERT_TRUE(library.Save(*store));

    kv::MaskLibrary loaded = kv::MaskLibrary::Load(*store);
    ASSERT_EQ(loaded.Masks().size(), 2u);
    EXPECT_EQ(loaded.Find("USB, high speed")->PCross, 0.1 + 0.2);
    EXPECT_EQ(loaded.Find("PCIe")->ScaleTime, 1.5);
    EXPECT_EQ(loaded.Find("PCIe")->OffsetVolt, -3.25);

    ASSERT_TRUE(store->WriteString("EYEMASKLIBRARY", "Mask0", "5.5,4.5,oops"));
    loaded = kv::MaskLibrary::Load(*store);
    ASSERT_EQ(loaded.Masks().size(), 1u);
    EXPECT_NE(loaded.Find("PCIe"), nullptr);
    EXPECT_TRUE(loaded.Remove("PCIe"));
    EXPECT_FALSE(loaded.Remove("PCIe"));
}

}  // namespace
