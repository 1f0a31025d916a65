#pragma once

#include <QDockWidget>

class QTableView;

namespace korvel::workbench {

class BodiesModel;
class SolidModel;

/// The list of bodies. Names are edited in place, colours by a double click; the selection is that
/// of the view.
class BodiesDock : public QDockWidget {
    Q_OBJECT

public:
    explicit BodiesDock(SolidModel& solids, QWidget* parent = nullptr);

    QTableView& table() { return *table_; }

    /// Asks for the colour of a body.
    void choose_colour(int body);

private:
    void take_selection();
    void give_selection();

    SolidModel& solids_;
    BodiesModel* model_;
    QTableView* table_;
    bool is_taking_ = false;
};

} // namespace korvel::workbench
