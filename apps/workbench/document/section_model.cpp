#include "apps/workbench/document/section_model.h"

#include <exception>
#include <utility>

#include "apps/workbench/document/history.h"
#include "apps/workbench/document/solid_model.h"

namespace korvel::workbench {

class SectionModel::PlaneStep : public Step {
public:
    PlaneStep(SectionModel& model, const QString& text, std::optional<kit::Plane> other)
        : Step(text), model_(model), other_(other) {}

    void undo() override { exchange(); }
    void redo() override { exchange(); }
    std::size_t bytes() const override { return sizeof(*this); }

private:
    void exchange() {
        const std::optional<kit::Plane> other = model_.plane_;
        model_.apply(other_);
        model_.before_ = model_.plane_;
        other_ = other;
    }

    SectionModel& model_;
    std::optional<kit::Plane> other_; // that is not shown now
};

SectionModel::SectionModel(History& history, SolidModel& solids, QObject* parent)
    : QObject(parent), history_(history), solids_(solids) {
    connect(&solids_, &SolidModel::solids_changed, this, &SectionModel::cut);
}

void SectionModel::try_plane(const kit::Plane& plane) {
    apply(plane);
}

void SectionModel::set_plane(const std::optional<kit::Plane>& plane) {
    if (plane != plane_) {
        apply(plane);
    }
    if (plane != before_) {
        history_.add(std::make_unique<PlaneStep>(*this, tr("Move plane"), before_));
        before_ = plane;
    }
}

void SectionModel::apply(const std::optional<kit::Plane>& plane) {
    plane_ = plane;
    emit plane_changed();
    cut();
}

// While a plane is dragged each cut is finished and shown; to stop it for the next plane would show
// none until the mouse rests.
void SectionModel::cut() {
    is_stale_ = is_cutting_;
    if (is_cutting_) {
        return;
    }
    is_cutting_ = true;
    solids_.follow("section", [this, plane = plane_](kit::SolidsEditor& editor,
                                                     const kit::Context& /*context*/) {
        std::shared_ptr<const kit::Section> section;
        QString problem;
        try {
            if (plane && !editor.solids().empty()) {
                section = std::make_shared<const kit::Section>(editor.solids().cut(*plane));
            }
        } catch (const std::exception& error) {
            problem = QString::fromUtf8(error.what());
        }
        return [this, section, problem] { take(section, problem); };
    });
}

void SectionModel::take(std::shared_ptr<const kit::Section> section, const QString& problem) {
    section_ = std::move(section);
    problem_ = problem;
    is_cutting_ = false;
    emit section_changed();
    if (is_stale_) {
        cut();
    }
}

} // namespace korvel::workbench
