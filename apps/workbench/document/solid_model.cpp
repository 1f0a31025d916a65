#include "apps/workbench/document/solid_model.h"

#include <exception>
#include <utility>

#include "apps/workbench/document/history.h"
#include "apps/workbench/document/worker.h"

namespace korvel::workbench {
namespace {

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
        : Step(text), model_(model), change_(std::move(change)), bytes_(bytes) {}

    void undo() override {
        model_.on_both([](kit::SolidsEditor& editor) { editor.undo(); });
    }
    void redo() override { model_.on_both(change_); }
    std::size_t bytes() const override { return bytes_; }

private:
    SolidModel& model_;
    SolidChange change_;
    std::size_t bytes_;
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
    pair.worked = std::make_shared<kit::SolidsEditor>(kit::Solids(solids));
    pair.shown = std::make_unique<kit::SolidsEditor>(std::move(solids));
    return pair;
}

const kit::Solids& SolidModel::solids() const {
    return pair_.shown->solids();
}

kit::SolidsEditor& SolidModel::editor() {
    return *pair_.shown;
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
    try {
        change(*pair_.shown);
    } catch (const kit::Error& error) {
        emit refused(text, QString::fromUtf8(error.what()));
        return;
    }
    finish(text, change);
}

void SolidModel::finish(const QString& text, SolidChange change) {
    on_worked(change);
    const std::size_t bytes = pair_.shown->vertices().size() * sizeof(VERT3D);
    emit solids_changed();
    history_.add(std::make_unique<ChangeStep>(*this, text, std::move(change), bytes));
}

void SolidModel::start(const QString& text, Make make) {
    if (!can_change()) {
        return;
    }
    worker_.run(text, [this, text, make = std::move(make),
                       worked = pair_.worked](const kit::Context& context) {
        return replacing(text, make(kit::Solids(worked->solids()), context));
    });
}

Worker::Deliver SolidModel::replacing(const QString& text, kit::Solids solids) {
    return [this, text, pair = std::make_shared<Pair>(pair_of(std::move(solids)))] {
        replace(text, std::move(*pair));
    };
}

void SolidModel::replace(const QString& text, Pair pair) {
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
    emit solids_changed();
}

void SolidModel::set_view(const kit::ViewAngles& angles) {
    pair_.shown->set_view(angles);
    emit view_changed();
}

void SolidModel::on_both(const SolidChange& change) {
    change(*pair_.shown);
    on_worked(change);
    emit solids_changed();
}

// What the first copy did without an error the other one does too.
void SolidModel::on_worked(const SolidChange& change) {
    worker_.post([change, worked = pair_.worked] { change(*worked); });
}

void SolidModel::follow(const std::string& key, Ask ask) {
    worker_.follow(key, [ask = std::move(ask), worked = pair_.worked](const kit::Context& context) {
        return ask(*worked, context);
    });
}

} // namespace korvel::workbench
