#include "apps/workbench/document/solid_model.h"

#include <chrono>
#include <exception>
#include <stop_token>
#include <utility>

#include "apps/workbench/document/history.h"
#include "apps/workbench/document/worker.h"

namespace korvel::workbench {
namespace {

// Progress comes often enough to stop before the window is late with its picture.
kit::Context stopping_soon() {
    constexpr auto longest = std::chrono::milliseconds(40);
    const auto source = std::make_shared<std::stop_source>();
    const auto end = std::chrono::steady_clock::now() + longest;
    return {.on_progress =
                [source, end](const kit::Progress& /*progress*/) {
                    if (std::chrono::steady_clock::now() > end) {
                        source->request_stop();
                    }
                },
            .stop = source->get_token()};
}

std::size_t bytes_of(const kit::Solids& solids) {
    constexpr std::size_t relations = 12; // of a face, its edges and vertices with each other
    return static_cast<std::size_t>(solids.vertex_count()) * sizeof(VERT3D) +
           static_cast<std::size_t>(solids.edge_count()) * sizeof(LINE3D) +
           static_cast<std::size_t>(solids.face_count()) *
               (sizeof(POLY3D) + relations * sizeof(int));
}

} // namespace

// A change that both copies can undo and make again.
class SolidModel::ChangeStep : public Step {
public:
    ChangeStep(SolidModel& model, const QString& text, SolidChange change, std::size_t bytes)
        : Step(text), model_(model), change_(std::move(change)), bytes_(bytes),
          shown_(model.pair_.shown.get()), worked_(model.pair_.worked) {}

    void undo() override {
        model_.on_both([](kit::SolidsEditor& editor) { editor.undo(); });
    }
    void redo() override { model_.on_both(change_); }
    std::size_t bytes() const override { return bytes_; }

    // Other solids may have come since: then the editors are kept by the step that brought those.
    void forget() override {
        shown_->drop_oldest_undo();
        model_.worker_.post([worked = worked_] {
            worked->with([](kit::SolidsEditor& editor) { editor.drop_oldest_undo(); });
        });
    }

private:
    SolidModel& model_;
    SolidChange change_;
    std::size_t bytes_;
    kit::SolidsEditor* shown_;
    std::shared_ptr<SharedEditor> worked_;
};

// Name or colour of a body, which the editors do not undo.
class SolidModel::BodyStep : public Step {
public:
    BodyStep(SolidModel& model, const QString& text, SolidChange change, SolidChange back)
        : Step(text), model_(model), change_(std::move(change)), back_(std::move(back)) {}

    void undo() override { make(back_); }
    void redo() override { make(change_); }
    std::size_t bytes() const override { return sizeof(*this); }

private:
    void make(const SolidChange& change) {
        model_.end_trial();
        change(*model_.pair_.shown);
        model_.on_worked(change);
        emit model_.bodies_changed();
    }

    SolidModel& model_;
    SolidChange change_;
    SolidChange back_;
};

class SolidModel::WholeStep : public Step {
public:
    WholeStep(SolidModel& model, const QString& text, Pair other)
        : Step(text), model_(model), other_(std::move(other)) {}

    void undo() override { exchange(); }
    void redo() override { exchange(); }
    std::size_t bytes() const override { return 2 * bytes_of(other_.shown->solids()); }

private:
    void exchange() {
        model_.end_trial();
        std::swap(model_.pair_, other_);
        model_.set_replaced(other_.shown->solids().view());
    }

