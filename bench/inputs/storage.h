#pragma once

namespace korvel::bench {

/// Empties an array and reserves storage for so many records.
template <class Records>
void reserve(Records& records, int count) {
    records.SetSize(0, count);
}

} // namespace korvel::bench
