#include "apps/command/trace_files.h"

#include <system_error>

#include "apps/command/task.h"
#include "kit/kit.h"

namespace korvel::command {
namespace fs = std::filesystem;
namespace {

// What the library calls them.
constexpr const char* summary_name = "wwwtrg.dat";
constexpr const char* steps_name = "trg.dat";

/// The library writes its trace files into the current directory, so this is another one for the
/// length of this scope.
class TracingIn {
public:
    explicit TracingIn(const fs::path& directory) {
        fs::current_path(directory);
        PLYDT::set_trace_files(true);
    }
    ~TracingIn() {
        PLYDT::set_trace_files(false);
        std::error_code error;
        fs::current_path(former_, error);
    }
    TracingIn(const TracingIn&) = delete;
    TracingIn& operator=(const TracingIn&) = delete;

private:
    fs::path former_ = fs::current_path();
};

[[noreturn]] void fail(const std::string& name, const std::string& reason) {
    throw kit::output_error(name + ": cannot be written: " + reason);
}

void make(const fs::path& directory, const std::string& name) {
    try {
        fs::create_directories(directory);
    } catch (const fs::filesystem_error& error) {
        fail(name, error.code().default_error_condition().message());
    }
}

const std::string& made(const std::string& directory) {
    make(kit::path_of(directory), directory);
    return directory;
}

} // namespace

TraceFiles::TraceFiles(const std::string& directory)
    : name_(made(directory)), summary_(kit::path_of(directory) / summary_name),
      steps_(kit::path_of(directory) / steps_name),
      scratch_(fs::absolute(kit::path_of(directory)) / kit::temporary_name()),
      held_summary_(scratch_ / summary_name), held_steps_(scratch_ / steps_name),
      held_scratch_(scratch_) {
    make(scratch_, name_);
}

void TraceFiles::write(PLYDT& set) {
    const Task task("triangulating with traces");
    const TracingIn here(scratch_);
    set.region_tranglate();
    if (PLYDT::has_lost_trace()) {
        fail(name_, "the traces are not complete");
    }
}

void TraceFiles::replace() {
    summary_.replace_by(scratch_ / summary_name);
    steps_.replace_by(scratch_ / steps_name);
}

TraceFiles::~TraceFiles() {
    std::error_code error;
    fs::remove_all(scratch_, error);
}

} // namespace korvel::command
