// The DLLs as a host on Windows sees them.

#include <exception>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "kit/kit.h"

namespace {

TEST(Dll, ThrowsExceptionsThatTheHostCatches) {
    for (int round = 0; round < 2; ++round) {
        try {
            const korvel::kit::TextFile missing("no such file");
            FAIL() << "a missing file was read";
        } catch (const korvel::kit::Error& error) {
            EXPECT_EQ(error.kind(), korvel::kit::Error::Kind::input);
            EXPECT_EQ(error.file(), "no such file");
            EXPECT_NE(std::string(error.what()).find("no such file: cannot be read"),
                      std::string::npos)
                << error.what();
        }
    }
}

TEST(Dll, ThrowsExceptionsThatTheHostStoresAndRethrows) {
    std::exception_ptr stored;
    try {
        try {
            const korvel::kit::TextFile missing("no such file");
        } catch (...) {
            stored = std::current_exception();
            throw;
        }
    } catch (const std::runtime_error&) {
    }
    ASSERT_TRUE(stored != nullptr);
    EXPECT_THROW(std::rethrow_exception(stored), korvel::kit::Error);
}

/// One text of the version resource of a DLL.
std::string version_text(const char* dll, const char* name) {
    std::vector<char> block(GetFileVersionInfoSizeA(dll, nullptr));
    void* text = nullptr;
    UINT length = 0;
    if (block.empty() ||
        GetFileVersionInfoA(dll, 0, static_cast<DWORD>(block.size()), block.data()) == 0 ||
        VerQueryValueA(block.data(), (std::string("\\StringFileInfo\\040904B0\\") + name).c_str(),
                       &text, &length) == 0) {
        return {};
    }
    return static_cast<const char*>(text);
}

TEST(Dll, HasAVersionResource) {
    for (const char* dll : {"libkorvel.dll", "libkorvel_kit.dll", "libkorvel_platform.dll"}) {
        EXPECT_EQ(version_text(dll, "FileVersion"), KORVEL_VERSION) << dll;
        EXPECT_EQ("lib" + version_text(dll, "InternalName") + ".dll", dll);
        EXPECT_NE(version_text(dll, "FileDescription"), "") << dll;
    }
}

} // namespace
