#pragma once

#include <chrono>
#include <string>

#include "kit/kit.h"

namespace korvel::command {

/// A line on the terminal with a task and its progress, erased when this object is destroyed.
/// Shows nothing when standard error is not a terminal.
class ProgressLine {
public:
    explicit ProgressLine(std::string what);
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    /// Cheap enough to be called at every step.
    void update(int done, int all);
    void update(double fraction);

    /// Shows the progress of an operation, and its warnings on standard error. Valid as long as
    /// this object is.
    kit::Context context();

private:
    bool is_time_to_show();

    std::string what_;
    bool on_terminal_;
    std::chrono::steady_clock::time_point shown_;
};

/// Milliseconds since it was made.
class Stopwatch {
public:
    double milliseconds() const {
        return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start_)
            .count();
    }

private:
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

} // namespace korvel::command
