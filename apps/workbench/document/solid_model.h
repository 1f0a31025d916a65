#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <set>

#include <QObject>
#include <QString>

#include "apps/workbench/document/shared_editor.h"
#include "apps/workbench/document/worker.h"
#include "kit/kit.h"

namespace korvel::workbench {

class History;

/// A change of solids that can be done again on equal solids: it starts with `set_view` where it
/// depends on the view, and makes one change that `SolidsEditor::undo` takes back.
using SolidChange = std::function<void(kit::SolidsEditor&)>;

/// The solids of a document. There are two equal copies of them: this thread's, which is drawn,
/// picked and dragged, and the worker's, which is cut and from which operations start. Each change
/// is made on both, so that nothing large is ever copied in this thread. All changes are steps of
/// the history.
class SolidModel : public QObject {
    Q_OBJECT

public:
    SolidModel(History& history, Worker& worker, QObject* parent = nullptr);
    ~SolidModel() override;

    // Ask.

    bool empty() const { return solids().empty(); }

    /// Up to date also after moves that are not finished (`SolidsEditor::solids`).
    const kit::Solids& solids() const;

    /// The same without bringing anything up to date, for drawing while a change is tried: the
    /// positions in the view are current, also of what moves; orientation and volumes may not be.
    const kit::Solids& drawn() const { return *pair_.drawn; }

    /// What is seen at u, v in the view; hidden bodies are looked through.
    std::optional<kit::Pick> pick(double u, double v);

    /// Whether solids can be changed: no operation is at work.
    bool can_change() const;

    /// Bodies that views leave out. Not stored in files.
    const std::set<int>& hidden() const { return hidden_; }
    void set_hidden(std::set<int> bodies);

    /// The selected bodies.
    const std::set<int>& selected() const { return selected_; }
    void select(std::set<int> bodies);

    // Change. While `can_change` is false these do nothing.

    /// Makes a change on both copies, as a step. Nothing if it throws a kit::Error, which is
    /// reported by `refused`.
    void change(const QString& text, const SolidChange& change);

    /// Sets what belongs to a body, as a step.
    void set_name(int body, const QString& name);
    void set_colour(int body, const kit::BodyColour& colour);

    /// Makes other solids from the current ones in the worker, as an operation and a step. `make`
    /// gets a copy of its own.
    using Make = std::function<kit::Solids(kit::Solids, const kit::Context&)>;
    void start(const QString& text, Make make);

    /// For the worker's thread: what puts solids in the place of the current ones, as a step.
    Worker::Deliver replacing(const QString& text, kit::Solids solids);

    /// Turns the view of this thread's copy; no step.
    void set_view(const kit::ViewAngles& angles);

    // Try a change on this thread's copy, while the mouse drags. Everything else that changes the
    // solids or the view first ends the trial.

    /// Begins with what is to move: `gather` does not change anything. False, with the reason
    /// reported by `refused`, if it throws a kit::Error, and while `can_change` is false. The
    /// result of `gathered` is valid until the trial ends.
    bool begin_trial(SolidChange gather);
    kit::SolidsEditor& gathered() { return *pair_.shown; }

    /// Makes a move in the place of the one tried before, and judges it. Of a large model the
    /// verdict may be missing unless it is waited for.
    std::optional<kit::Verdict> try_move(const SolidChange& move, bool waits_for_verdict = false);

    bool is_trying() const { return trial_.has_value(); }

    /// The move that was tried last becomes a step.
    void keep_trial(const QString& text);

    /// It is undone, and everything as before.
    void end_trial();

    // The worker.

    /// Calls `ask` with the worker's copy, in its thread, after all changes so far.
    using Ask = std::function<Worker::Deliver(kit::SolidsEditor&, const kit::Context&)>;
    void follow(const std::string& key, Ask ask);

    /// The same as work for `Worker::run`.
    Worker::Work asking(Ask ask) const;

    /// The worker's copy itself. Changes that wait for the worker are not made yet.
    std::shared_ptr<SharedEditor> worked() const { return pair_.worked; }

signals:
    void solids_changed();  ///< other bodies, or coordinates
    void solids_replaced(); ///< by others, before `solids_changed`
    void bodies_changed();  ///< names or colours
    void trial_changed();   ///< tried another move, or ended
    void view_changed();    ///< turned
    void hidden_changed();
    void selection_changed(); ///< of bodies
    void refused(const QString& text, const QString& reason);

private:
    // The worker's copy lives as long as anything refers to it.
    struct Pair {
        std::unique_ptr<kit::SolidsEditor> shown;
        std::shared_ptr<SharedEditor> worked;
        std::size_t undo_bytes = 0;         // of the records of `shown`, after the last change
        const kit::Solids* drawn = nullptr; // of `shown`
    };
    struct Trial {
        SolidChange gather;
        SolidChange move; // that was tried last
    };
    class ChangeStep;
    class BodyStep;
    class WholeStep;

    static Pair pair_of(kit::Solids solids); // called in the worker: copies

    void replace(const QString& text, Pair pair);
    void set_replaced(const kit::ViewAngles& angles);
    void finish(const QString& text, SolidChange change);
    void make(const SolidChange& change);
    void on_both(const SolidChange& change);
    void set_body(const QString& text, SolidChange change, SolidChange back);
    void on_worked(const SolidChange& change);

    History& history_;
    Worker& worker_;
    Pair pair_;
    std::set<int> hidden_;
    std::set<int> selected_;
    std::optional<Trial> trial_;
};

} // namespace korvel::workbench
