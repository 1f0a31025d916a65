#include "apps/command/progress_line.h"

#include <cstdio>
#include <utility>

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
    constexpr std::chrono::milliseconds pause(100);
    if (!on_terminal_) {
        return;
    }
    const auto now = std::chrono::steady_clock::now();
    if (now - shown_ >= pause) {
        shown_ = now;
        std::fprintf(stderr, "\r\033[K%s ... %d of %d", what_.c_str(), done, all);
    }
}

} // namespace korvel::command
