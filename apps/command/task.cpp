#include "apps/command/task.h"

#include <cstdio>
#include <utility>

#include "apps/command/report.h"

#if defined(_WIN32)
#include <io.h>
#else
#include <unistd.h>
#endif

namespace korvel::command {
namespace {

bool is_terminal(FILE* stream) {
#if defined(_WIN32)
    return _isatty(_fileno(stream)) != 0;
#else
    return isatty(fileno(stream)) != 0;
#endif
}

} // namespace

Task::Task(std::string what)
    : what_(std::move(what)), on_terminal_(shows_progress() && is_terminal(stderr)),
      start_(Clock::now()), shown_(start_) {
    if (on_terminal_) {
        std::fprintf(stderr, "%s ...", what_.c_str());
    }
}

Task::~Task() {
    if (on_terminal_) {
        std::fputs("\r\033[K", stderr);
    }
    note_time(what_, std::chrono::duration<double, std::milli>(Clock::now() - start_).count());
}

void Task::update(int done, int all) {
    if (is_time_to_show()) {
        std::fprintf(stderr, "\r\033[K%s ... %d of %d", what_.c_str(), done, all);
    }
}

void Task::update(double fraction) {
    if (is_time_to_show()) {
        std::fprintf(stderr, "\r\033[K%s ... %.0f %%", what_.c_str(), 100 * fraction);
    }
}

kit::Context Task::context() {
    return {.on_progress = [this](const kit::Progress& progress) { update(progress.fraction); },
            .on_warning = warn};
}

bool Task::is_time_to_show() {
    constexpr std::chrono::milliseconds pause(100);
    const auto now = Clock::now();
    if (!on_terminal_ || now - shown_ < pause) {
        return false;
    }
    shown_ = now;
    return true;
}

} // namespace korvel::command
