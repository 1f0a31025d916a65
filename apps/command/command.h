#pragma once

#include <CLI/CLI.hpp>

namespace korvel::kit {

// Each adds one command to the program: its arguments, its help and what it does when it was
// called.
void add_regions_command(CLI::App& program);
void add_triangles_command(CLI::App& program);
void add_locate_command(CLI::App& program);
void add_solid_command(CLI::App& program);
void add_starter_command(CLI::App& program);
void add_section_command(CLI::App& program);
void add_view_command(CLI::App& program);
void add_merge_command(CLI::App& program);
void add_clean_command(CLI::App& program);
void add_inside_command(CLI::App& program);
void add_move_command(CLI::App& program);
void add_info_command(CLI::App& program);
void add_check_command(CLI::App& program);

} // namespace korvel::kit
