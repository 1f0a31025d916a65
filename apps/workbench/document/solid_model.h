#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <set>

#include <QObject>
#include <QString>

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

    /// For picks, and for changes that are tried while the mouse drags. What was tried is undone
    /// before anything else of this class is called, except for `finish`.
    kit::SolidsEditor& editor();

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

    /// The same for a change that was just made with `editor()` and is kept.
    void finish(const QString& text, SolidChange change);

    /// Makes other solids from the current ones in the worker, as an operation and a step. `make`
    /// gets a copy of its own.
    using Make = std::function<kit::Solids(kit::Solids, const kit::Context&)>;
    void start(const QString& text, Make make);

    /// For the worker's thread: what puts solids in the place of the current ones, as a step.
    Worker::Deliver replacing(const QString& text, kit::Solids solids);

    /// Turns the view of this thread's copy; no step.
    void set_view(const kit::ViewAngles& angles);

    // The worker.

    /// Calls `ask` with the worker's copy, in its thread, after all changes so far.
    using Ask = std::function<Worker::Deliver(kit::SolidsEditor&, const kit::Context&)>;
    void follow(const std::string& key, Ask ask);

signals:
    void solids_changed(); ///< other bodies, or coordinates
    void view_changed();   ///< turned
    void hidden_changed();
    void selection_changed(); ///< of bodies
    void refused(const QString& text, const QString& reason);

private:
    // The worker's copy lives as long as anything refers to it.
    struct Pair {
        std::unique_ptr<kit::SolidsEditor> shown;
        std::shared_ptr<kit::SolidsEditor> worked;
    };
    class ChangeStep;
    class WholeStep;

    static Pair pair_of(kit::Solids solids); // called in the worker: copies

    void replace(const QString& text, Pair pair);
    void set_replaced(const kit::ViewAngles& angles);
    void on_both(const SolidChange& change);
    void on_worked(const SolidChange& change);

    History& history_;
    Worker& worker_;
    Pair pair_;
    std::set<int> hidden_;
    std::set<int> selected_;
};

} // namespace korvel::workbench
