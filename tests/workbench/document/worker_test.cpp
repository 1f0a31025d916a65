#include <atomic>
#include <new>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "apps/workbench/document/worker.h"

namespace korvel::test {
namespace {

using workbench::Worker;

// Keeps the worker at work until `open` is called.
class Gate {
public:
    Worker::Work work() {
        return [this](const kit::Context& context) -> Worker::Deliver {
            while (!is_open_ && !context.stop.stop_requested()) {
                std::this_thread::yield();
            }
            context.stop_if_requested("waiting");
            return [this] { is_delivered_ = true; };
        };
    }
    void open() { is_open_ = true; }
    bool is_delivered() const { return is_delivered_; }

private:
    std::atomic<bool> is_open_ = false;
    bool is_delivered_ = false;
};

Worker::Work noting(std::vector<std::string>& list, const std::string& text) {
    return [&list, text](const kit::Context& /*context*/) {
        return [&list, text] { list.push_back(text); };
    };
}

TEST(Worker, WorksInOrderButOnWhatFollowsLastAndOnlyOnTheNewest) {
    Worker worker;
    Gate gate;
    std::vector<std::string> done;
    worker.run("gate", gate.work());
    worker.follow("regions", noting(done, "old regions"));
    worker.follow("section", noting(done, "section"));
    worker.run("first", noting(done, "first"));
    worker.follow("regions", noting(done, "new regions"));
    std::atomic<int> posted = 0;
    worker.post([&] { ++posted; });
    worker.run("second", noting(done, "second"));
    EXPECT_TRUE(worker.is_busy());
    gate.open();
    worker.wait();
    EXPECT_FALSE(worker.is_busy());
    EXPECT_EQ(posted, 1);
    EXPECT_EQ(done, (std::vector<std::string>{"first", "second", "section", "new regions"}));
}

TEST(Worker, StopsWhatANewerFollowerReplaces) {
    Worker worker;
    Gate gate; // is never opened
    std::vector<std::string> done;
    worker.follow("regions", gate.work());
    worker.follow("regions", noting(done, "newer"));
    worker.wait();
    EXPECT_FALSE(gate.is_delivered());
    EXPECT_EQ(done, (std::vector<std::string>{"newer"}));
}

TEST(Worker, CancelsOperationsAndNothingElse) {
    Worker worker;
    Gate gate;
    std::vector<std::string> done;
    std::vector<std::string> failures;
    int ended = 0;
    QObject::connect(&worker, &Worker::failed, [&](const QString& title, const QString& /*text*/) {
        failures.push_back(title.toStdString());
    });
    QObject::connect(&worker, &Worker::ended, [&] { ++ended; });
    worker.run("gate", gate.work());
    worker.run("waiting", noting(done, "waiting"));
    worker.follow("regions", noting(done, "regions"));
    worker.cancel();
    worker.wait();
    EXPECT_FALSE(gate.is_delivered());
    EXPECT_EQ(done, (std::vector<std::string>{"regions"}));
    EXPECT_TRUE(failures.empty()); // who cancels wants no message
    EXPECT_FALSE(worker.is_busy());
    EXPECT_LE(ended, 1);
}

TEST(Worker, ReportsFailuresAndGoesOn) {
    Worker worker;
    std::vector<std::string> messages;
    std::vector<std::string> done;
    QObject::connect(&worker, &Worker::failed, [&](const QString& title, const QString& text) {
        messages.push_back((title + ": " + text).toStdString());
    });
    worker.run("Open", [](const kit::Context& /*context*/) -> Worker::Deliver {
        throw kit::input_error("a.curves:3: 'x' is no number");
    });
    worker.run("Raise",
               [](const kit::Context& /*context*/) -> Worker::Deliver { throw std::bad_alloc(); });
    worker.run("Next", noting(done, "next"));
    worker.wait();
    EXPECT_EQ(messages, (std::vector<std::string>{"Open: a.curves:3: 'x' is no number",
                                                  "Raise: there is not enough memory"}));
    EXPECT_EQ(done, (std::vector<std::string>{"next"}));
}

TEST(Worker, EndsWithWorkAtHand) {
    Gate gate;
    Worker worker;
    worker.run("gate", gate.work());
    worker.run("waiting", gate.work());
}

} // namespace
} // namespace korvel::test
