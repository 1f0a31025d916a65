#include "apps/workbench/document/map_model.h"

#include <utility>

#include "apps/workbench/document/find_map.h"
#include "apps/workbench/document/history.h"
#include "apps/workbench/document/worker.h"

namespace korvel::workbench {

// Curves that were replaced by others: each direction replaces the ones by the others.
class MapModel::CurvesStep : public Step {
public:
    CurvesStep(MapModel& model, const QString& text, int first, std::vector<Curve> other, int count)
        : Step(text), model_(model), first_(first), other_(std::move(other)), count_(count) {}

    void undo() override { exchange(); }
    void redo() override { exchange(); }
    std::size_t bytes() const override { return bytes_of(other_); }

private:
    void exchange() {
        const auto count = static_cast<int>(other_.size());
        other_ = model_.curves_.replace(first_, count_, std::move(other_));
        count_ = count;
        model_.set_curves_changed();
    }

    MapModel& model_;
    int first_;
    std::vector<Curve> other_; // those that are not in the map now
    int count_;                // of those that are
};

class MapModel::WholeStep : public Step {
public:
    WholeStep(MapModel& model, const QString& text, Curves curves, std::vector<RegionNote> notes)
        : Step(text), model_(model), curves_(std::move(curves)), notes_(std::move(notes)) {}

    void undo() override { exchange(); }
    void redo() override { exchange(); }
    std::size_t bytes() const override {
        return static_cast<std::size_t>(curves_.point_count()) * sizeof(kit::GridPoint) +
               static_cast<std::size_t>(curves_.size()) * sizeof(Curve) +
               notes_.size() * sizeof(RegionNote);
    }

private:
    void exchange() {
        std::swap(model_.curves_, curves_);
        std::swap(model_.notes_, notes_);
        model_.set_curves_changed();
    }

    MapModel& model_;
    Curves curves_;
    std::vector<RegionNote> notes_;
};

class MapModel::NotesStep : public Step {
public:
    NotesStep(MapModel& model, const QString& text, std::vector<RegionNote> notes)
        : Step(text), model_(model), notes_(std::move(notes)) {}

    void undo() override { exchange(); }
    void redo() override { exchange(); }
    std::size_t bytes() const override { return notes_.size() * sizeof(RegionNote); }

private:
    void exchange() {
        std::swap(model_.notes_, notes_);
        model_.find_regions();
    }

    MapModel& model_;
    std::vector<RegionNote> notes_;
};

class MapModel::ToleranceStep : public Step {
public:
    ToleranceStep(MapModel& model, const QString& text, std::optional<double> tolerance)
        : Step(text), model_(model), tolerance_(tolerance) {}

    void undo() override { exchange(); }
    void redo() override { exchange(); }
    std::size_t bytes() const override { return sizeof(*this); }

private:
    void exchange() {
        std::swap(model_.tolerance_, tolerance_);
        model_.find_regions();
    }

    MapModel& model_;
    std::optional<double> tolerance_;
};

MapModel::MapModel(History& history, Worker& worker, QObject* parent)
    : QObject(parent), history_(history), worker_(worker) {}

void MapModel::change_curves(const QString& text, int first, int count, std::vector<Curve> by) {
    const auto new_count = static_cast<int>(by.size());
    std::vector<Curve> replaced = curves_.replace(first, count, std::move(by));
    set_curves_changed();
    history_.add(std::make_unique<CurvesStep>(*this, text, first, std::move(replaced), new_count));
}

void MapModel::replace(const QString& text, Curves curves, std::vector<RegionNote> notes) {
    std::swap(curves_, curves);
    std::swap(notes_, notes);
    selected_.clear();
    selected_places_.clear();
    set_curves_changed();
    history_.add(std::make_unique<WholeStep>(*this, text, std::move(curves), std::move(notes)));
}

void MapModel::set_tolerance(std::optional<double> tolerance) {
    if (tolerance != tolerance_) {
        std::swap(tolerance, tolerance_);
        find_regions();
        history_.add(std::make_unique<ToleranceStep>(*this, tr("Change tolerance"), tolerance));
    }
}

void MapModel::set_note(int region, const std::string& name, std::optional<kit::Levels> levels) {
    const std::optional<kit::Point2> place =
        found_ != nullptr ? found_->map[region].inner_point() : std::nullopt;
    if (!place) {
        return;
    }
    std::vector<RegionNote> before = notes_;
    std::erase_if(notes_, [&](const RegionNote& note) {
        return found_->locator.region_at(note.place) == region;
    });
    if (!name.empty() || levels) {
        notes_.push_back({*place, name, levels});
    }
    find_regions();
    history_.add(std::make_unique<NotesStep>(*this, tr("Edit region"), std::move(before)));
}

void MapModel::select(std::set<int> regions) {
    selected_ = std::move(regions);
    selected_places_.clear();
    for (const int region : selected_) {
        if (const auto place = found_->map[region].inner_point()) {
            selected_places_.push_back(*place);
        }
    }
    emit selection_changed();
}

void MapModel::toggle(int region) {
    std::set<int> regions = selected_;
    if (regions.erase(region) == 0) {
        regions.insert(region);
    }
    select(std::move(regions));
}

void MapModel::set_curves_changed() {
    emit curves_changed();
    find_regions();
}

void MapModel::find_regions() {
    is_current_ = false;
    const kit::FindOptions options = {.tolerance = tolerance_};
    worker_.follow("regions", [this, network = curves_.network(), options,
                               notes = notes_](const kit::Context& context) {
        auto found = find_map(network, options, notes, context);
        return [this, found = std::move(found)] { take(found); };
    });
}

void MapModel::take(std::shared_ptr<const FoundMap> found) {
    found_ = std::move(found);
    is_current_ = true;
    selected_.clear();
    for (const kit::Point2& place : selected_places_) {
        if (const auto region = found_->locator.region_at(place)) {
            selected_.insert(*region);
        }
    }
    emit regions_changed();
    emit selection_changed();
}

} // namespace korvel::workbench
