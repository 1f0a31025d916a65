#include "apps/workbench/document/map_model.h"

#include <algorithm>
#include <utility>

#include "apps/workbench/document/find_map.h"
#include "apps/workbench/document/history.h"
#include "apps/workbench/document/worker.h"

namespace korvel::workbench {

// Curves that were replaced by others: each direction replaces the ones by the others.
class MapModel::CurvesStep : public Step {
public:
    CurvesStep(MapModel& model, const QString& text, std::vector<CurveChange> back)
        : Step(text), model_(model), back_(std::move(back)) {}

    void undo() override { exchange(); }
    void redo() override { exchange(); }
    std::size_t bytes() const override {
        std::size_t bytes = 0;
        for (const CurveChange& change : back_) {
            bytes += sizeof(change) + bytes_of(change.by);
        }
        return bytes;
    }

private:
    void exchange() {
        back_ = model_.curves_.replace(std::move(back_));
        model_.set_curves_changed();
    }

    MapModel& model_;
    std::vector<CurveChange> back_; // to what is not in the map now
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
        emit model_.tolerance_changed();
        model_.find_regions();
    }

    MapModel& model_;
    std::optional<double> tolerance_;
};

class MapModel::BackgroundStep : public Step {
public:
    BackgroundStep(MapModel& model, const QString& text, Background background)
        : Step(text), model_(model), background_(std::move(background)) {}

    void undo() override { exchange(); }
    void redo() override { exchange(); }
    std::size_t bytes() const override { return sizeof(*this); }

private:
    void exchange() {
        std::swap(model_.background_, background_);
        emit model_.background_changed();
    }

    MapModel& model_;
    Background background_;
};

MapModel::MapModel(History& history, Worker& worker, QObject* parent)
    : QObject(parent), history_(history), worker_(worker) {}

void MapModel::change_curves(const QString& text, int first, int count, std::vector<Curve> by) {
    std::vector<CurveChange> changes;
    changes.push_back({first, count, std::move(by)});
    change_curves(text, std::move(changes));
}

void MapModel::change_curves(const QString& text, std::vector<CurveChange> changes) {
    std::vector<CurveChange> back = curves_.replace(std::move(changes));
    set_curves_changed();
    history_.add(std::make_unique<CurvesStep>(*this, text, std::move(back)));
}

void MapModel::start_curves(const QString& text, const kit::Placement& placement, Curve curve) {
    Curves curves(placement);
    curves.replace(0, 0, {std::move(curve)});
    put(text, std::move(curves), notes_);
}

void MapModel::replace(const QString& text, Curves curves, std::vector<RegionNote> notes) {
    selected_.clear();
    selected_places_.clear();
    put(text, std::move(curves), std::move(notes));
    emit replaced();
}

void MapModel::put(const QString& text, Curves curves, std::vector<RegionNote> notes) {
    std::swap(curves_, curves);
    std::swap(notes_, notes);
    set_curves_changed();
    history_.add(std::make_unique<WholeStep>(*this, text, std::move(curves), std::move(notes)));
}

void MapModel::set_background(const QString& text, Background background) {
    if (background != background_) {
        std::swap(background, background_);
        emit background_changed();
        history_.add(std::make_unique<BackgroundStep>(*this, text, std::move(background)));
    }
}

void MapModel::set_tolerance(std::optional<double> tolerance) {
    if (tolerance != tolerance_) {
        std::swap(tolerance, tolerance_);
        emit tolerance_changed();
        find_regions();
        history_.add(std::make_unique<ToleranceStep>(*this, tr("Change tolerance"), tolerance));
    }
}

double MapModel::gap_reach() const {
    constexpr double share = 1e-3;
    const kit::Rectangle box = curves_.bounds();
    const double extent = box.is_empty() ? 0 : std::max(box.right - box.left, box.bottom - box.top);
    return tolerance_ ? *tolerance_ : share * extent;
}

void MapModel::set_note(int region, const std::string& name, std::optional<kit::Levels> levels) {
    const std::optional<kit::Point2> place =
        found_ != nullptr ? found_->places[static_cast<std::size_t>(region)] : std::nullopt;
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
        if (const auto place = found_->places[static_cast<std::size_t>(region)]) {
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
    const FindMapOptions options = {.tolerance = tolerance_, .gap_reach = gap_reach()};
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
