#pragma once

#include <chrono>
#include <string>

namespace korvel::kit {

/// A line on the terminal that tells what is going on and how far it is, wiped when this object
/// goes. Shows nothing when standard error is not a terminal.
class Progress {
public:
    explicit Progress(std::string what);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Cheap enough to be called at every step.
    void update(int done, int all);

private:
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

} // namespace korvel::kit
