#pragma once

#include <algorithm>
#include <cstdio>

#include "korvel/platform/framework.h"

namespace korvel {

/// Reads an integer as `fscanf` takes "%d"; false, with the target untouched, where none stands.
inline bool read_int(FILE* stream, int& target) {
    return std::fscanf(stream, "%d", &target) == 1;
}

/// Reads a real as `fscanf` takes "%f": through single precision, on purpose.
inline bool read_real(FILE* stream, double& target) {
    float value = 0;
    if (std::fscanf(stream, "%f", &value) != 1) {
        return false;
    }
    target = value;
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
inline Progress read_counted_ints(FILE* stream, CArray<int>& list) {
    int count = 0;
    if (!read_int(stream, count)) {
        return Progress::nothing;
    }
    const bool complete = read_records(std::max(count, 0), list, [&](int& value) {
        return read_int(stream, value) ? Progress::all : Progress::nothing;
    });
    return complete ? Progress::all : Progress::part;
}

} // namespace korvel
