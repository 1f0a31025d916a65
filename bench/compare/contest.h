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
    double found = 0; ///< what tells that two programs did the same: a number, an area, a length
    bool finished = true; ///< false when the job gave up at `run_limit`
};

using Job = std::function<Run()>;

/// Runs that would take longer are given up by jobs that can, and no larger input of theirs is
/// tried.
constexpr double run_limit = 10; // seconds

/// Processor time, which other programs on the machine disturb less than they do the wall clock.
/// Nothing that is compared here has threads.
template <class Work>
double seconds_of(Work work) {
    const std::clock_t start = std::clock();
    work();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

/// Another program's way to do the same job.
struct Peer {
    std::string name;
    Job job;
    std::optional<double> goal = {}; ///< the most that our time may be of the peer's
};

/// The most by which the time may grow when the input doubles to a size.
struct DoublingGoal {
    int size = 0;
    double factor = 0;
};

/// One job on inputs of one kind and of growing size; each size gives a row for each peer.
class Series {
public:
    /// `found` names what the runs find. The goal of a series that ends before its size is missed.
    Series(Table& table, std::string job, std::string input, std::string found,
           std::optional<DoublingGoal> goal = {});

    /// Lets all run in turn, several times over, and adds what the medians tell to the table. A
    /// peer that was slow on a smaller input only takes part where a goal asks for it.
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