    SolidModel& model_;
    Pair other_;
};

SolidModel::SolidModel(History& history, Worker& worker, QObject* parent)
    : QObject(parent), history_(history), worker_(worker), pair_(pair_of(kit::Solids())) {}

SolidModel::~SolidModel() = default;

SolidModel::Pair SolidModel::pair_of(kit::Solids solids) {
    Pair pair;
    pair.worked = std::make_shared<SharedEditor>(kit::Solids(solids));
    pair.shown = std::make_unique<kit::SolidsEditor>(std::move(solids));
    pair.shown->prepare();
    pair.drawn = &pair.shown->solids();
    return pair;
}

const kit::Solids& SolidModel::solids() const {
    return pair_.shown->solids();
}

std::optional<kit::Pick> SolidModel::pick(double u, double v) {
    end_trial();
    return pair_.shown->pick(u, v, hidden_);
}

bool SolidModel::can_change() const {
    return !worker_.is_busy();
}

void SolidModel::set_hidden(std::set<int> bodies) {
    hidden_ = std::move(bodies);
    emit hidden_changed();
}

void SolidModel::select(std::set<int> bodies) {
    selected_ = std::move(bodies);
    emit selection_changed();
}

void SolidModel::change(const QString& text, const SolidChange& change) {
    if (!can_change()) {
        return;
    }
    end_trial();
    try {
        make(change);
    } catch (const kit::Error& error) {
        emit refused(text, QString::fromUtf8(error.what()));
        return;
    }
    finish(text, change);
}

// A change turns the view to what it was made in; the user's stays.
void SolidModel::make(const SolidChange& change) {
    const kit::ViewAngles angles = pair_.drawn->view();
    const auto turn_back = [&] {
        if (pair_.drawn->view() != angles) {
            pair_.shown->set_view(angles);
        }
    };
    try {
        change(*pair_.shown);
    } catch (const kit::Error&) {
        turn_back();
        throw;
    }
    turn_back();
}

void SolidModel::finish(const QString& text, SolidChange change) {
    on_worked(change);
    const std::size_t before = std::exchange(pair_.undo_bytes, pair_.shown->undo_bytes());
    const std::size_t bytes = pair_.undo_bytes > before ? pair_.undo_bytes - before : 0;
    emit solids_changed();
    history_.add(std::make_unique<ChangeStep>(*this, text, std::move(change), 2 * bytes));
}

void SolidModel::set_name(int body, const QString& name) {
    const auto naming = [body](const std::string& to) {
        return [body, to](kit::SolidsEditor& editor) { editor.set_name(body, to); };
    };
    set_body(tr("Rename body"), naming(name.toStdString()), naming(drawn()[body].name()));
}

void SolidModel::set_colour(int body, const kit::BodyColour& colour) {
    const auto colouring = [body](const kit::BodyColour& to) {
        return [body, to](kit::SolidsEditor& editor) { editor.set_colour(body, to); };
    };
    set_body(tr("Colour body"), colouring(colour), colouring(drawn()[body].colour()));
}

void SolidModel::set_body(const QString& text, SolidChange change, SolidChange back) {
    if (!can_change()) {
        return;
    }
    auto step = std::make_unique<BodyStep>(*this, text, std::move(change), std::move(back));
    step->redo();
    history_.add(std::move(step));
}

bool SolidModel::begin_trial(SolidChange gather) {
    end_trial();
    if (!can_change()) {
        return false;
    }
    try {
        gather(*pair_.shown);
    } catch (const kit::Error& error) {
        emit refused(tr("Move"), QString::fromUtf8(error.what()));
        return false;
    }
    trial_ = Trial{std::move(gather), {}};
    return true;
}

std::optional<kit::Verdict> SolidModel::try_move(const SolidChange& move, bool waits_for_verdict) {
    if (std::exchange(trial_->move, {})) {
        pair_.shown->move_instead(move);
    } else {
        move(*pair_.shown);
    }
    trial_->move = move;
    std::optional<kit::Verdict> verdict;
    try {
        verdict = pair_.shown->judge(waits_for_verdict ? kit::Context() : stopping_soon());
    } catch (const kit::Error&) {
        verdict.reset(); // it takes longer than a picture
    }
    emit trial_changed();
    return verdict;
}

void SolidModel::keep_trial(const QString& text) {
    const Trial trial = *std::exchange(trial_, {});
    finish(text, [trial](kit::SolidsEditor& editor) {
        trial.gather(editor);
        trial.move(editor);
    });
    emit trial_changed();
}

void SolidModel::end_trial() {
    if (trial_) {
        const Trial trial = *std::exchange(trial_, {});
        if (trial.move) {
            pair_.shown->undo();
        }
        emit trial_changed();
    }
}

void SolidModel::start(const QString& text, Make make) {
    if (!can_change()) {
        return;
    }
    end_trial();
    worker_.run(text, [this, text, make = std::move(make),
                       worked = pair_.worked](const kit::Context& context) {
        kit::Solids solids =
            worked->with([](kit::SolidsEditor& editor) { return kit::Solids(editor.solids()); });
        return replacing(text, make(std::move(solids), context));
    });
}

Worker::Deliver SolidModel::replacing(const QString& text, kit::Solids solids) {
    return [this, text, pair = std::make_shared<Pair>(pair_of(std::move(solids)))] {
        replace(text, std::move(*pair));
    };
}

void SolidModel::replace(const QString& text, Pair pair) {
    end_trial();
    std::swap(pair_, pair);
    const kit::ViewAngles angles = pair.shown->solids().view();
    auto step = std::make_unique<WholeStep>(*this, text, std::move(pair));
    set_replaced(angles);
    history_.add(std::move(step));
}

// What belongs to the bodies of before does not fit others, but the view stays.
void SolidModel::set_replaced(const kit::ViewAngles& angles) {
    hidden_.clear();
    selected_.clear();
    if (solids().view() != angles) {
        pair_.shown->set_view(angles);
    }
    emit hidden_changed();
    emit selection_changed();
    emit solids_replaced();
    emit solids_changed();
}

void SolidModel::set_view(const kit::ViewAngles& angles) {
    end_trial();
    pair_.shown->set_view(angles);
    emit view_changed();
}

void SolidModel::on_both(const SolidChange& change) {
    end_trial();
    make(change);
    on_worked(change);
    emit solids_changed();
}

// What the first copy did without an error the other one does too.
void SolidModel::on_worked(const SolidChange& change) {
    worker_.post([change, worked = pair_.worked] { worked->with(change); });
}

void SolidModel::follow(const std::string& key, Ask ask) {
    worker_.follow(key, asking(std::move(ask)));
}

Worker::Work SolidModel::asking(Ask ask) const {
    return [ask = std::move(ask), worked = pair_.worked](const kit::Context& context) {
        return worked->with([&](kit::SolidsEditor& editor) { return ask(editor, context); });
    };
}

} // namespace korvel::workbench
