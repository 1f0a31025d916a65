#include "apps/workbench/document/worker.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <utility>

#include <QCoreApplication>
#include <QEventLoop>
#include <QThread>

namespace korvel::workbench {

Worker::Worker(QObject* parent)
    : QObject(parent), thread_([this](const std::stop_token& end) { loop(end); }) {}

Worker::~Worker() {
    {
        const std::lock_guard lock(mutex_);
        jobs_.clear();
        if (running_) {
            running_->stop.request_stop();
        }
    }
    thread_.request_stop();
    thread_.join();
}

void Worker::run(const QString& title, Work work) {
    add({{.kind = Kind::operation, .title = title}, std::move(work)});
}

void Worker::post(std::function<void()> work) {
    add({{}, [work = std::move(work)](const kit::Context& /*context*/) -> Deliver {
             work();
             return {};
         }});
}

void Worker::follow(const std::string& key, Work work) {
    add({{.kind = Kind::following, .key = key}, std::move(work)});
}

void Worker::add(Job job) {
    {
        const std::lock_guard lock(mutex_);
        if (job.ticket.kind == Kind::following) {
            const auto is_older = [&](const Ticket& other) {
                return other.kind == Kind::following && other.key == job.ticket.key;
            };
            undelivered_ -= static_cast<int>(
                std::erase_if(jobs_, [&](const Job& other) { return is_older(other.ticket); }));
            if (running_ && is_older(*running_)) {
                running_->stop.request_stop();
            }
        }
        operations_ += job.ticket.kind == Kind::operation ? 1 : 0;
        ++undelivered_;
        const auto place = std::ranges::find_if(jobs_, [&](const Job& other) {
            return job.ticket.kind != Kind::following && other.ticket.kind == Kind::following;
        });
        jobs_.insert(place, std::move(job));
    }
    changed_.notify_all();
}

void Worker::cancel() {
    const std::lock_guard lock(mutex_);
    if (running_ && running_->kind == Kind::operation) {
        running_->stop.request_stop();
    }
    const auto dropped = static_cast<int>(
        std::erase_if(jobs_, [](const Job& job) { return job.ticket.kind == Kind::operation; }));
    operations_ -= dropped;
    undelivered_ -= dropped;
}

bool Worker::is_busy() const {
    const std::lock_guard lock(mutex_);
    return operations_ > 0;
}

void Worker::wait() {
    const auto is_idle = [this] {
        const std::lock_guard lock(mutex_);
        return undelivered_ == 0;
    };
    while (!is_idle()) {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        QThread::msleep(1);
    }
}

void Worker::loop(const std::stop_token& end) {
    while (true) {
        Job job;
        {
            std::unique_lock lock(mutex_);
            if (!changed_.wait(lock, end, [this] { return !jobs_.empty(); })) {
                return;
            }
            job = std::move(jobs_.front());
            jobs_.pop_front();
            running_ = job.ticket;
        }
        work_on(job);
        const std::lock_guard lock(mutex_);
        running_.reset();
    }
}

void Worker::work_on(const Job& job) {
    const Ticket& ticket = job.ticket;
    if (ticket.kind == Kind::operation) {
        QMetaObject::invokeMethod(this, [this, title = ticket.title] { emit begun(title); });
    }
    Deliver result;
    try {
        result = job.work(context_of(ticket));
    } catch (const kit::Error& error) {
        if (error.kind() != kit::Error::Kind::cancelled) {
            report(ticket, error.what());
        }
    } catch (const std::bad_alloc&) {
        report(ticket, "there is not enough memory");
    } catch (const std::exception& error) {
        report(ticket, error.what());
    }
    QMetaObject::invokeMethod(
        this, [this, ticket, result = std::move(result)] { deliver(ticket, result); });
}

void Worker::deliver(const Ticket& job, const Deliver& deliver) {
    {
        const std::lock_guard lock(mutex_);
        operations_ -= job.kind == Kind::operation ? 1 : 0;
    }
    if (deliver && !job.stop.stop_requested()) {
        deliver();
    }
    {
        const std::lock_guard lock(mutex_);
        --undelivered_;
    }
    if (job.kind == Kind::operation) {
        emit ended();
    }
}

void Worker::report(const Ticket& job, const char* message) {
    if (!job.stop.stop_requested()) {
        QMetaObject::invokeMethod(this,
                                  [this, title = job.title, text = QString::fromUtf8(message)] {
                                      emit failed(title, text);
                                  });
    }
}

// Progress is reported a few times in a second, however often the work reports it.
kit::Context Worker::context_of(const Ticket& job) {
    using Clock = std::chrono::steady_clock;
    static constexpr auto between_reports = std::chrono::milliseconds(50);
    kit::Context context;
    context.stop = job.stop.get_token();
    context.on_warning = [this, title = job.title](const std::string& message) {
        QMetaObject::invokeMethod(this, [this, title, text = QString::fromStdString(message)] {
            emit warned(title, text);
        });
    };
    if (job.kind == Kind::operation) {
        context.on_progress = [this,
                               last = Clock::time_point()](const kit::Progress& progress) mutable {
            if (const auto now = Clock::now(); now - last >= between_reports) {
                last = now;
                QMetaObject::invokeMethod(
                    this,
                    [this, fraction = progress.fraction,
                     stage = QString::fromUtf8(progress.stage.data(),
                                               static_cast<qsizetype>(progress.stage.size()))] {
                        emit progressed(stage, fraction);
                    });
            }
        };
    }
    return context;
}

} // namespace korvel::workbench
