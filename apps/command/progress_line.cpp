#include "apps/command/progress_line.h"

#include <cstdio>
#include <utility>

#include "apps/command/messages.h"

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

ProgressLine::ProgressLine(std::string what)
    : what_(std::move(what)), on_terminal_(is_terminal(stderr)),
      shown_(std::chrono::steady_clock::now()) {
    if (on_terminal_) {
        std::fprintf(stderr, "%s ...", what_.c_str());
    }
}

ProgressLine::~ProgressLine() {
    if (on_terminal_) {
        std::fputs("\r\033[K", stderr);
    }
}

void ProgressLine::update(int done, int all) {
    if (is_time_to_show()) {
        std::fprintf(stderr, "\r\033[K%s ... %d of %d", what_.c_str(), done, all);
    }
}

void ProgressLine::update(double fraction) {
    if (is_time_to_show()) {
        std::fprintf(stderr, "\r\033[K%s ... %.0f %%", what_.c_str(), 100 * fraction);
    }
}

kit::Context ProgressLine::context() {
    return {.on_progress = [this](const kit::Progress& progress) { update(progress.fraction); },
            .on_warning = warn};
}

bool ProgressLine::is_time_to_show() {
    constexpr std::chrono::milliseconds pause(100);
    const auto now = std::chrono::steady_clock::now();
    if (!on_terminal_ || now - shown_ < pause) {
        return false;
    }
    shown_ = now;
    return true;
}

} // namespace korvel::command
