#pragma once

#include <array>
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

/// A picture under the map.
struct Background {
    QString file = {}; ///< empty: none
    /// From pixels, counted from the upper left corner, to the user's coordinates:
    /// x = a·column + b·row + c, y = d·column + e·row + f.
    std::array<double, 6> to_user = {1, 0, 0, 0, -1, 0};

    kit::Point2 user(const kit::Point2& pixel) const {
        return {to_user[0] * pixel[0] + to_user[1] * pixel[1] + to_user[2],
                to_user[3] * pixel[0] + to_user[4] * pixel[1] + to_user[5]};
    }
    bool operator==(const Background& other) const = default;
};

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

    void change_curves(const QString& text, std::vector<CurveChange> changes);

    /// Gives a map without curves its first one and the grid of that, as a step.
    void start_curves(const QString& text, const kit::Placement& placement, Curve curve);

    /// Replaces everything, as a step. `replaced` is emitted.
    void replace(const QString& text, Curves curves, std::vector<RegionNote> notes);

    /// Curve ends closer than half of this are joined, in the user's units; by default one step.
    std::optional<double> tolerance() const { return tolerance_; }
    void set_tolerance(std::optional<double> tolerance);

    /// How far from a line a loose end is listed as a gap: the tolerance, or a thousandth of the
    /// map's extent.
    double gap_reach() const;

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

    // A picture under the map, such as a scan.

    const Background& background() const { return background_; }

    /// As a step.
    void set_background(const QString& text, Background background);

signals:
    void replaced(); ///< by another map, as when a file was opened; after `curves_changed`
    void curves_changed();
    void tolerance_changed();
    void background_changed();
    void regions_changed(); ///< `found()` is another one
    void selection_changed();

private:
    class CurvesStep;
    class WholeStep;
    class NotesStep;
    class ToleranceStep;
    class BackgroundStep;

    void put(const QString& text, Curves curves, std::vector<RegionNote> notes);
    void set_curves_changed();
    void find_regions();
    void take(std::shared_ptr<const FoundMap> found);

    History& history_;
    Worker& worker_;
    Curves curves_;
    std::vector<RegionNote> notes_;
    std::optional<double> tolerance_;
    Background background_;
    std::shared_ptr<const FoundMap> found_;
    bool is_current_ = true;
    std::set<int> selected_;
    std::vector<kit::Point2> selected_places_;
};

} // namespace korvel::workbench
