#include "apps/command/report.h"

#include <cctype>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <map>
#include <system_error>
#include <vector>

#include "apps/command/console.h"

namespace korvel::command {
namespace {

/// Warnings that differ in numbers alone.
struct WarningKind {
    std::string first;
    int count = 0;
};

struct State {
    ReportOptions options;
    FILE* stream = stdout;
    int failure = 0; // of a write to the stream
    bool is_started = false;
    bool is_incomplete = false;
    bool shows_progress = false;
    Record facts;
    std::vector<std::string> outputs;
    std::map<std::string, double> milliseconds;
    std::vector<std::string> warnings;
    std::map<std::string, WarningKind> kinds;
};

constexpr int most_of_a_kind = 10;

State& state();
bool prints_text();
void put_line(const std::string& line);
void flush();
void note_failure(FILE* stream);
std::string formatted(const char* format, std::va_list values);
std::string without_numbers(const std::string& text);
void put_message(const std::string& message);
ExitStatus failed_output(int error);

} // namespace

void ReportOptions::add_options(Options options) {
    options.add_flag("-q,--quiet", is_quiet, "No report, only warnings, errors and answers");
    options.add_flag("-v,--verbose", is_verbose, "All warnings, times and further details");
    options.add_flag("--json", is_json, "The report as a JSON object");
}

void start_report(const std::string& command, const ReportOptions& options) {
    if (options.is_quiet && (options.is_verbose || options.is_json)) {
        throw kit::input_error(std::string("--quiet excludes ") +
                               (options.is_json ? "--json" : "--verbose"));
    }
    state().options = options;
    state().is_started = true;
    facts().set("command", command).set("version", KORVEL_VERSION);
}

void report_to_standard_error() {
    state().stream = stderr;
}

bool is_verbose() {
    return state().options.is_verbose;
}

bool is_json() {
    return state().options.is_json;
}

void show_progress(const std::string& line) {
    static const bool on_terminal = is_terminal(stderr);
    if (on_terminal && !state().options.is_quiet) {
        std::fprintf(stderr, "\r\033[K%s", line.c_str());
        state().shows_progress = true;
    }
}

void clear_progress() {
    if (state().shows_progress) {
        std::fputs("\r\033[K", stderr);
        state().shows_progress = false;
    }
}

void print(const char* format, ...) { // NOLINT(cert-dcl50-cpp)
    if (prints_text() && !state().options.is_quiet) {
        std::va_list values;
        va_start(values, format);
        put_line(formatted(format, values));
        va_end(values);
    }
}

void print_detail(const char* format, ...) { // NOLINT(cert-dcl50-cpp)
    if (is_verbose() && prints_text()) {
        std::va_list values;
        va_start(values, format);
        put_line(formatted(format, values));
        va_end(values);
    }
}

void print_answer(const std::string& line) {
    if (prints_text()) {
        put_line(line);
    }
}

Record& facts() {
    return state().facts;
}

void note_output(const std::string& file) {
    state().outputs.push_back(file);
}

void note_time(const std::string& task, double milliseconds) {
    state().milliseconds[task] += milliseconds;
    print_detail("%s: %.1f ms", task.c_str(), milliseconds);
}

void warn(const std::string& message) {
    state().warnings.push_back(message);
    WarningKind& kind = state().kinds[without_numbers(message)];
    if (++kind.count == 1) {
        kind.first = message;
    }
    if (kind.count <= most_of_a_kind || is_verbose()) {
        put_message("warning: " + message);
    }
}

void note_incomplete() {
    state().is_incomplete = true;
}

ExitStatus report_error(const kit::Error& error) {
    Record record;
    record.set("message", error.what());
    if (!error.file().empty()) {
        record.set("file", error.file());
    }
    if (error.line() > 0) {
        record.set("line", error.line()).set("value", error.value());
    }
    facts().set("error", record);
    if (!error.is_closed_pipe()) {
        put_message(error.what());
    }
    return error.kind() == kit::Error::Kind::input ? bad_input : output_failed;
}

ExitStatus report_error(const std::string& message) {
    facts().set("error", Record().set("message", message));
    put_message(message);
    return output_failed;
}

ExitStatus finish_report(ExitStatus status) {
    for (const auto& [name, kind] : state().kinds) {
        if (kind.count > most_of_a_kind && !is_verbose()) {
            put_message("warning: and " + std::to_string(kind.count - most_of_a_kind) +
                        " more such as '" + kind.first + "' (--verbose shows all)");
        }
    }
    if (status == success && state().is_incomplete) {
        status = incomplete;
    }
    if (state().is_started && state().options.is_json) {
        Record times;
        for (const auto& [task, milliseconds] : state().milliseconds) {
            times.set(task.c_str(), milliseconds);
        }
        facts()
            .set("outputs", state().outputs)
            .set("warnings", state().warnings)
            .set("milliseconds", times)
            .set("status", static_cast<int>(status));
        put_line(facts().text());
    }
    flush();
    // A run that ended with a failed output has named it.
    const bool is_news = state().failure != 0 && status != output_failed;
    return is_news ? failed_output(state().failure) : status;
}

namespace {

State& state() {
    static State the_state;
    return the_state;
}

bool prints_text() {
    return !state().options.is_json;
}

void put_line(const std::string& line) {
    clear_progress();
    errno = 0;
    FILE* const stream = state().stream;
    if (std::fwrite(line.data(), 1, line.size(), stream) != line.size() ||
        std::putc('\n', stream) == EOF) {
        note_failure(stream);
    }
}

void flush() {
    errno = 0;
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        note_failure(stdout);
    }
}

// Later errors can be consequences of the first.
void note_failure(FILE* stream) {
    if (state().failure == 0) {
        state().failure = kit::reason_of_failed_write(stream, errno);
    }
}

std::string formatted(const char* format, std::va_list values) {
    std::va_list again;
    va_copy(again, values);
    const int size = std::vsnprintf(nullptr, 0, format, values);
    std::string text(static_cast<std::size_t>(size), '\0');
    std::vsnprintf(text.data(), text.size() + 1, format, again);
    va_end(again);
    return text;
}

std::string without_numbers(const std::string& text) {
    std::string kind;
    for (const char c : text) {
        if (std::isdigit(static_cast<unsigned char>(c)) == 0 && c != '.' && c != '-') {
            kind += c;
        } else if (kind.empty() || kind.back() != '0') {
            kind += '0';
        }
    }
    return kind;
}

void put_message(const std::string& message) {
    clear_progress();
    // Keeps the order of lines when standard output and standard error are the same file.
    flush();
    // In one piece, on every system.
    const std::string line = "korvel: " + message + "\n";
    std::fwrite(line.data(), 1, line.size(), stderr);
}

// A reader that closes its pipe, as `head` does, has what it wanted.
ExitStatus failed_output(int error) {
    if (error != EPIPE) {
        put_message("standard output: cannot be written: " +
                    std::generic_category().message(error));
    }
    return output_failed;
}

} // namespace
} // namespace korvel::command
