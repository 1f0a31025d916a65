// The shared library in the framework's chain of loaded extension libraries: this program is linked
// with the framework alone, loads the library and unloads it.

#include <atomic>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "korvel/platform/framework.h"
#include "tests/support/extension_chain.h"
#include "tests/support/loaded_library.h"

using korvel::test::chain;
using korvel::test::is_library_loaded;
using korvel::test::is_library_of;
using korvel::test::Library;
using korvel::test::load_library;
using korvel::test::unload_library;

namespace {

TEST(LoadedModule, IsInTheChainWhileLoaded) {
    int here = 0;
    AFX_EXTENSION_MODULE record;
    ASSERT_NE(AfxInitExtensionModule(record, reinterpret_cast<HINSTANCE>(&here)), 0);
    const CDynLinkLibrary other(record);
    const std::vector<HINSTANCE> before = chain();

    for (int round = 0; round < 2; ++round) {
        const Library library = load_library(KORVEL_LIBRARY);
        ASSERT_NE(library, nullptr);
        const std::vector<HINSTANCE> loaded = chain();
        ASSERT_EQ(loaded.size(), before.size() + 1);
        EXPECT_TRUE(is_library_of(library, loaded.front()));

        std::thread([] {}).join(); // threads that come and go change nothing
        const Library again = load_library(KORVEL_LIBRARY);
        EXPECT_EQ(again, library);
        EXPECT_TRUE(unload_library(again));
        EXPECT_EQ(chain(), loaded);

        EXPECT_TRUE(unload_library(library));
        EXPECT_FALSE(is_library_loaded(KORVEL_LIBRARY));
        EXPECT_EQ(chain(), before);
    }
}

TEST(LoadedModule, StaysInTheChainWhileAnotherModuleNeedsIt) {
    const Library library = load_library(KORVEL_LIBRARY);
    const Library dependent = load_library(KORVEL_DEPENDENT);
    ASSERT_TRUE(library != nullptr && dependent != nullptr);
    const std::vector<HINSTANCE> loaded = chain();
    EXPECT_EQ(loaded.size(), 1U);
    EXPECT_TRUE(unload_library(library));
    EXPECT_EQ(chain(), loaded);
    EXPECT_TRUE(unload_library(dependent));
    EXPECT_TRUE(chain().empty());

    const Library with_what_it_needs = load_library(KORVEL_DEPENDENT);
    EXPECT_EQ(chain().size(), 1U);
    EXPECT_TRUE(unload_library(with_what_it_needs));
    EXPECT_TRUE(chain().empty());
}

TEST(LoadedModule, IsLoadedByTwoThreadsAtATime) {
    constexpr int rounds = 100;
    std::atomic<int> faults = 0;
    const auto load_often = [&] {
        for (int i = 0; i < rounds; ++i) {
            const Library library = load_library(KORVEL_LIBRARY);
            faults += library == nullptr || chain().size() != 1 ? 1 : 0;
            faults += unload_library(library) ? 0 : 1;
        }
    };
    std::thread other(load_often);
    load_often();
    other.join();
    EXPECT_EQ(faults, 0);
    EXPECT_TRUE(chain().empty());
    EXPECT_FALSE(is_library_loaded(KORVEL_LIBRARY));
}

} // namespace
