#include "apps/workbench/document/history.h"

#include <utility>

namespace korvel::workbench {

void History::add(std::unique_ptr<Step> step) {
    for (State* state : {&saved_, &marked_}) {
        state->is_known = state->is_known && state->at <= done_;
    }
    steps_.resize(done_);
    steps_.push_back(std::move(step));
    ++done_;
    drop_oldest();
    emit changed();
}

void History::undo() {
    if (can_undo()) {
        steps_[--done_]->undo();
        emit changed();
    }
}

void History::redo() {
    if (can_redo()) {
        steps_[done_++]->redo();
        emit changed();
    }
}

QString History::undo_text() const {
    return can_undo() ? steps_[done_ - 1]->text() : QString();
}

QString History::redo_text() const {
    return can_redo() ? steps_[done_]->text() : QString();
}

std::size_t History::bytes() const {
    std::size_t sum = 0;
    for (const std::unique_ptr<Step>& step : steps_) {
        sum += step->bytes();
    }
    return sum;
}

void History::set_memory_limit(std::size_t bytes) {
    memory_limit_ = bytes;
    drop_oldest();
    emit changed();
}

void History::set_saved() {
    mark();
    set_marked_saved();
}

void History::set_marked_saved() {
    saved_ = marked_;
    emit changed();
}

void History::clear(bool is_saved) {
    steps_.clear();
    done_ = 0;
    saved_ = {.is_known = is_saved};
    marked_ = {};
    emit changed();
}

void History::drop_oldest() {
    std::size_t sum = bytes();
    while (done_ > kept_steps && sum > memory_limit_) {
        sum -= steps_.front()->bytes();
        steps_.front()->forget();
        steps_.pop_front();
        --done_;
        for (State* state : {&saved_, &marked_}) {
            state->is_known = state->is_known && state->at > 0;
            state->at -= state->at > 0 ? 1 : 0;
        }
    }
}

} // namespace korvel::workbench
