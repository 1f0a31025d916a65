#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <exception>
#include <iostream>
#include <new>
#include <string>
#include <system_error>
#include <vector>

#include "apps/command/messages.h"
#include "apps/command/program.h"
#include "kit/kit.h"

namespace {

enum ExitStatus { success = 0, output_failed = 1, bad_input = 2, incomplete = 3 };

ExitStatus run(int argc, char** argv);
void finish_standard_output();

} // namespace

int main(int argc, char** argv) {
    korvel::kit::set_up_signals();
    try {
        return run(argc, argv);
    } catch (const korvel::kit::Error& error) {
        std::fprintf(stderr, "%s\n", error.what());
        if (error.kind() == korvel::kit::Error::Kind::input) {
            return bad_input;
        }
    } catch (const std::bad_alloc&) {
        std::fputs("korvel: not enough memory\n", stderr);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "korvel: %s\n", error.what());
    }
    return output_failed;
}

namespace {

ExitStatus run(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
    const bool fits = korvel::command::korvel_program()->parse(arguments, std::cout, std::cerr);
    std::cout.flush();
    finish_standard_output();
    if (!fits) {
        return bad_input;
    }
    return korvel::command::is_incomplete() ? incomplete : success;
}

void finish_standard_output() {
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        throw korvel::kit::output_error("standard output: cannot be written: " +
                                        std::generic_category().message(errno != 0 ? errno : EIO));
    }
}

} // namespace
