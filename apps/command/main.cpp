#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <new>
#include <string>
#include <system_error>
#include <vector>

#include "apps/command/command.h"
#include "apps/command/completion.h"
#include "apps/command/program.h"
#include "kit/kit.h"

namespace {

enum ExitStatus { success = 0, output_failed = 1, bad_input = 2 };

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
    CLI::App program;
    korvel::command::build_program(program);

    ExitStatus status = success;
    try {
        program.parse(korvel::command::arguments(argc, argv));
        if (program.get_subcommands().empty()) {
            throw CLI::RequiredError("A command");
        }
    } catch (const CLI::ParseError& error) {
        // Asking for help or for the version ends the parsing too.
        status = program.exit(error) == 0 ? success : bad_input;
    }
    finish_standard_output();
    return status;
}

void finish_standard_output() {
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        throw korvel::kit::output_error("standard output: cannot be written: " +
                                        std::generic_category().message(errno != 0 ? errno : EIO));
    }
}

} // namespace

void korvel::command::build_program(CLI::App& program) {
    program.description(
        "Closed regions from networks of curves, their triangles, solids raised from them, and "
        "sections of solids.");
    program.name("korvel");
    program.set_version_flag("--version", "korvel " KORVEL_VERSION);
    program.require_subcommand(0, 1);
    program.get_formatter()->label("SUBCOMMAND", "COMMAND");
    program.footer(
        "'korvel COMMAND --help' lists the options of a command.\n"
        "Exit status: 0 done, 1 an output cannot be written, 2 wrong arguments or input.\n"
        "\n"
        "Examples:\n"
        "  korvel regions data/us-states.curves -o states.regions --picture states.png\n"
        "  korvel solid data/us-states.curves --levels 0,3000 -o states.model\n"
        "  korvel section states.model --x -60000 --picture section.png");
    korvel::command::add_regions_command(program);
    korvel::command::add_triangles_command(program);
    korvel::command::add_locate_command(program);
    korvel::command::add_solid_command(program);
    korvel::command::add_starter_command(program);
    korvel::command::add_section_command(program);
    korvel::command::add_view_command(program);
    korvel::command::add_merge_command(program);
    korvel::command::add_clean_command(program);
    korvel::command::add_inside_command(program);
    korvel::command::add_move_command(program);
    korvel::command::add_info_command(program);
    korvel::command::add_check_command(program);
    korvel::command::add_completion_option(program);
}

std::vector<std::string> korvel::command::arguments(int argc, char** argv) {
    std::vector<std::string> words(argv + std::min(argc, 1), argv + argc);
    for (std::size_t i = 0; i < words.size(); ++i) {
        std::string& word = words[i];
        // An empty word would name the parser's groups of options, in which it loses its way.
        if (word.empty()) {
            throw kit::input_error("korvel: argument " + std::to_string(i + 1) + " is empty");
        }
        // The parser knows -1,2 for a value but takes -.5,2 for an option.
        const bool lacks_zero = word.size() > 2 && word[0] == '-' && word[1] == '.' &&
                                std::isdigit(static_cast<unsigned char>(word[2])) != 0;
        if (lacks_zero) {
            word.insert(1, "0");
        }
    }
    std::reverse(words.begin(), words.end());
    return words;
}
