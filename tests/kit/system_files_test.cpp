// Files by names of any letters, and files that go away.

#include <cerrno>
#include <cstdio>
#include <string>

#include "kit/base/system_files.h"
#include "kit/files/output_file.h"
#include "kit/files/text_file.h"
#include "tests/support/scratch.h"

namespace korvel::test {
namespace {

class SystemFiles : public Scratch {};

TEST_F(SystemFiles, NamesHaveAnyLetters) {
    const std::string name = "Gr\u00f6\u00dfe \u65e5\u672c \U0001f5fa.txt";
    EXPECT_EQ(kit::text_of(kit::path_of(name)), name);
    const auto file = directory_ / kit::path_of(name);
    for (const char* const text : {"first", "second"}) { // the second one replaces a file
        kit::OutputFile out(file);
        std::fputs(text, out.stream());
        out.replace();
        const kit::TextFile written(file);
        EXPECT_EQ(written.text, text);
        EXPECT_TRUE(written.name.ends_with(name)) << written.name;
    }
    EXPECT_EQ(files(), 1);
}

TEST_F(SystemFiles, NewFilesAreNew) {
    FILE* const created = kit::create_file(path("new"));
    ASSERT_NE(created, nullptr);
    EXPECT_EQ(kit::create_file(path("new")), nullptr);
    EXPECT_EQ(errno, EEXIST);
    std::fputs("a\n", created);
    kit::remove_quickly(path("new").c_str()); // as a signal does
    std::fclose(created);
    EXPECT_EQ(files(), 0);
    EXPECT_EQ(kit::open_file(path("new"), "rb"), nullptr);
    EXPECT_EQ(errno, ENOENT);
}

TEST_F(SystemFiles, TemporaryFilesKeepEveryByte) {
    FILE* const file = kit::create_temporary_file();
    ASSERT_NE(file, nullptr);
    std::fputs("a\r\n\x1a\n", file);
    std::rewind(file);
    std::string text(9, ' ');
    text.resize(std::fread(text.data(), 1, text.size(), file));
    std::fclose(file);
    EXPECT_EQ(text, "a\r\n\x1a\n");
}

TEST_F(SystemFiles, DirectoriesAndDevicesAreKnown) {
    EXPECT_FALSE(kit::is_device(path("none")));
    write("file", "");
    EXPECT_FALSE(kit::is_device(path("file")));
#ifdef _WIN32
    EXPECT_TRUE(kit::is_device("NUL"));
#else
    EXPECT_TRUE(kit::is_device("/dev/null"));
#endif
}

} // namespace
} // namespace korvel::test
