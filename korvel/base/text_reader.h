#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <string>
#include <vector>

#include "korvel/platform/framework.h"

namespace korvel {

/// Reads numbers from a text stream as `fscanf` does, with the same values. It locks the stream for
/// as long as it exists, and its destructor leaves the stream at the position where `fscanf` leaves
/// it: behind the last number, or behind the longest start of one.
///
/// With the GNU C library, and with the one of mingw-w64, numbers are converted character by
/// character as GNU's `fscanf` does, many times faster. What starts like neither an integer nor a
/// decimal real, and everything with other libraries, is left to `fscanf`.
///
/// Its destructor reports to `PlainReading` when a number was not a plain word of its own.
class TextReader {
public:
    explicit TextReader(FILE* stream);
    ~TextReader();
    TextReader(const TextReader&) = delete;
    TextReader& operator=(const TextReader&) = delete;
    TextReader(TextReader&&) = delete;
    TextReader& operator=(TextReader&&) = delete;

    /// An integer as "%d" converts it; false, with the target unchanged, where there is none.
    bool read(int& target);

    /// A real as "%f" converts it: through single precision, on purpose.
    bool read(float& target);
    bool read(double& target) {
        float value = 0;
        if (!read(value)) {
            return false;
        }
        target = value;
        return true;
    }

    /// How many of the declared records a reader makes before it reads them: all, unless that is
    /// more than 65,536 and more than the rest of the stream can hold. Then, and in a stream that
    /// cannot be positioned, it is 65,536. A negative count gives 0. `least_bytes` is the length of
    /// the shortest text of one record, white space included: 2 for a number.
    int believable_records(long long declared, int least_bytes);

    /// Appends to `numbers` as many as are declared, or as many as the stream contains; false for
    /// fewer. Memory grows with what is read. A check point is called now and then, with `stage`.
    bool read(long long declared, std::vector<int>& numbers, const char* stage);
    bool read(long long declared, std::vector<float>& numbers, const char* stage);

private:
    /// A decimal number read so far.
    struct Digits {
        std::uint64_t value = 0; ///< of the digits, without sign and point; right up to `count` 19
        int count = 0;
        int behind_point = 0;
        bool has_point = false;
        bool is_plain = true; ///< digits and a point, nothing else
    };

    long long bytes_left();
    template <class Number>
    bool read_all(long long declared, std::vector<Number>& numbers, const char* stage);

    template <class Number>
    bool scan(int character, const char* format, Number& target);
    bool scan_word(int character, bool is_negative, float& target);
    int take_long(int character, bool is_negative, int first_digits);
    Digits take_plain(int& character);
    void take_rest(int character, Digits& digits);
    static std::string text_of(const Digits& digits);
    static bool convert_plain(const Digits& digits, bool is_negative, float& target);
    bool convert(const Digits& digits, bool is_negative, float& target) const;
    int next();
    int next_after_space();
    void return_lookahead();
    void end_plain(int character);

    FILE* stream_;
    bool takes_characters_ = false; ///< else all is left to `fscanf`
    bool takes_reals_ = false;      ///< the decimal point is a full stop
    bool is_plain_ = true;          ///< each number so far was a plain word
    int lookahead_ = EOF;           ///< read from the stream, but not part of a number yet
    std::string text_;              ///< of a number that is not plain
};

/// Sizes `list` to the declared count and calls `read_one(record)` for each record. What is not
/// read keeps its value: that of the record which the list contained before, or zero. `read_one`
/// returns whether it has read anything; a count beyond `TextReader::believable_records` is reached
/// only as long as it has.
template <class List, class ReadOne>
void read_declared_records(TextReader& reader, int declared, int least_bytes, List& list,
                           ReadOne read_one) {
    const int believable = reader.believable_records(declared, least_bytes);
    list.SetSize(believable);
    for (int i = 0; i < believable; ++i) {
        read_one(list[i]);
    }
    for (int i = believable; i < declared; ++i) {
        if (i == list.GetSize()) {
            list.SetSize(static_cast<int>(std::min<long long>(declared, 2LL * i)));
        }
        if (!read_one(list[i])) {
            list.SetSize(i);
            return;
        }
    }
}

/// Reads a count, sizes `list` to it and reads that many integers, as far as the stream contains
/// them. False, with the list as it was, where there is no count.
inline bool read_declared_ints(TextReader& reader, CArray<int>& list) {
    constexpr int least_bytes = 2;
    int count = 0;
    if (!reader.read(count)) {
        return false;
    }
    read_declared_records(reader, count, least_bytes, list,
                          [&](int& value) { return reader.read(value); });
    return true;
}

/// How much of a record stood in the stream.
enum class Progress { nothing, part, all };

/// Sizes `list` to the declared count and reads that many records with `read_one(record)`. The list
/// grows as records come in, so a count is believed only as far as the stream can bear it. False
/// where the stream ends early; the list then holds what was read.
template <class List, class ReadOne>
bool read_records(int declared, List& list, ReadOne read_one) {
    constexpr int first_size = 64;
    list.SetSize(std::clamp(declared, 0, size_of(list)));
    for (int i = 0; i < declared; ++i) {
        if (i == list.GetSize()) {
            const long long doubled = std::max(first_size, 2 * std::min(i, 1 << 29));
            list.SetSize(static_cast<int>(std::min<long long>(declared, doubled)));
        }
        const Progress progress = read_one(list[i]);
        if (progress != Progress::all) {
            list.SetSize(progress == Progress::part ? i + 1 : i);
            return false;
        }
    }
    return true;
}

/// Reads a count and then that many integers.
inline Progress read_counted_ints(TextReader& reader, CArray<int>& list) {
    int count = 0;
    if (!reader.read(count)) {
        return Progress::nothing;
    }
    const bool complete = read_records(std::max(count, 0), list, [&](int& value) {
        return reader.read(value) ? Progress::all : Progress::nothing;
    });
    return complete ? Progress::all : Progress::part;
}

} // namespace korvel
