#pragma once

#include <functional>
#include <stop_token>
#include <string>
#include <string_view>

#include "korvel/module/korvel.h"

namespace korvel::kit {

/// How far an operation has come.
struct Progress {
    std::string_view stage; ///< such as "finding regions"
    double fraction = 0;    ///< of this stage, 0 to 1
};

/// What a caller may hand to a long operation: functions that receive its progress and its
/// warnings, and a token by which another thread, or one of the functions, stops it. An operation
/// that is stopped throws an `Error` of kind `cancelled` and leaves what it was given as it was.
///
/// The functions are called in the thread of the operation, at most once for each unit of work.
struct Context {
    std::function<void(const Progress&)> on_progress = {};
    std::function<void(const std::string&)> on_warning = {};
    std::stop_token stop = {};

    /// Reports progress, and throws when the operation is to stop.
    void report(std::string_view stage, long long done, long long all) const;

    /// Whether an operation may end with an exception from here: it can be stopped, or reports its
    /// progress to a function.
    bool can_end_calls() const { return on_progress || stop.stop_possible(); }

    /// Throws when the operation is to stop.
    void stop_if_requested(std::string_view stage) const;

    /// While the result exists, calls of the exact classes in this thread report their progress
    /// here under their own stages, and stop here.
    CheckPointScope follow_calls() const;

    /// Hands on a line for the user, about something unusual that the operation goes on with.
    void warn(const std::string& message) const;
};

} // namespace korvel::kit
