// The command's arguments, one to a line: parsed without running the command, and each also parsed
// as every kind of number list that an option accepts.

#include <CLI/CLI.hpp>

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
    CLI::App program;
    build_program(program);
    program.parse_complete_callback([] { throw CLI::Success(); }); // before any command runs
    std::vector<char*> argv;
    std::vector<std::string> all = words;
    all.insert(all.begin(), "korvel");
    for (std::string& word : all) {
        argv.push_back(word.data());
    }
    try {
        program.parse(arguments(static_cast<int>(argv.size()), argv.data()));
    } catch (const CLI::ParseError& error) {
        std::ostringstream out;
        program.exit(error, out, out);
    } catch (const Error&) {
        // Refused.
    }
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
    parse(words);
    return 0;
}
