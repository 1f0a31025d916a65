#pragma once

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <QObject>
#include <QString>

#include "apps/workbench/document/curves.h"
#include "apps/workbench/document/find_map.h"
#include "kit/kit.h"

namespace korvel::workbench {

class History;
class Worker;

/// The map of a document: curves, the regions that the worker finds in them a moment after each
/// change, and which of these are selected. Changes of curves, notes and tolerance are steps of the
/// history.
class MapModel : public QObject {
    Q_OBJECT

public:
    MapModel(History& history, Worker& worker, QObject* parent = nullptr);

    // Curves.

    const Curves& curves() const { return curves_; }

    /// Replaces curves as `Curves::replace` does, as a step with that text.
    void change_curves(const QString& text, int first, int count, std::vector<Curve> by);

    /// Replaces everything, as a step.
    void replace(const QString& text, Curves curves, std::vector<RegionNote> notes);

    /// Curve ends closer than half of this are joined, in the user's units; by default one step.
    std::optional<double> tolerance() const { return tolerance_; }
    void set_tolerance(std::optional<double> tolerance);

    // Regions.

    /// The last regions found; null while there are none.
    std::shared_ptr<const FoundMap> found() const { return found_; }

    /// Whether they are those of the curves as they are now.
    bool is_current() const { return is_current_; }

    const std::vector<RegionNote>& notes() const { return notes_; }

    /// Sets name and levels of a region, as a step.
    void set_note(int region, const std::string& name, std::optional<kit::Levels> levels);

    // Selected regions of `found()`. They are kept by places when regions are found anew.

    const std::set<int>& selected() const { return selected_; }
    void select(std::set<int> regions);
    void toggle(int region);

signals:
    void curves_changed();
    void regions_changed(); ///< `found()` is another one
    void selection_changed();

private:
    class CurvesStep;
    class WholeStep;
    class NotesStep;
    class ToleranceStep;

    void set_curves_changed();
    void find_regions();
    void take(std::shared_ptr<const FoundMap> found);

    History& history_;
    Worker& worker_;
    Curves curves_;
    std::vector<RegionNote> notes_;
    std::optional<double> tolerance_;
    std::shared_ptr<const FoundMap> found_;
    bool is_current_ = true;
    std::set<int> selected_;
    std::vector<kit::Point2> selected_places_;
};

} // namespace korvel::workbench
