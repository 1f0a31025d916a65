// Files and arguments that the command refuses: bad_inputs/cases lists them all.

#include <string>
#include <vector>

#include "tests/support/command_scratch.h"

namespace korvel::test {
namespace {

/// A call of the command and its expected result, as in `cases`:
///
///     $ arguments
///     ! how the message on standard error begins
///     = exit status, if it is not 2
struct Case {
    std::string arguments;
    std::string message;
    int status = 2;
};

std::vector<Case> read_cases(const std::filesystem::path& file) {
    std::vector<Case> cases;
    std::ifstream lines(file);
    for (std::string line; std::getline(lines, line);) {
        const std::string rest = line.size() > 2 ? line.substr(2) : std::string();
        if (line.starts_with("$")) {
            cases.push_back({rest, {}, 2});
        } else if (line.starts_with("!")) {
            cases.back().message = rest;
        } else if (line.starts_with("=")) {
            cases.back().status = std::stoi(rest);
        }
    }
    return cases;
}

class RefusedInputs : public CommandScratch {};

// The message is the only output, and the output file keeps its contents.
TEST_F(RefusedInputs, AreNamedAndChangeNothing) {
    const std::filesystem::path inputs = KORVEL_BAD_INPUTS;
    std::filesystem::copy(inputs, directory_);
    write("out", "former");
    const std::vector<Case> cases = read_cases(inputs / "cases");
    ASSERT_GE(cases.size(), 60U);
    const int files_before = files();
    for (const Case& bad : cases) {
        ASSERT_FALSE(bad.message.empty()) << bad.arguments;
        const Result result = run(bad.arguments);
        EXPECT_EQ(result.status, bad.status) << bad.arguments;
        EXPECT_THAT(result.err, testing::StartsWith("korvel: " + bad.message)) << bad.arguments;
        EXPECT_EQ(result.out, "") << bad.arguments;
        EXPECT_EQ(read("out"), "former") << bad.arguments;
        EXPECT_EQ(files(), files_before) << bad.arguments;
    }
}

} // namespace
} // namespace korvel::test
