#pragma once

namespace korvel::bench {

/// Empties an array and sets storage for so many records aside: by themselves arrays grow in steps
/// that are small beside a million records.
template <class Records>
void expect(Records& records, int count) {
    records.SetSize(0, count);
}

} // namespace korvel::bench
