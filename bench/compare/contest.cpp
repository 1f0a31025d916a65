#include "bench/compare/contest.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace korvel::bench {
namespace {

constexpr std::size_t most_rounds = 5;
constexpr double row_limit = 6;  // seconds after which no further round starts
constexpr double peer_limit = 5; // seconds of a run after which a peer counts as slow

using Runs = std::vector<Run>;

std::vector<Runs> run_in_turn(const std::vector<const Job*>& jobs);
double median_seconds(Runs runs);

} // namespace

Series::Series(Table& table, std::string job, std::string input, std::string found,
               std::optional<DoublingGoal> goal)
    : table_(table), job_(std::move(job)), input_(std::move(input)), found_(std::move(found)),
      goal_(goal) {}

void Series::race(int size, const Job& korvel, const std::vector<Peer>& peers) {
    const std::vector<Peer> rivals = worth_trying(peers);
    std::vector<const Job*> jobs = {&korvel};
    for (const Peer& peer : rivals) {
        jobs.push_back(&peer.job);
    }
    const std::vector<Runs> runs = run_in_turn(jobs);

    Row row;
    row.job = job_;
    row.input = input_;
    row.size = size;
    row.seconds = median_seconds(runs[0]);
    row.finished = runs[0].back().finished;
    row.found = runs[0].back().found;
    row.found_name = found_;
    row.growth = row.finished ? growth_to(size, row.seconds) : std::nullopt;
    goes_on_ = row.finished && row.seconds < run_limit;
    if (goal_ && (size == goal_->size || !goes_on_)) {
        row.doubling_goal = goal_->factor;
    }
    if (rivals.empty()) {
        table_.add(row);
    }
    for (std::size_t k = 0; k < rivals.size(); ++k) {
        row.peer = rivals[k].name;
        row.peer_seconds = median_seconds(runs[k + 1]);
        row.peer_found = runs[k + 1].back().found;
        row.goal = rivals[k].goal;
        table_.add(row);
        if (row.peer_seconds > peer_limit) {
            slow_peers_.insert(row.peer);
        }
    }
}

std::vector<Peer> Series::worth_trying(const std::vector<Peer>& peers) const {
    std::vector<Peer> some;
    std::copy_if(peers.begin(), peers.end(), std::back_inserter(some),
                 [&](const Peer& peer) { return peer.goal || slow_peers_.count(peer.name) == 0; });
    return some;
}

/// The exponent by which the time grew from the previous size.
std::optional<double> Series::growth_to(int size, double seconds) {
    std::optional<double> growth;
    if (last_size_ > 0 && size > last_size_) {
        growth =
            std::log(seconds / last_seconds_) / std::log(static_cast<double>(size) / last_size_);
    }
    last_size_ = size;
    last_seconds_ = seconds;
    return growth;
}

namespace {

/// Interleaved, so that a temporary slowdown of the machine affects all jobs alike.
std::vector<Runs> run_in_turn(const std::vector<const Job*>& jobs) {
    std::vector<Runs> runs(jobs.size());
    double spent = 0;
    for (std::size_t round = 0; round < most_rounds && spent < row_limit; ++round) {
        for (std::size_t k = 0; k < jobs.size(); ++k) {
            spent += runs[k].emplace_back((*jobs[k])()).seconds;
        }
    }
    return runs;
}

double median_seconds(Runs runs) {
    const auto middle = runs.begin() + static_cast<std::ptrdiff_t>(runs.size() / 2);
    std::nth_element(runs.begin(), middle, runs.end(),
                     [](const Run& a, const Run& b) { return a.seconds < b.seconds; });
    return middle->seconds;
}

} // namespace
} // namespace korvel::bench
