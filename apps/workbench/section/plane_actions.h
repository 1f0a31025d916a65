#pragma once

#include <QObject>

#include "apps/workbench/actions/menus.h"

class QAction;

namespace korvel::workbench {

class Document;

/// The actions of the menu Section that set the plane.
class PlaneActions : public QObject {
    Q_OBJECT

public:
    explicit PlaneActions(Document& document, QObject* parent = nullptr);

    void add_actions(const Menus& menus);

    /// Cuts across an axis (0 x, 1 y, 2 z) in the middle of the solids.
    void cut_middle(int axis);

    /// Moves the plane along its normal by steps of a fiftieth of the solids' extent.
    void step(int steps);

private:
    void update();

    Document& document_;
    std::vector<QAction*> cuts_;    // need solids
    std::vector<QAction*> changes_; // need a plane
};

} // namespace korvel::workbench
