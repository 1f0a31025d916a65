#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <thread>

#include <QObject>
#include <QString>

#include "kit/kit.h"

namespace korvel::workbench {

/// A thread that does the long work of the program, one piece at a time in the order in which it
/// comes, with what follows changes (`follow`) last. Signals come in the thread of this object.
class Worker : public QObject {
    Q_OBJECT

public:
    /// Takes the result over, in the thread of this object; may be empty.
    using Deliver = std::function<void()>;

    /// Works in the worker's thread. What it uses must be its own or never change. An exception
    /// ends it: of a kit::Error or any std::exception the message is reported by `failed`, unless
    /// it was cancelled.
    using Work = std::function<Deliver(const kit::Context&)>;

    explicit Worker(QObject* parent = nullptr);
    ~Worker() override; // stops what runs, drops what waits

    /// An operation of the user's, with progress.
    void run(const QString& title, Work work);

    /// Quick work that has to come in order and that nobody waits for: it is neither shown nor
    /// cancelled by `cancel`.
    void post(std::function<void()> work);

    /// What follows from a change, such as the regions of curves. Takes the place of what waits
    /// under the same key; what runs under it is stopped and not delivered.
    void follow(const std::string& key, Work work);

    /// Stops the operation that runs and drops those that wait.
    void cancel();

    /// Whether an operation runs or waits, or its result is not taken over yet.
    bool is_busy() const;

    /// Returns when everything is done and delivered. For tests, and before the document is
    /// replaced.
    void wait();

signals:
    void begun(const QString& title);                       ///< an operation
    void progressed(const QString& stage, double fraction); ///< of an operation
    void ended();                                           ///< an operation, in whatever way
    void failed(const QString& title, const QString& message);
    void warned(const QString& title, const QString& message);

private:
    enum class Kind { operation, quick, following };
    struct Ticket {
        Kind kind = Kind::quick;
        std::string key = {};
        QString title = {};
        std::stop_source stop = {};
    };
    struct Job {
        Ticket ticket = {};
        Work work = {};
    };

    void add(Job job);
    void loop(const std::stop_token& end);
    void work_on(const Job& job);
    void deliver(const Ticket& job, const Deliver& deliver);
    void report(const Ticket& job, const char* message);
    kit::Context context_of(const Ticket& job);

    mutable std::mutex mutex_;
    std::condition_variable_any changed_;
    std::deque<Job> jobs_;
    std::optional<Ticket> running_;
    int operations_ = 0;  // not yet delivered
    int undelivered_ = 0; // jobs of any kind
    std::jthread thread_; // last, so that it ends first
};

} // namespace korvel::workbench
