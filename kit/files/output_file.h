#pragma once

#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>

#include "kit/base/interruption.h"

namespace korvel::kit {

/// Selects standard output: `OutputFile out(standard_output)`.
struct StandardOutput {};
inline constexpr StandardOutput standard_output;

/// A file that replaces its target only when it is complete. Until `replace` it is a temporary file
/// beside the target; without `replace` it goes away and the former target stays as it was, also
/// when a signal ends the program.
///
/// A target that is not a regular file (a device, a pipe) is written directly. Every call throws
/// an output error when the system refuses; `Error::is_closed_pipe` distinguishes a pipe that
/// nobody reads any more, if the program ignores SIGPIPE (see `set_up_signals`).
class OutputFile {
public:
    explicit OutputFile(const std::filesystem::path& target);

    /// Standard output, written directly and never closed. `close` and `replace` write out what is
    /// buffered, also by others.
    explicit OutputFile(StandardOutput /*tag*/);

    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    /// Throws when the target cannot be written, as far as that shows without writing it.
    static void check(const std::filesystem::path& target);

    /// Open for writing until `close`.
    FILE* stream() const { return stream_; }

    /// Throws an output error with the name of the target and the reason.
    [[noreturn]] void fail(const std::string& reason) const;

    /// Writes out what is still buffered. An error of any write before shows here at the latest.
    void close();

    /// Closes the file and puts it in place of the target.
    void replace();

    /// Puts a complete file of the same file system in place of the target instead.
    void replace_by(const std::filesystem::path& written);

private:
    bool is_standard_output() const { return stream_ == stdout; }
    void put_in_place(const std::filesystem::path& written) const;
    void open_beside_target();
    [[noreturn]] void fail(int error) const;
    [[noreturn]] void fail(const std::string& reason, bool is_closed_pipe) const;

    std::filesystem::path name_;      // as the user spelled it
    std::filesystem::path target_;    // links resolved
    std::filesystem::path temporary_; // empty while there is none
    std::optional<RemoveOnSignal> held_;
    FILE* stream_ = nullptr;
};

/// Writes a value with its `write(OutputFile&)` into a file, completely or not at all.
template <class Value>
void write_completely(const Value& value, const std::filesystem::path& file) {
    OutputFile out(file);
    value.write(out);
    out.replace();
}

} // namespace korvel::kit
