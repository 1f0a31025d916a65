#include <atomic>
#include <stdexcept>
#include <stop_token>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "kit/base/error.h"
#include "kit/base/parallel.h"

namespace korvel::test {
namespace {

TEST(Parallel, CallsEachOnce) {
    for (const int threads : {0, 1, 2, 7}) {
        for (const int count : {0, 1, 3, 1000}) {
            std::vector<int> calls(static_cast<std::size_t>(count), 0);
            kit::for_each_in_parallel(count, threads, [&](int i) { ++calls[i]; });
            EXPECT_EQ(calls, std::vector<int>(static_cast<std::size_t>(count), 1)) << threads;
        }
    }
}

TEST(Parallel, RethrowsTheFirstFailureAndStops) {
    for (const int threads : {1, 3}) {
        std::atomic<int> calls = 0;
        const auto fail = [&](int i) {
            ++calls;
            if (i >= 5) {
                throw std::runtime_error(std::to_string(i));
            }
        };
        try {
            kit::for_each_in_parallel(100000, threads, fail);
            ADD_FAILURE() << "no exception";
        } catch (const std::runtime_error& error) {
            EXPECT_STREQ(error.what(), "5");
        }
        EXPECT_LT(calls, 100);
    }
    std::stop_source stop;
    const auto stop_it = [&](int i) {
        if (i == 3) {
            stop.request_stop();
        }
    };
    EXPECT_THROW(
        kit::for_each_in_parallel(100000, 2, stop_it, "trying", {.stop = stop.get_token()}),
        kit::Error);
}

TEST(Parallel, StopsAlsoWhenTheOthersHaveTakenTheLastIndex) {
    std::stop_source stop;
    std::atomic<int> done = 0;
    kit::Context context{.stop = stop.get_token()};
    context.on_progress = [&](const kit::Progress& /*progress*/) {
        while (done < 2) {
            std::this_thread::yield();
        }
        stop.request_stop();
    };
    EXPECT_THROW(kit::for_each_in_parallel(
                     2, 2, [&](int /*i*/) { ++done; }, "trying", context),
                 kit::Error);
}

} // namespace
} // namespace korvel::test
