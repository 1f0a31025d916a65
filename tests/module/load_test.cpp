// The shared library on the framework's chain of loaded extension libraries: this program is linked
// with the framework alone, loads the library and lets it go again.

#include <thread>
#include <vector>

#include <dlfcn.h>

#include <gtest/gtest.h>

#include "korvel/platform/framework.h"
#include "tests/support/extension_chain.h"

using korvel::test::chain;

namespace {

TEST(LoadedModule, IsInTheChainWhileLoaded) {
    int other_module = 0;
    AFX_EXTENSION_MODULE record;
    ASSERT_NE(AfxInitExtensionModule(record, &other_module), 0);
    const CDynLinkLibrary other(record);
    const std::vector<HINSTANCE> before = chain();

    for (int round = 0; round < 2; ++round) {
        void* const library = dlopen(KORVEL_LIBRARY, RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(library, nullptr) << dlerror();
        const std::vector<HINSTANCE> loaded = chain();
        ASSERT_EQ(loaded.size(), before.size() + 1);
        Dl_info owner{};
        ASSERT_NE(dladdr(loaded.front(), &owner), 0);
        EXPECT_STREQ(owner.dli_fname, KORVEL_LIBRARY);

        std::thread([] {}).join(); // threads that come and go change nothing
        void* const again = dlopen(KORVEL_LIBRARY, RTLD_NOW | RTLD_LOCAL);
        EXPECT_EQ(again, library);
        EXPECT_EQ(dlclose(again), 0);
        EXPECT_EQ(chain(), loaded);

        EXPECT_EQ(dlclose(library), 0);
        EXPECT_EQ(dlopen(KORVEL_LIBRARY, RTLD_NOW | RTLD_NOLOAD), nullptr);
        EXPECT_EQ(chain(), before);
    }
}

} // namespace
