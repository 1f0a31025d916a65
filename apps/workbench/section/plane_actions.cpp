#include "apps/workbench/section/plane_actions.h"

#include <QAction>

#include "apps/workbench/document/document.h"
#include "apps/workbench/document/plane_range.h"

namespace korvel::workbench {

PlaneActions::PlaneActions(Document& document, QObject* parent)
    : QObject(parent), document_(document) {
    connect(&document_.solids(), &SolidModel::solids_changed, this, &PlaneActions::update);
    connect(&document_.section(), &SectionModel::plane_changed, this, &PlaneActions::update);
}

void PlaneActions::add_actions(const Menus& menus) {
    const QStringList texts = {tr("Cut at &x in the Middle"), tr("Cut at &y in the Middle"),
                               tr("Cut at &z in the Middle")};
    const QStringList keys = {QStringLiteral("Ctrl+Shift+X"), QStringLiteral("Ctrl+Shift+Y"),
                              QStringLiteral("Ctrl+Alt+Z")};
    for (int axis = 0; axis < 3; ++axis) {
        QAction* cut = menus.section->addAction(texts[axis], QKeySequence(keys[axis]), this,
                                                [this, axis] { cut_middle(axis); });
        cut->setStatusTip(tr("Cuts all solids by a plane across an axis"));
        cuts_.push_back(cut);
    }
    menus.section->addSeparator();
    const auto add = [&](const QString& text, const char* key, const QString& tip, auto change) {
        QAction* action =
            menus.section->addAction(text, QKeySequence(QString::fromLatin1(key)), this, change);
        action->setStatusTip(tip);
        changes_.push_back(action);
    };
    add(tr("&Next Step"), "Ctrl+.", tr("Moves the plane along its normal"), [this] { step(1); });
    add(tr("&Previous Step"), "Ctrl+,", tr("Moves the plane back along its normal"),
        [this] { step(-1); });
    add(tr("&Remove Plane"), "", tr("Cuts no more"),
        [this] { document_.section().set_plane(std::nullopt); });
    update();
}

void PlaneActions::cut_middle(int axis) {
    const kit::Box box = document_.solids().solids().bounds();
    if (!box.is_empty()) {
        const auto k = static_cast<std::size_t>(axis);
        document_.section().set_plane(plane_at(axis, (box.low[k] + box.high[k]) / 2));
    }
}

void PlaneActions::step(int steps) {
    constexpr double parts = 50;
    const auto plane = document_.section().plane();
    if (plane) {
        const PlaneRange range = range_of(*plane, document_.solids().solids().bounds());
        const double place = place_of(*plane) + steps * range.length() / parts;
        document_.section().set_plane(
            moved_to(*plane, std::clamp(place, range.least, range.greatest)));
    }
}

void PlaneActions::update() {
    for (QAction* action : cuts_) {
        action->setEnabled(!document_.solids().empty());
    }
    for (QAction* action : changes_) {
        action->setEnabled(document_.section().plane().has_value());
    }
}

} // namespace korvel::workbench
