#pragma once

#include <array>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace korvel::kit {

/// A text file, read whole, so that the text that is checked is the text that is used.
struct TextFile {
    std::string name; ///< as the user spelled it
    std::string text;

    /// Throws an input error when the file cannot be opened or read.
    explicit TextFile(const std::filesystem::path& file);

    /// Text from elsewhere, under the name that messages are to use.
    TextFile(std::string name_in_messages, std::string contents)
        : name(std::move(name_in_messages)), text(std::move(contents)) {}

    /// All of standard input, under that name. Throws as for a file.
    static TextFile standard_input();
};

/// What fscanf skips between two values in the C locale.
constexpr std::string_view white_space = " \t\n\v\f\r";
constexpr bool is_white_space(int c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// A problem or an oddity in a file.
struct Finding {
    int line = 0;
    std::string message;
};

/// Splits a text into words and numbers, and names file and line of what does not fit.
///
/// `what` names the expected value in messages: "the x of a point". Without a list of problems
/// every problem is thrown. With one, those that leave no doubt about what the next word is are
/// added to it instead and the reading goes on; a wrong count and an early end are still thrown.
class WordReader {
public:
    explicit WordReader(const TextFile& file, std::vector<Finding>* problems = nullptr);

    /// From here on `#` begins a comment, which ends with the line and is skipped like white space.
    void skip_comments();

    /// The line of a placement, if the text ends with one, is not read (see placement_line.h). To
    /// be called before the first word.
    void end_before_placement();

    /// Neither are lines of bodies' names before it, if the text ends with any (see body_names.h).
    void end_before_body_names();

    /// From here on an index outside its list is no problem.
    void allow_any_index() { allows_any_index_ = true; }

    /// Skips white space. True when nothing else is left.
    bool at_end();

    /// The next word, empty at the end.
    std::string_view next();

    /// An integer that fits 32 bits; 0 in place of a word that is none.
    int next_integer(const char* what);

    /// An integer that is not negative.
    int next_count(const char* what);

    /// An index into a list of `size` entries; -1 in place of any other.
    int next_index(const char* what, int size);

    /// A finite number in double precision; 0 in place of any other. `is_integer` becomes false
    /// unless it is written as an integer that fits 32 bits.
    double next_coordinate(const char* what, bool& is_integer);

    /// A finite number in the range of single precision; 0 in place of any other.
    double next_real(const char* what);

    /// Throws "the file ends after 2 of 3 points".
    [[noreturn]] void fail_short(int done, int all, const std::string& things) const;

    /// Fails unless the file ends here: "'7' follows the last point".
    void need_end(const std::string& last);

    /// How many words were read.
    std::size_t count() const { return count_; }

    /// Line of the last word that was read, from 1.
    int line() const { return line_; }

    /// Line of the next word, after `at_end`.
    int next_line() const { return next_line_; }

    /// Adds this to the messages of all problems from here on.
    void set_remark(const std::string& remark) { remark_ = remark; }

    /// Throws, or adds a problem in the present line.
    void report(const std::string& message);

    /// Throws an input error with "FILE:LINE: message", after adding the problem to the list.
    [[noreturn]] void fail(const std::string& message) const;

    /// True after a word that was not a number of the expected kind.
    bool has_mismatch() const { return first_mismatch_ != none; }

    /// How many characters were read before the first such word, or at all.
    std::size_t reach() const { return has_mismatch() ? first_mismatch_ : position(); }

private:
    // For each byte whether it ends a word.
    using Breaks = std::array<bool, 256>;

    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    bool breaks_word(char c) const { return (*breaks_word_)[static_cast<unsigned char>(c)]; }
    std::size_t position() const {
        return static_cast<std::size_t>(rest_.data() - file_.text.data());
    }
    std::string_view word_for(const char* what);
    std::string parse_as_integer(const char* what, int& value);
    std::string parse_as_real(const char* what, double& value, double most);

    const TextFile& file_;
    std::string_view rest_;
    const Breaks* breaks_word_;
    std::vector<Finding>* problems_;
    std::string_view word_; // the last one that was read
    std::string remark_;
    bool allows_any_index_ = false;
    std::size_t first_mismatch_ = none;
    std::size_t count_ = 0;
    int line_ = 1;
    int next_line_ = 1;
};

/// Whether a word is a finite number as fscanf takes it, which may have a leading plus.
bool parse_finite(std::string_view word, double& value);

/// A word as messages show it: quoted, shortened, control characters masked.
std::string quoted(std::string_view word);

/// Text as a stream, for library calls that read from one: a temporary file, positioned at its
/// start. Throws an output error when it cannot be written.
std::unique_ptr<FILE, int (*)(FILE*)> stream_of(const TextFile& file);

/// The shortest digits that read back as the same number.
std::string shortest_digits(double value);

/// The same without an exponent, for numbers below 10^15.
std::string plain_digits(double value);

} // namespace korvel::kit
