// Numbers from text against the C library's own reading: value, success, and how far it reads.

#include <bit>
#include <cstdint>
#include <cstdio>
#include <cwchar>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "korvel/base/text_reader.h"
#include "korvel/platform/plain_reading.h"
#include "tests/support/dice.h"
#include "tests/support/streams.h"

namespace {

using namespace korvel::test;

#ifdef __GLIBC__ // other libraries' results for malformed numbers differ

bool scan(FILE* stream, int& value) {
    return std::fscanf(stream, "%d", &value) == 1;
}

bool scan(FILE* stream, float& value) {
    return std::fscanf(stream, "%f", &value) == 1;
}

/// Reads both ways from copies of a text until nothing is found or the text ends: with one reader,
/// and with one for each number, whose destructor leaves the stream where `fscanf` leaves it.
template <class Number>
void expect_same(const std::string& text) {
    const Stream ours = stream_of(text);
    const Stream ours_by_number = stream_of(text);
    const Stream theirs = stream_of(text);
    korvel::TextReader reader(ours.get());
    for (bool found = true; found;) {
        Number expected = 77;
        found = scan(theirs.get(), expected);
        Number value = 77;
        ASSERT_EQ(reader.read(value), found) << text;
        ASSERT_EQ(std::bit_cast<std::uint32_t>(value), std::bit_cast<std::uint32_t>(expected))
            << text;
        value = 77;
        ASSERT_EQ(korvel::TextReader(ours_by_number.get()).read(value), found) << text;
        ASSERT_EQ(std::bit_cast<std::uint32_t>(value), std::bit_cast<std::uint32_t>(expected))
            << text;
        ASSERT_EQ(std::ftell(ours_by_number.get()), std::ftell(theirs.get())) << text;
        ASSERT_EQ(std::feof(ours_by_number.get()), std::feof(theirs.get())) << text;
    }
}

TEST(TextReader, AcceptsWhatTheStandardLibraryAccepts) {
    const char* const pieces[] = {
        "0",          "1",
        "7",          "42",
        "9",          "00",
        "123456",     ".",
        ".",          "+",
        "-",          "e",
        "E",          "e+",
        "e-",         "x",
        "0x",         "0X",
        "p",          "P-",
        "f",          "a",
        "inf",        "INFINITY",
        "infin",      "nan",
        "nan(",       "(1)",
        "na",         " ",
        "\n",         "\t\v\f\r ",
        ",",          "99999999",
        "2147483647", "16777217",
        "4294967296", "9223372036854775808",
        "3.4028236",  "1e39",
        "1e-46",      "\xa0",
    };
    Dice dice(1);
    for (int round = 0; round < 5000; ++round) {
        std::string text;
        for (int k = dice(1, 7); k > 0; --k) {
            text += dice.pick(pieces);
        }
        if (dice.one_in(16)) {
            text[dice(0, static_cast<int>(text.size()) - 1)] = '\0';
        }
        text += std::string(40 * dice(0, 1), ' '); // so that the number is complete in the buffer
        expect_same<int>(text);
        expect_same<float>(text);
    }
    const std::string nines(400, '9');
    const std::string zeros(4000, '0');
    std::string texts[] = {nines, "-", "0.", zeros, nines};
    texts[1] += nines;
    texts[2] += nines;
    texts[3] += "1." + zeros + "1";
    texts[4] += '.' + nines;
    for (const std::string& text : texts) {
        expect_same<int>(text);
        expect_same<float>(text);
    }
}

TEST(TextReader, RoundsOnce) {
    Dice dice(2);
    char text[64];
    for (int round = 0; round < 5000; ++round) {
        // Close to the middle between two floats, and on it, as printed to some digits.
        const auto bits = static_cast<std::uint32_t>(dice(0x3a000000, 0x49ffffff));
        const double low = std::bit_cast<float>(bits);
        const double high = std::bit_cast<float>(bits + 1);
        const double nudge = dice(-1, 1);
        const double value = (low + high) / 2 + nudge * (high - low) * 1e-6;
        std::snprintf(text, sizeof text, round % 2 == 0 ? "%.*f" : "-%.*f", dice(0, 15), value);
        expect_same<float>(text + std::string(40 * dice(0, 1), ' '));
    }
}

#endif

TEST(TextReader, AcceptsCountsThatTheStreamCanHold) {
    const std::string zeros = [] {
        std::string text;
        for (int i = 0; i < 100000; ++i) {
            text += "0 ";
        }
        return text;
    }();
    const Stream stream = stream_of("7 " + zeros);
    korvel::TextReader reader(stream.get());
    int value = 0;
    ASSERT_TRUE(reader.read(value));
    struct Case {
        long long declared;
        int least_bytes;
        int believed;
    };
    for (const Case& c : {Case{-1, 2, 0},
                          {0, 2, 0},
                          {65536, 1 << 20, 65536},
                          {100000, 2, 100000},
                          {100001, 2, 65536},
                          {65537, 4, 65536},
                          {1LL << 40, 2, 65536}}) {
        EXPECT_EQ(reader.believable_records(c.declared, c.least_bytes), c.believed) << c.declared;
    }
    EXPECT_EQ(std::ftell(stream.get()), 1); // the position is kept
    ASSERT_TRUE(reader.read(value));
    EXPECT_EQ(value, 0);
}

TEST(TextReader, ReadsLongListsFromPipes) {
#ifdef _WIN32
    GTEST_SKIP() << "the commands are those of a POSIX shell";
#endif
    struct Case {
        const char* command;
        int believed;
        int size;
    };
    for (const Case& c : {Case{"echo 100000; seq 100000", 65536, 100000},
                          {"echo 100000; seq 70000", 65536, 70000},
                          {"echo 100000; seq 5", 65536, 65536}}) {
        const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(c.command, "r"), pclose);
        korvel::TextReader reader(pipe.get());
        EXPECT_EQ(reader.believable_records(100000, 2), c.believed);
        CArray<int> list;
        list.Add(-1);
        EXPECT_TRUE(korvel::read_declared_ints(reader, list));
        ASSERT_EQ(list.GetSize(), c.size) << c.command;
        EXPECT_EQ(list[4], 5);
        EXPECT_EQ(list[c.size - 1], c.size == 65536 ? 0 : c.size) << c.command;
    }
}

