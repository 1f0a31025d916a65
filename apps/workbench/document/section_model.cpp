#include "apps/workbench/document/section_model.h"

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

void SectionModel::cut() {
    is_current_ = false;
    solids_.follow("section", [this, plane = plane_](kit::SolidsEditor& editor,
                                                     const kit::Context& /*context*/) {
        std::shared_ptr<const kit::Section> section;
        if (plane && !editor.solids().empty()) {
            section = std::make_shared<const kit::Section>(editor.solids().cut(*plane));
        }
        return [this, section] {
            section_ = section;
            is_current_ = true;
            emit section_changed();
        };
    });
}

} // namespace korvel::workbench
