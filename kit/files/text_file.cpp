#include "kit/files/text_file.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>
#include <system_error>

#include "kit/base/error.h"
#include "kit/base/system_files.h"
#include "kit/files/body_names.h"
#include "kit/files/placement_line.h"

namespace korvel::kit {
namespace {

[[noreturn]] void fail_to_read(const std::string& name, int error) {
    throw input_error(name + ": cannot be read: " + std::generic_category().message(error),
                      {.file = name});
}

// For each byte whether it ends a word.
constexpr std::array<bool, 256> white_space_breaks = [] {
    std::array<bool, 256> breaks = {};
    for (const char c : white_space) {
        breaks[static_cast<unsigned char>(c)] = true;
    }
    return breaks;
}();
constexpr std::array<bool, 256> comment_breaks = [] {
    std::array<bool, 256> breaks = white_space_breaks;
    breaks['#'] = true;
    return breaks;
}();

// Numbers are written the way fscanf takes them, which allows a leading plus.
std::string_view without_plus(std::string_view word) {
    const bool has_plus = word.size() > 1 && word[0] == '+' && word[1] != '-';
    return has_plus ? word.substr(1) : word;
}

template <class Number>
std::errc parse(std::string_view word, Number& value) {
    const std::string_view digits = without_plus(word);
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value);
    return stop == end ? error : std::errc::invalid_argument;
}

// Appends all that a stream contains from here on.
void read_all(FILE* stream, TextFile& out) {
    std::array<char, 1 << 16> block; // NOLINT(cppcoreguidelines-pro-type-member-init)
    while (const std::size_t got = std::fread(block.data(), 1, block.size(), stream)) {
        out.text.append(block.data(), got);
    }
    if (std::ferror(stream) != 0) {
        fail_to_read(out.name, errno);
    }
}

} // namespace

TextFile::TextFile(const std::filesystem::path& file) : name(text_of(file)) {
    const std::unique_ptr<FILE, int (*)(FILE*)> stream(open_file(file, "rb"), std::fclose);
    if (!stream) {
        fail_to_read(name, errno);
    }
    std::error_code unknown; // of what is no regular file
    if (const auto size = std::filesystem::file_size(file, unknown); !unknown) {
        text.reserve(size);
    }
    read_all(stream.get(), *this);
}

TextFile TextFile::standard_input() {
    TextFile file("standard input", {});
    read_all(stdin, file);
    return file;
}

WordReader::WordReader(const TextFile& file, std::vector<Finding>* problems)
    : file_(file), rest_(file.text), breaks_word_(&white_space_breaks), problems_(problems) {}

void WordReader::skip_comments() {
    breaks_word_ = &comment_breaks;
}

void WordReader::end_before_placement() {
    rest_ = without_placement(rest_);
}

void WordReader::end_before_body_names() {
    rest_ = without_body_names(without_placement(rest_));
}

bool WordReader::at_end() {
    const char* next = rest_.data();
    const char* const end = next + rest_.size();
    while (next != end && breaks_word(*next)) {
        if (*next == '#') {
            // The end of the line is counted as white space.
            next = std::find(next, end, '\n');
        } else {
            next_line_ += *next == '\n' ? 1 : 0;
            ++next;
        }
    }
    rest_ = {next, static_cast<std::size_t>(end - next)};
    return next == end;
}

std::string_view WordReader::next() {
    if (at_end()) {
        return word_ = {};
    }
    line_ = next_line_;
    ++count_;
    const auto* const end =
        std::find_if(rest_.begin(), rest_.end(), [&](char c) { return breaks_word(c); });
    const std::string_view word(rest_.begin(), end);
    rest_.remove_prefix(word.size());
    return word_ = word;
}

int WordReader::next_integer(const char* what) {
    int value = 0;
    const std::string mismatch = parse_as_integer(what, value);
    if (!mismatch.empty()) {
        report(mismatch);
    }
    return value;
}

// After a wrong count the meaning of the words that follow is unknown.
int WordReader::next_count(const char* what) {
    int count = 0;
    const std::string mismatch = parse_as_integer(what, count);
    if (!mismatch.empty()) {
        fail(mismatch);
    }
    if (count < 0) {
        fail(std::string(what) + " is " + std::to_string(count) + ", it cannot be negative");
    }
    return count;
}

int WordReader::next_index(const char* what, int size) {
    int index = 0;
    const std::string mismatch = parse_as_integer(what, index);
    if (!mismatch.empty()) {
        report(mismatch);
        return -1;
    }
    if (index < 0 || index >= size) {
        if (allows_any_index_) {
            return -1;
        }
        const std::string range =
            size == 0 ? "there are none" : "they go from 0 to " + std::to_string(size - 1);
        report(std::string(what) + " is " + std::to_string(index) + ", out of range: " + range);
        return -1;
    }
    return index;
}

