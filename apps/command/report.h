#pragma once

#include <string>

#include "apps/command/options.h"
#include "apps/command/record.h"
#include "kit/kit.h"

// What a command reports: lines of text for people, or with --json one object for programs. Both go
// to standard output, or to standard error when standard output takes a file. Warnings and errors
// go to standard error.

namespace korvel::command {

/// `--quiet`, `--verbose` and `--json`, which every command has.
struct ReportOptions {
    bool is_quiet = false;
    bool is_verbose = false;
    bool is_json = false;

    void add_options(Options options);
};

/// To be called before anything is reported.
void start_report(const std::string& command, const ReportOptions& options);

/// Standard output is for a file from here on.
void report_to_standard_error();

bool is_verbose();
bool is_json();

/// Shows a line about the progress of work on the terminal until it is cleared, or anything else is
/// printed. Does nothing with --quiet, or where standard error is no terminal.
void show_progress(const std::string& line);
void clear_progress();

#if defined(__MINGW32__) // where "printf" is that of msvcrt.dll, which is not used
#define KORVEL_LIKE_PRINTF __attribute__((format(gnu_printf, 1, 2)))
#elif defined(__GNUC__)
#define KORVEL_LIKE_PRINTF __attribute__((format(printf, 1, 2)))
#else
#define KORVEL_LIKE_PRINTF
#endif

/// Prints a line of the report, formatted as printf does. The line end is added.
void print(const char* format, ...) KORVEL_LIKE_PRINTF;

/// Prints a line with --verbose only.
void print_detail(const char* format, ...) KORVEL_LIKE_PRINTF;

/// Prints a line of what the command was asked for, also with --quiet.
void print_answer(const std::string& line);

/// The object that --json prints, with the names of docs/report.schema.json.
Record& facts();

/// Adds the name of a written file to the facts.
void note_output(const std::string& file);

/// Adds the time that a task took to the facts, and prints it with --verbose.
void note_time(const std::string& task, double milliseconds);

/// Prints what is odd but does not stop the command. Warnings that differ in numbers alone are of
/// one kind: without --verbose ten of a kind are printed, and at the end how many more there were.
void warn(const std::string& message);

/// Makes the exit status 3 once the command is done and all its files are written: the result
/// leaves out something of the input, and the user asked for a strict run.
void note_incomplete();

enum ExitStatus { success = 0, output_failed = 1, bad_input = 2, incomplete = 3 };

/// Prints the error, unless the pipe that reads the output was closed, and returns its status.
ExitStatus report_error(const kit::Error& error);
ExitStatus report_error(const std::string& message);

/// Prints what is left to print and returns the exit status of a command that ended with `status`.
ExitStatus finish_report(ExitStatus status);

} // namespace korvel::command
