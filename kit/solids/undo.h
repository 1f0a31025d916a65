#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <vector>

#include "kit/solids/model_difference.h"
#include "kit/solids/solids_editor.h"
#include "kit/solids/undo_record.h"

namespace korvel::kit {

/// The states of a model before the steps that can be undone and behind those that can be done
/// again, as differences to the state next to them on the way from the present one.
class Undo {
public:
    using Selection = SolidsEditor::Selection;

    /// What the editor keeps beside the model.
    struct Side {
        Selection selected;
        bool is_current = true; // orientation, volumes and view are up to date
    };

    explicit Undo(const TMOD3D& model) : marks_(model) {}

    int undo_count() const { return static_cast<int>(before_.size()); }
    int redo_count() const { return static_cast<int>(behind_.size()); }

    /// Takes a record before a move of what is gathered.
    void keep_move(const Selection& selected, const TMOD3D& model);

    /// Takes a record of an insertion that has been made.
    void keep_insertion(const Selection& selected, const TMOD3D& before, const TMOD3D& model);

    /// Goes to the state before the last step, or behind the next one, which there is. The present
    /// side is kept for the way back; returns that of the state.
    Side undo(Solids& solids, const Side& present);
    Side redo(Solids& solids, const Side& present);

    /// Puts the model into the state before the last step, if that is a move after which it was not
    /// brought up to date, and keeps the record for another move. Drops what could be done again.
    /// False, with nothing changed, if there is no such move.
    bool restore_before_move(TMOD3D& model);

    /// Drops the record that was kept so, and restores the marks: no other move came.
    void drop_restored(TMOD3D& model);

    /// Drops the state that is farthest back, or, where nothing can be undone, farthest ahead.
    void drop_oldest();

    /// What the states hold, in bytes.
    std::size_t bytes() const;

private:
    /// Between the models right before and right behind an insertion. Marks may have changed since.
    struct Insertion {
        ModelDifference there;
        ModelDifference back;
        Marks::Changes changes_there; // of the marks there, after the insertion
        TMOD3D selection_there;       // what is gathered and picked, without records
    };

    /// A state on the other side of a step.
    struct State {
        Side side;
        std::unique_ptr<MoveRecord> move; // or …
        std::unique_ptr<Insertion> insertion;
        Marks::Changes changes; // of the marks, from the state next to it, or …
                                // … since the model was right beside the insertion
    };
    using States = std::deque<State>; // the one next to the present state comes last

    void anchor(const TMOD3D& model);
    static std::size_t bytes_of(const Insertion& insertion);
    Side go(States& from, States& to, Solids& solids, const Side& present);
    void pass_insertion(State& state, State& left, TMOD3D& model);
    void pass_move(const State& state, State& left, TMOD3D& model);

    States before_;
    States behind_;
    Marks marks_; // of the present state when it was reached or last left
};

} // namespace korvel::kit
