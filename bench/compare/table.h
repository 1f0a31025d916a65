#pragma once

#include <optional>
#include <string>

namespace korvel::bench {

/// What one job took on one input, beside one peer or alone.
struct Row {
    std::string job;
    std::string input;
    int size = 0;
    double seconds = 0;
    bool finished = true;                ///< false when `seconds` is where the job gave up
    std::optional<double> growth;        ///< exponent of the time since the size before
    std::optional<double> doubling_goal; ///< the most by which it may grow when the size doubles

    std::string peer; ///< empty for a job that no peer does
    double peer_seconds = 0;
    std::optional<double> goal; ///< the most that `seconds` may be of `peer_seconds`

    std::string found_name; ///< of what both found, to see that they did the same
    double found = 0;
    double peer_found = 0;
};

/// Prints rows as a Markdown table, each as soon as it is known, and counts the goals that are met.
class Table {
public:
    Table();

    void add(const Row& row);
    /// A row of another measure than time, and the most that it may be.
    void add_measure(const std::string& job, const std::string& input, int size, double value,
                     const std::string& unit, double goal);
    void print_summary() const;

private:
    std::string verdict(bool is_met);

    int goals_ = 0;
    int met_ = 0;
};

} // namespace korvel::bench
