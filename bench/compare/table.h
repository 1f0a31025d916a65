#pragma once

#include <optional>
#include <string>

namespace korvel::bench {

/// One job on one input, compared with one peer or alone.
struct Row {
    std::string job;
    std::string input;
    int size = 0;
    double seconds = 0;
    bool finished = true;                ///< false when the job was stopped after `seconds`
    std::optional<double> growth;        ///< exponent of the time from the previous size
    std::optional<double> doubling_goal; ///< highest growth factor for a doubled size

    std::string peer; ///< empty for a job that no peer does
    double peer_seconds = 0;
    std::optional<double> goal; ///< highest ratio of `seconds` to `peer_seconds`

    std::string found_name; ///< unit of the findings, which show whether both did the same work
    double found = 0;
    double peer_found = 0;
};

/// Prints rows as a Markdown table, each as soon as it is added, and counts the goals that are met.
class Table {
public:
    Table();

    void add(const Row& row);
    /// A row of a measure other than time, with its highest acceptable value.
    void add_measure(const std::string& job, const std::string& input, int size, double value,
                     const std::string& unit, double goal);
    void print_summary() const;

private:
    std::string verdict(bool is_met);

    int goals_ = 0;
    int met_ = 0;
};

} // namespace korvel::bench
