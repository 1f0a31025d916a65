#include "apps/command/task.h"

#include <utility>

#include "apps/command/report.h"

namespace korvel::command {

Task::Task(std::string what) : what_(std::move(what)), start_(Clock::now()), shown_(start_) {
    show_progress(what_ + " ...");
}

Task::~Task() {
    clear_progress();
    note_time(what_, std::chrono::duration<double, std::milli>(Clock::now() - start_).count());
}

void Task::update(int done, int all) {
    if (is_time_to_show()) {
        show_progress(what_ + " ... " + std::to_string(done) + " of " + std::to_string(all));
    }
}

void Task::update(double fraction) {
    if (is_time_to_show()) {
        const int percent = static_cast<int>(100 * fraction);
        show_progress(what_ + " ... " + std::to_string(percent) + " %");
    }
}

kit::Context Task::context() {
    return {.on_progress = [this](const kit::Progress& progress) { update(progress.fraction); },
            .on_warning = warn};
}

bool Task::is_time_to_show() {
    constexpr std::chrono::milliseconds pause(100);
    const auto now = Clock::now();
    if (now - shown_ < pause) {
        return false;
    }
    shown_ = now;
    return true;
}

} // namespace korvel::command
