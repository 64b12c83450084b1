// A host that is not a Qt application: it loads the library with dlopen and
// never creates a QApplication. Data objects work; messages arrive on
// standard error answered with the default button; widget components are
// refused rather than ending the process.

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <string>

#include "kvcomctl/kvcomctl.h"
#include "tests/support/TestSupport.h"

namespace {

class PlainHost : public ::testing::Test {
protected:
    void SetUp() override {
        m_library = dlopen(KV_LIBRARY_PATH, RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(m_library, nullptr) << dlerror();
        auto get = reinterpret_cast<GetKVComCtlFactoryFn>(dlsym(m_library, "GetKVComCtlFactory"));
        ASSERT_NE(get, nullptr);
        m_factory = get();
    }
    void TearDown() override {
        if (m_library != nullptr) {
            dlclose(m_library);
        }
    }

    TestFolder m_folder;
    ScopedEnvironment m_configHome{"XDG_CONFIG_HOME", m_folder.Path().c_str()};
    void* m_library = nullptr;
    IKVComCtlFactory* m_factory = nullptr;
};

TEST_F(PlainHost, MessagesArriveOnStandardError) {
    const std::string file = m_folder.File("stimulus.ini");
    WriteText(file, "[EYEDIAGRAM]\nCYCLECOUNT=0\n");
    IEyeDiagramData* data = m_factory->CreateStimulusData();
    testing::internal::CaptureStderr();
    EXPECT_TRUE(data->Load(file.c_str(), true));
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "KVComCtl: Invalid eye diagram data. Reverting to default values.\n");
    m_factory->Destroy(data);
}

TEST_F(PlainHost, WidgetComponentsAreRefusedWithoutAnApplication) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(m_factory->CreateProgressDlg(), nullptr);
    EXPECT_EQ(m_factory->CreateProgressBarCtrl(), nullptr);
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_NE(said.find("The progress dialog needs a QApplication"), std::string::npos) << said;
    EXPECT_NE(said.find("The progress bar needs a QApplication"), std::string::npos) << said;
}

}  // namespace
