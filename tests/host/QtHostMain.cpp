#include <dlfcn.h>
#include <gtest/gtest.h>

#include <QApplication>

#include "tests/host/QtHost.h"

namespace kv::test {

void* g_hostLibrary = nullptr;
IKVComCtlFactory* g_factory = nullptr;

namespace {

class HostEnvironment : public ::testing::Environment {
public:
    void SetUp() override {
        g_hostLibrary = dlopen(KV_LIBRARY_PATH, RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(g_hostLibrary, nullptr) << dlerror();
        auto get =
            reinterpret_cast<GetKVComCtlFactoryFn>(dlsym(g_hostLibrary, "GetKVComCtlFactory"));
        ASSERT_NE(get, nullptr) << dlerror();
        g_factory = get();
    }
    void TearDown() override {
        if (g_hostLibrary != nullptr) {
            dlclose(g_hostLibrary);
        }
        g_hostLibrary = nullptr;
        g_factory = nullptr;
    }
};

}  // namespace
}  // namespace kv::test

int main(int argc, char** argv) {
    // A Qt host: the library uses the host's QApplication.
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    ::testing::AddGlobalTestEnvironment(new kv::test::HostEnvironment);
    return RUN_ALL_TESTS();
}
