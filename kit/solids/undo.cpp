#include "kit/solids/undo.h"

#include <utility>

namespace korvel::kit {

void Undo::keep_move(const Selection& selected, const TMOD3D& model) {
    anchor(model);
    behind_.clear();
    before_.push_back({{selected}, std::make_unique<MoveRecord>(model), nullptr, {}});
}

void Undo::keep_insertion(const Selection& selected, std::unique_ptr<TMOD3D> before,
                          const TMOD3D& model) {
    anchor(*before);
    behind_.clear();
    before_.push_back({{selected}, nullptr, std::move(before), {}});
    marks_ = Marks(model);
}

Undo::Side Undo::undo(Solids& solids, const Side& present) {
    return go(before_, behind_, solids, present);
}

Undo::Side Undo::redo(Solids& solids, const Side& present) {
    return go(behind_, before_, solids, present);
}

void Undo::drop_oldest() {
    States& states = before_.empty() ? behind_ : before_;
    if (!states.empty()) {
        states.pop_front();
    }
}

std::size_t Undo::bytes() const {
    std::size_t sum = 0;
    for (const States* const states : {&before_, &behind_}) {
        for (const State& state : *states) {
            sum += sizeof(State) + bytes_of(state.changes) +
                   (state.move ? state.move->bytes() : bytes_of(*state.model));
        }
    }
    return sum;
}

/// Takes the present marks as those that the next states differ from.
void Undo::anchor(const TMOD3D& model) {
    const Marks::Changes changes = marks_.update(model);
    for (States* const states : {&before_, &behind_}) {
        if (!states->empty()) {
            Marks::Changes& more = states->back().changes;
            more.insert(more.end(), changes.begin(), changes.end());
        }
    }
}

/// The changes from here to there are those from there to here.
Undo::Side Undo::go(States& from, States& to, Solids& solids, const Side& present) {
    TMOD3D& model = solids.model();
    anchor(model);
    State state = std::move(from.back());
    from.pop_back();
    State left = {present, nullptr, nullptr, {}};
    if (state.model) {
        const ViewAngles angles = solids.view();
        left.model = solids.model_.release();
        solids.model_ = Owned(std::move(state.model));
        if (angles != solids.view()) {
            solids.set_view(angles);
        }
        marks_ = Marks(solids.model());
    } else {
        left.move = std::make_unique<MoveRecord>(model, *state.move);
        left.changes = marks_.change(state.changes);
        state.move->restore(model);
        change_marks(left.changes, model);
        if (state.side.is_current && present.is_current) {
            model.rotate_model();
        } else if (state.side.is_current) {
            state.move->restore_view(model);
        }
        state.move->restore_selection(model);
    }
    to.push_back(std::move(left));
    return state.side;
}

} // namespace korvel::kit
