#include "kit/base/parallel.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <limits>
#include <mutex>
#include <thread>
#include <vector>

namespace korvel::kit {
namespace {

// What is left to do, for all threads.
class Queue {
public:
    Queue(int count, const std::function<void(int)>& work) : count_(count), work_(work) {}

    // Takes the next index and works on it. False once there is none.
    bool work_on_next() {
        const int index = next_.fetch_add(1);
        if (index >= count_) {
            return false;
        }
        try {
            work_(index);
        } catch (...) {
            keep_failure(index);
        }
        return true;
    }

    int begun() const { return std::min(next_.load(), count_); }

    void keep_failure(int index) {
        const std::lock_guard lock(mutex_);
        if (!failure_ || index < failed_) {
            failed_ = index;
            failure_ = std::current_exception();
        }
        next_ = count_;
    }

    void rethrow_failure() const {
        if (failure_) {
            std::rethrow_exception(failure_);
        }
    }

private:
    const int count_;
    const std::function<void(int)>& work_;
    std::atomic<int> next_ = 0;
    std::mutex mutex_;
    int failed_ = 0;
    std::exception_ptr failure_;
};

} // namespace

void for_each_in_parallel(int count, int threads, const std::function<void(int)>& work,
                          std::string_view stage, const Context& context) {
    constexpr int behind_all = std::numeric_limits<int>::max();
    const int cores = std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
    const int others = std::min(threads > 0 ? threads : cores, count) - 1;
    Queue queue(count, work);
    {
        std::vector<std::jthread> workers;
        workers.reserve(static_cast<std::size_t>(std::max(others, 0)));
        for (int i = 0; i < others; ++i) {
            workers.emplace_back([&] {
                while (queue.work_on_next()) {
                }
            });
        }
        try {
            context.report(stage, 0, count);
            while (queue.work_on_next()) {
                context.report(stage, queue.begun(), count);
            }
            // Where the others took the last indices, nothing was reported after a request to stop.
            context.stop_if_requested(stage);
        } catch (...) {
            queue.keep_failure(behind_all);
        }
    }
    queue.rethrow_failure();
}

} // namespace korvel::kit
