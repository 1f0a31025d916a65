#pragma once

#include <ctime>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "bench/compare/table.h"

namespace korvel::bench {

/// One run of a job.
struct Run {
    double seconds = 0;
    double found = 0; ///< a count, area or length that shows whether two programs did the same work
    bool finished = true; ///< false when the job gave up at `run_limit`
};

using Job = std::function<Run()>;

/// Jobs that can stop early do so after this time, and no larger input of theirs is tried.
constexpr double run_limit = 10; // seconds

/// Processor time, which other programs on the machine disturb less than wall-clock time. All jobs
/// are single-threaded.
template <class Work>
double seconds_of(Work work) {
    const std::clock_t start = std::clock();
    work();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

/// Another library's form of the same job.
struct Peer {
    std::string name;
    Job job;
    std::optional<double> goal = {}; ///< highest acceptable ratio of korvel's time to the peer's
};

/// The highest acceptable growth factor of the time when the input doubles to a size.
struct DoublingGoal {
    int size = 0;
    double factor = 0;
};

/// One job on inputs of one kind and of growing size, with a row for each size and peer.
class Series {
public:
    /// `found` is the unit of `Run::found`. A series that ends before the size of its goal misses
    /// it.
    Series(Table& table, std::string job, std::string input, std::string found,
           std::optional<DoublingGoal> goal = {});

    /// Runs all in turn, several times, and adds the medians to the table. A peer that was slow on
    /// a smaller input is left out unless it has a goal.
    void race(int size, const Job& korvel, const std::vector<Peer>& peers = {});

    /// Whether a larger input is worth trying.
    bool goes_on() const { return goes_on_; }

private:
    std::vector<Peer> worth_trying(const std::vector<Peer>& peers) const;
    std::optional<double> growth_to(int size, double seconds);

    Table& table_;
    std::string job_;
    std::string input_;
    std::string found_;
    std::optional<DoublingGoal> goal_;
    bool goes_on_ = true;
    std::set<std::string> slow_peers_;
    int last_size_ = 0;
    double last_seconds_ = 0;
};

} // namespace korvel::bench
