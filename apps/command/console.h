#pragma once

#include <cstdio>
#include <string>
#include <vector>

namespace korvel::command {

/// Standard input and outputs while the program runs: the same bytes on every system. On Windows
/// they are binary, as is every file that is opened meanwhile, and a console takes UTF-8; in the
/// end it takes the former code page again.
class Console {
public:
    Console();
    ~Console(); // NOLINT(performance-trivially-destructible)
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

private:
    [[maybe_unused]] unsigned former_code_page_ = 0; // of Windows; 0 without a console
};

/// The arguments of the program, without its name; in UTF-8 on Windows.
std::vector<std::string> program_arguments(int argc, char** argv);

/// Whether a stream leads to a terminal that can erase a line.
bool is_terminal(FILE* stream);

} // namespace korvel::command
