// The command's arguments, one to a line: parsed without running the command, and each also parsed
// as every kind of number list that an option accepts.

#include <sstream>
#include <string>
#include <vector>

#include "apps/command/arguments.h"
#include "apps/command/program.h"
#include "kit/base/error.h"
#include "tests/fuzz/exercise.h"

namespace {

using namespace korvel::kit;
using namespace korvel::command;

void parse(const std::vector<std::string>& words) {
    std::ostringstream output;
    constexpr bool run = false;
    korvel_program()->parse(words, output, output, run);
}

template <class Parse>
void try_to(Parse parse) {
    try {
        parse();
    } catch (const Error&) {
        // Refused.
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::istringstream lines(std::string(reinterpret_cast<const char*>(data), size));
    std::vector<std::string> words;
    for (std::string word; std::getline(lines, word);) {
        words.push_back(word.substr(0, word.find('\0')));
        try_to([&] { parse_lattice_point("POINT", word); });
        try_to([&] { parse_real_point("POINT", word); });
        try_to([&] { parse_picture_size("--size", word); });
        try_to([&] { parse_box("--view", word); });
        try_to([&] { parse_reals("--plane", word, "A,B,C,D"); });
    }
    try_to([&] { parse(words); });
    return 0;
}