#if defined(__GLIBC__) || defined(__MINGW32__) // elsewhere no number counts as plain
TEST(TextReader, ShowsWhetherNumbersArePlainWords) {
    struct Case {
        const char* text; ///< an integer, then a real
        bool is_plain;
    };
    const Case cases[] = {
        {"7 2.5", true},
        {" -7\t+.5\n", true},
        {"123456789 1e5", false},
        {"7 2", true},
        {"7-2", false},
        {"7.5", false},
        {"7 2.5x", false},
        {"7 2.5.5", false},
        {"1234567890 2", false},
        {"7 0x1p3", false},
        {"7 inf", false},
        {"7 -nan", false},
        {"+ 2", false},
        {"7 123456.7890123456", false},
        {"", false},
    };
    for (const Case& c : cases) {
        const korvel::PlainReading outer;
        const korvel::PlainReading reading;
        {
            const Stream stream = stream_of(c.text);
            korvel::TextReader reader(stream.get());
            int number = 0;
            float real = 0;
            reader.read(number);
            reader.read(real);
        }
        EXPECT_EQ(reading.is_plain(), c.is_plain) << c.text;
        EXPECT_TRUE(outer.is_plain());
    }
}
#endif

#ifdef __GLIBC__
TEST(TextReader, LeavesWideStreamsToTheLibrary) {
    const auto wide = [] {
        Stream stream = stream_of("12 13");
        Stream reopened(std::freopen(nullptr, "r", stream.release()), std::fclose);
        EXPECT_GT(std::fwide(reopened.get(), 1), 0);
        return reopened;
    };
    const auto ours = wide();
    const auto theirs = wide();
    korvel::TextReader reader(ours.get());
    for (int i = 0; i < 2; ++i) {
        int number = 77;
        int expected = 77;
        EXPECT_EQ(reader.read(number), scan(theirs.get(), expected));
        EXPECT_EQ(number, expected);
    }
}

#endif

TEST(TextReader, LeavesAPipeBehindTheNumber) {
#ifdef _WIN32
    GTEST_SKIP() << "the command is one of a POSIX shell";
#endif
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen("printf ' 12-3.5e1x\\n'", "r"), pclose);
    {
        korvel::TextReader reader(pipe.get());
        int number = 0;
        double real = 0;
        EXPECT_TRUE(reader.read(number) && reader.read(real));
        EXPECT_EQ(number + real, 12 - 35);
        EXPECT_FALSE(reader.read(number));
        EXPECT_EQ(number, 12);
    }
    EXPECT_EQ(std::fgetc(pipe.get()), 'x');
}

} // namespace
