#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace korvel::host {

/// A text file, read whole, so that what was checked is what is used.
struct TextFile {
    std::string name; ///< as the user spelled it
    std::string text;

    /// Throws InputError when the file cannot be opened or read.
    explicit TextFile(const std::filesystem::path& file);
};

/// Takes a text apart into words and numbers, and names file and line of whatever does not fit.
///
/// `what` says in messages what belongs in a place: "the x of a point".
class WordReader {
public:
    explicit WordReader(const TextFile& file) : file_(file), rest_(file.text) {}

    /// Skips white space. True when nothing else is left.
    bool at_end();

    /// The next word, empty at the end.
    std::string_view next();

    /// An integer that fits 32 bits.
    int next_integer(const char* what);

    /// An integer that is not negative.
    int next_count(const char* what);

    /// An index into a list of `size` entries.
    int next_index(const char* what, int size);

    /// A finite number in the range of single precision.
    double next_real(const char* what);

    /// Line of the last word that was read, from 1.
    int line() const { return line_; }

    /// Throws InputError with "FILE:LINE: message".
    [[noreturn]] void fail(const std::string& message) const;

private:
    const TextFile& file_;
    std::string_view rest_;
    int line_ = 1;
    int next_line_ = 1;
};

/// A word as messages show it: quoted, shortened, control characters masked.
std::string shown(std::string_view word);

/// The shortest digits that read back as the same number.
std::string shortest(double value);

} // namespace korvel::host
