#include "kit/solids/undo.h"

#include <tuple>
#include <utility>

#include "kit/solids/kept_members.h"

namespace korvel::kit {

void Undo::keep_move(const Selection& selected, const TMOD3D& model) {
    anchor(model);
    behind_.clear();
    before_.push_back({{selected}, std::make_unique<MoveRecord>(model), nullptr, {}});
}

void Undo::keep_insertion(const Selection& selected, const TMOD3D& before, const TMOD3D& model) {
    anchor(before);
    behind_.clear();
    auto insertion = std::make_unique<Insertion>();
    std::tie(insertion->there, insertion->back) = ModelDifference::between(model, before);
    copy_selection(before, insertion->selection_there);
    before_.push_back({{selected}, nullptr, std::move(insertion), {}});
    marks_ = Marks(model);
}

Undo::Side Undo::undo(Solids& solids, const Side& present) {
    return go(before_, behind_, solids, present);
}

Undo::Side Undo::redo(Solids& solids, const Side& present) {
    return go(behind_, before_, solids, present);
}

bool Undo::restore_before_move(TMOD3D& model) {
    if (before_.empty() || !before_.back().move || !before_.back().side.is_current) {
        return false;
    }
    behind_.clear();
    const MoveRecord& record = *before_.back().move;
    record.restore(model);
    record.restore_view(model);
    record.restore_selection(model);
    return true;
}

void Undo::drop_restored(TMOD3D& model) {
    anchor(model);
    change_marks(marks_.change(before_.back().changes), model);
    before_.pop_back();
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
            sum += sizeof(State) + kit::bytes_of(state.changes) +
                   (state.move ? state.move->bytes() : bytes_of(*state.insertion));
        }
    }
    return sum;
}

std::size_t Undo::bytes_of(const Insertion& insertion) {
    return sizeof(Insertion) + insertion.there.bytes() + insertion.back.bytes() +
           kit::bytes_of(insertion.changes_there) + kit::bytes_of(insertion.selection_there) -
           sizeof(TMOD3D);
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

Undo::Side Undo::go(States& from, States& to, Solids& solids, const Side& present) {
    TMOD3D& model = solids.model();
    anchor(model);
    State state = std::move(from.back());
    from.pop_back();
    State left = {present, nullptr, nullptr, {}};
    if (state.insertion) {
        pass_insertion(state, left, model);
    } else {
        pass_move(state, left, model);
    }
    to.push_back(std::move(left));
    return state.side;
}

void Undo::pass_insertion(State& state, State& left, TMOD3D& model) {
    Insertion& insertion = *state.insertion;
    left.insertion = std::make_unique<Insertion>();
    left.insertion->changes_there = marks_.change(state.changes);
    copy_selection(model, left.insertion->selection_there);
    change_marks(left.insertion->changes_there, model);
    insertion.there.apply(model);
    copy_selection(insertion.selection_there, model);
    change_marks(insertion.changes_there, model);
    model.rotate_model();
    marks_ = Marks(model);
    left.changes = std::move(insertion.changes_there);
    left.insertion->there = std::move(insertion.back);
    left.insertion->back = std::move(insertion.there);
}

/// The changes from here to there are those from there to here.
void Undo::pass_move(const State& state, State& left, TMOD3D& model) {
    left.move = std::make_unique<MoveRecord>(model, *state.move);
    left.changes = marks_.change(state.changes);
    state.move->restore(model);
    change_marks(left.changes, model);
    if (state.side.is_current && left.side.is_current) {
        model.rotate_model();
    } else if (state.side.is_current) {
        state.move->restore_view(model);
    }
    state.move->restore_selection(model);
}

} // namespace korvel::kit
