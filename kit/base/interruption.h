#pragma once

#include <filesystem>

namespace korvel::kit {

/// Lets SIGINT, SIGTERM and SIGHUP remove the files of all `RemoveOnSignal`s before they end the
/// program as they always do; those that the program was started to ignore stay ignored. Writing
/// into a closed pipe, or past the limit on the size of files, fails with an error from here on
/// instead of ending the program. On Windows the files are removed when the console ends the
/// program: by Ctrl+C, Ctrl+Break, or with its window. To be called once, first of all.
void set_up_signals();

/// While it lives, a signal that ends the program removes the file, or the directory if no other
/// files are in it. Does nothing before `set_up_signals`.
///
/// At most eight files are held at a time, with names of up to 4095 characters; others stay behind.
class RemoveOnSignal {
public:
    /// Made before the file is, so that no signal comes in between.
    explicit RemoveOnSignal(const std::filesystem::path& file);
    ~RemoveOnSignal();
    RemoveOnSignal(const RemoveOnSignal&) = delete;
    RemoveOnSignal& operator=(const RemoveOnSignal&) = delete;

private:
    int slot_ = -1;
};

} // namespace korvel::kit
