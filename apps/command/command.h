#pragma once

#include <CLI/CLI.hpp>

#include <memory>

namespace korvel::command {

/// Adds a command to the program. The constructor of `Command` adds the options, and `run` is
/// called once they are parsed.
template <class Command>
void add_command(CLI::App& program, const char* name, const char* purpose) {
    CLI::App* const command = program.add_subcommand(name, purpose);
    command->group("Commands");
    const auto self = std::make_shared<Command>(*command);
    command->callback([self] { self->run(); });
}

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

} // namespace korvel::command
