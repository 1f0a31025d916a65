#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <string>
#include <vector>

#include "korvel/platform/framework.h"

namespace korvel {

/// Reads numbers from a text stream as `fscanf` does, with the same values, and leaves the stream
/// where `fscanf` leaves it: behind the number, or behind the longest start of one. It holds the
/// stream's lock for as long as it lives.
///
/// With the GNU C library plain numbers are converted where they stand in the stream's buffer, many
/// times faster than by `fscanf`, and those that reach beyond it are taken character by character.
/// What is not plain, and everything with other libraries, whose answers to odd text differ, goes
/// to `fscanf` itself.
class TextReader {
public:
    explicit TextReader(FILE* stream);
    ~TextReader();
    TextReader(const TextReader&) = delete;
    TextReader& operator=(const TextReader&) = delete;
    TextReader(TextReader&&) = delete;
    TextReader& operator=(TextReader&&) = delete;

    /// An integer as "%d" takes it; false, with the target untouched, where none stands.
    bool read(int& target);

    /// A real as "%f" takes it: through single precision, on purpose.
    bool read(float& target);
    bool read(double& target) {
        float value = 0;
        if (!read(value)) {
            return false;
        }
        target = value;
        return true;
    }

    /// Appends to `numbers` as many as are declared, or as many as stand in the stream; false for
    /// less. A count is believed only as far as the stream can bear it.
    bool read(long long declared, std::vector<int>& numbers);
    bool read(long long declared, std::vector<float>& numbers);

private:
    /// A decimal number read so far.
    struct Digits {
        std::uint64_t value = 0; ///< of the digits, without sign and point; right up to `count` 19
        int count = 0;
        int behind_point = 0;
        bool is_plain = true; ///< digits and a point, nothing else
    };

    template <class Number>
    bool read_all(long long declared, std::vector<Number>& numbers);

    // A plain number that stands ready in the stream's buffer. False, with the stream where it was,
    // for anything else.
    bool take_ready(int& target);
    bool take_ready(float& target);
    const char* next_ready() const;

    bool take(int& target);
    bool take(float& target);
    int next();
    void give_back(int character);
    int next_after_space();
    Digits take_real(int character);
    static bool convert_plain(const Digits& digits, bool is_negative, float& target);
    bool convert(const Digits& digits, bool is_negative, float& target) const;
    bool scan_word(bool is_negative, float& target);

    FILE* stream_;
    bool takes_characters_ = false; ///< else `fscanf` does all
    bool takes_reals_ = false;      ///< the decimal point is a full stop
    std::string text_;              ///< of the number in hand
};

/// How much of a record stood in the stream.
enum class Progress { nothing, part, all };

/// Sizes `list` to the declared count and reads that many records with `read_one(record)`. The list
/// grows as records come in, so a count is believed only as far as the stream can bear it. False
/// where the stream ends early; the list then holds what was read.
template <class List, class ReadOne>
bool read_records(int declared, List& list, ReadOne read_one) {
    constexpr int first_size = 64;
    list.SetSize(std::min(list.GetSize(), declared));
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
