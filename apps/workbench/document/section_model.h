#pragma once

#include <memory>
#include <optional>

#include <QObject>
#include <QString>

#include "kit/kit.h"

namespace korvel::workbench {

class History;
class SolidModel;

/// The plane of a document and the section that it cuts from the solids. The section follows both:
/// the worker cuts one plane after another, leaving out those that were replaced in the meantime.
class SectionModel : public QObject {
    Q_OBJECT

public:
    SectionModel(History& history, SolidModel& solids, QObject* parent = nullptr);

    /// None while nothing is to be cut.
    const std::optional<kit::Plane>& plane() const { return plane_; }

    /// While a handle is dragged: no step of the history.
    void try_plane(const kit::Plane& plane);

    /// Sets the plane, as a step from the plane before the first `try_plane`.
    void set_plane(const std::optional<kit::Plane>& plane);

    /// The last section; null while there is none.
    std::shared_ptr<const kit::Section> section() const { return section_; }

    /// Whether it is that of the plane and the solids as they are now.
    bool is_current() const { return !is_cutting_; }

    /// Why there is no section; empty if the last cut succeeded.
    const QString& problem() const { return problem_; }

signals:
    void plane_changed();
    void section_changed();

private:
    class PlaneStep;

    void apply(const std::optional<kit::Plane>& plane);
    void cut();
    void take(std::shared_ptr<const kit::Section> section, const QString& problem);

    History& history_;
    SolidModel& solids_;
    std::optional<kit::Plane> plane_;
    std::optional<kit::Plane> before_; // the last one that is a step
    std::shared_ptr<const kit::Section> section_;
    QString problem_;
    bool is_cutting_ = false;
    bool is_stale_ = false; // what is cut was replaced
};

} // namespace korvel::workbench
