#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <vector>

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
    void keep_insertion(const Selection& selected, std::unique_ptr<TMOD3D> before,
                        const TMOD3D& model);

    /// Goes to the state before the last step, or behind the next one, which there is. The present
    /// side is kept for the way back; returns that of the state.
    Side undo(Solids& solids, const Side& present);
    Side redo(Solids& solids, const Side& present);

    /// Drops the state that is farthest back, or, where nothing can be undone, farthest ahead.
    void drop_oldest();

    /// What the states hold, in bytes.
    std::size_t bytes() const;

private:
    /// A state on the other side of a step.
    struct State {
        Side side;
        std::unique_ptr<MoveRecord> move; // or …
        std::unique_ptr<TMOD3D> model;    // … of an insertion, the model with its marks
        Marks::Changes changes;           // of the marks, from the state next to it
    };
    using States = std::deque<State>; // the one next to the present state comes last

    void anchor(const TMOD3D& model);
    Side go(States& from, States& to, Solids& solids, const Side& present);

    States before_;
    States behind_;
    Marks marks_; // of the present state when it was reached or last left
};

} // namespace korvel::kit