double WordReader::next_real(const char* what) {
    double value = 0;
    const std::string mismatch = parse_as_real(what, value, std::numeric_limits<float>::max());
    if (!mismatch.empty()) {
        report(mismatch);
        return 0;
    }
    return value;
}

double WordReader::next_coordinate(const char* what, bool& is_integer) {
    double value = 0;
    const std::string mismatch = parse_as_real(what, value, std::numeric_limits<double>::max());
    if (!mismatch.empty()) {
        report(mismatch);
        return 0;
    }
    int integer = 0;
    is_integer = is_integer && parse(word_, integer) == std::errc();
    return value;
}

void WordReader::fail_short(int done, int all, const std::string& things) const {
    fail("the file ends after " + std::to_string(done) + " of " + std::to_string(all) + " " +
         things);
}

void WordReader::need_end(const std::string& last) {
    if (!at_end()) {
        fail(quoted(next()) + " follows " + last);
    }
}

std::string_view WordReader::word_for(const char* what) {
    const std::string_view word = next();
    if (word.empty()) {
        fail(std::string("the file ends where ") + what + " is expected");
    }
    return word;
}

// What is wrong with the next word, or nothing.
std::string WordReader::parse_as_integer(const char* what, int& value) {
    at_end(); // white space before the word fits everything
    const std::size_t start = position();
    const std::string_view word = word_for(what);
    const std::errc error = parse(word, value);
    if (error == std::errc()) {
        return {};
    }
    value = 0;
    first_mismatch_ = std::min(first_mismatch_, start);
    if (error == std::errc::result_out_of_range) {
        return quoted(word) + " is too large for " + what + ", which holds 32 bits";
    }
    return quoted(word) + " is not an integer: expected " + what;
}

std::string WordReader::parse_as_real(const char* what, double& value, double most) {
    at_end();
    const std::size_t start = position();
    const std::string_view word = word_for(what);
    const std::errc error = parse(word, value);
    if (error == std::errc() && std::abs(value) <= most) {
        return {};
    }
    first_mismatch_ = std::min(first_mismatch_, start);
    if (error == std::errc::invalid_argument) {
        return quoted(word) + " is not a number: expected " + what;
    }
    if (error == std::errc() && !std::isfinite(value)) {
        return quoted(word) + " is not a finite number: expected " + what;
    }
    const bool is_double = most == std::numeric_limits<double>::max();
    return quoted(word) + " does not fit " + what + ", which is held in " +
           (is_double ? "double" : "single") + " precision";
}

void WordReader::report(const std::string& message) {
    if (problems_ == nullptr) {
        fail(message);
    }
    problems_->push_back({line_, message + remark_});
}

void WordReader::fail(const std::string& message) const {
    if (problems_ != nullptr) {
        problems_->push_back({line_, message + remark_});
    }
    throw input_error(file_.name + ":" + std::to_string(line_) + ": " + message + remark_,
                      {.file = file_.name, .line = line_, .value = std::string(word_)});
}

bool parse_finite(std::string_view word, double& value) {
    return parse(word, value) == std::errc() && std::isfinite(value);
}

std::string quoted(std::string_view word) {
    constexpr std::size_t longest = 40;
    std::string text = "'";
    for (const char c : word.substr(0, longest)) {
        const auto byte = static_cast<unsigned char>(c);
        text += byte < 0x20 || byte == 0x7f ? '?' : c;
    }
    return text + (word.size() > longest ? "...'" : "'");
}

std::unique_ptr<FILE, int (*)(FILE*)> stream_of(const TextFile& file) {
    std::unique_ptr<FILE, int (*)(FILE*)> scratch(create_temporary_file(), std::fclose);
    const std::size_t size = file.text.size();
    if (!scratch || std::fwrite(file.text.data(), 1, size, scratch.get()) != size ||
        std::fseek(scratch.get(), 0, SEEK_SET) != 0) {
        throw output_error("cannot write a temporary file: " +
                           std::generic_category().message(errno));
    }
    return scratch;
}

std::string shortest_digits(double value) {
    std::array<char, 32> digits; // NOLINT(cppcoreguidelines-pro-type-member-init)
    const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), value);
    return {digits.data(), end};
}

std::string plain_digits(double value) {
    constexpr double longest = 1e15;
    std::array<char, 512> digits; // NOLINT(cppcoreguidelines-pro-type-member-init)
    if (!(std::abs(value) < longest)) {
        return shortest_digits(value);
    }
    const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(),
                                            value + 0.0, std::chars_format::fixed);
    return {digits.data(), end};
}

} // namespace korvel::kit
