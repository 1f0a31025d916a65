#pragma once

#include <memory>

#include "apps/command/options.h"
#include "apps/command/report.h"

namespace korvel::command {

/// Adds a command to the program. The constructor of `Command` adds the options, and `run` is
/// called once they are parsed. Every command has the options of reports as well.
template <class Command>
void add_command(Program& program, const char* name, const char* purpose) {
    const Options options = program.add_command(name, purpose);
    const auto self = std::make_shared<Command>(options);
    const auto report = std::make_shared<ReportOptions>();
    report->add_options(options);
    options.then([=] {
        start_report(name, *report);
        self->run();
    });
}

void add_regions_command(Program& program);
void add_triangles_command(Program& program);
void add_locate_command(Program& program);
void add_solid_command(Program& program);
void add_starter_command(Program& program);
void add_section_command(Program& program);
void add_view_command(Program& program);
void add_merge_command(Program& program);
void add_weld_command(Program& program);
void add_clean_command(Program& program);
void add_inside_command(Program& program);
void add_move_command(Program& program);
void add_info_command(Program& program);
void add_check_command(Program& program);
void add_convert_command(Program& program);
void add_formats_command(Program& program);

} // namespace korvel::command
