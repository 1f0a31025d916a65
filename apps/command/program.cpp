#include "apps/command/program.h"

#include <cstdio>

#include "apps/command/command.h"
#include "apps/command/completion.h"
#include "kit/kit.h"

namespace korvel::command {

std::unique_ptr<Program> korvel_program() {
    auto program = std::make_unique<Program>(
        "korvel", KORVEL_VERSION,
        "Closed regions from networks of curves, their triangles, solids raised from them, and "
        "sections of solids.");
    program->footer(
        "'korvel help COMMAND' lists the options of a command. The file name - is standard input\n"
        "or standard output; the report goes to standard error then.\n"
        "\n"
        "Exit status: 0 done, 1 an output cannot be written, 2 wrong arguments or input,\n"
        "3 done, but --strict was given and something is left out.\n"
        "\n"
        "Examples:\n"
        "  korvel regions data/us-states.curves -o states.regions --picture states.png\n"
        "  korvel solid data/us-states.curves --levels 0,3000 -o states.model\n"
        "  korvel section states.model --plane y=60000 --picture section.png");
    add_regions_command(*program);
    add_triangles_command(*program);
    add_locate_command(*program);
    add_solid_command(*program);
    add_starter_command(*program);
    add_section_command(*program);
    add_view_command(*program);
    add_merge_command(*program);
    add_weld_command(*program);
    add_clean_command(*program);
    add_inside_command(*program);
    add_move_command(*program);
    add_info_command(*program);
    add_check_command(*program);
    add_convert_command(*program);
    add_formats_command(*program);
    program->add_hidden_option("--completion", {"bash", "zsh", "fish"},
                               [&program = *program](const std::string& shell) {
                                   std::fputs(completion_script(program, shell).c_str(), stdout);
                               });
    return program;
}

} // namespace korvel::command
