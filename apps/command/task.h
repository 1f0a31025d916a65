#pragma once

#include <chrono>
#include <string>

#include "kit/kit.h"

namespace korvel::command {

/// Work that can last. While this object exists, a line on the terminal names the task and its
/// progress, unless standard error is no terminal or --quiet was given; the report of a verbose run
/// has the time that it took.
class Task {
public:
    explicit Task(std::string what);
    ~Task();
    Task(const Task&) = delete;
    Task& operator=(const Task&) = delete;

    /// Cheap enough to be called at every step.
    void update(int done, int all);
    void update(double fraction);

    /// Shows the progress of an operation, and its warnings on standard error. Valid as long as
    /// this object is.
    kit::Context context();

private:
    using Clock = std::chrono::steady_clock;

    bool is_time_to_show();

    std::string what_;
    Clock::time_point start_;
    Clock::time_point shown_;
};

} // namespace korvel::command
