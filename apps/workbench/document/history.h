#pragma once

#include <cstddef>
#include <deque>
#include <memory>

#include <QObject>
#include <QString>

namespace korvel::workbench {

/// A change of the document that can be taken back. It is made before it becomes a step.
class Step {
public:
    explicit Step(QString text) : text_(std::move(text)) {}
    virtual ~Step() = default;
    Step(const Step&) = delete;
    Step& operator=(const Step&) = delete;

    virtual void undo() = 0;
    virtual void redo() = 0;

    /// What the step keeps in memory.
    virtual std::size_t bytes() const = 0;

    /// The step leaves the history, as the oldest one, and can no longer be undone.
    virtual void forget() {}

    /// What was done, for the Edit menu: "Move point".
    const QString& text() const { return text_; }

private:
    QString text_;
};

/// The steps that can be undone, and those undone that can be redone.
class History : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// Adds a change that was made. Steps that were undone are dropped, and the oldest ones beyond
    /// `kept_steps` while all together take more memory than the limit.
    void add(std::unique_ptr<Step> step);

    void undo();
    void redo();

    bool can_undo() const { return done_ > 0; }
    bool can_redo() const { return done_ < steps_.size(); }
    QString undo_text() const; ///< empty if there is nothing to undo
    QString redo_text() const;
    std::size_t undo_count() const { return done_; }

    /// The bytes that all steps keep.
    std::size_t bytes() const;
    std::size_t memory_limit() const { return memory_limit_; }
    void set_memory_limit(std::size_t bytes);

    /// Whether the document is as it was at the last call of `set_saved`.
    bool is_saved() const { return saved_.is_known && saved_.at == done_; }
    void set_saved();

    /// For saving that takes a while, during which there may be further changes: what is saved now
    /// is marked, and is the state of `is_saved` from `set_marked_saved` on.
    void mark() { marked_ = {done_}; }
    void set_marked_saved();

    /// Without steps the document is saved, or not until it is.
    void clear(bool is_saved = true);

    /// So many steps are kept whatever memory they take.
    static constexpr std::size_t kept_steps = 100;

signals:
    void changed();

private:
    struct State {
        std::size_t at = 0;   // after so many steps
        bool is_known = true; // the steps lead to it
    };

    void drop_oldest();

    std::deque<std::unique_ptr<Step>> steps_;
    std::size_t done_ = 0; // steps that are not undone
    State saved_;
    State marked_;
    std::size_t memory_limit_ = std::size_t{1} << 30U;
};

} // namespace korvel::workbench
