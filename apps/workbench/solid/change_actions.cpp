// The actions that make, join, move and remove solids, and the lists beside the view.

#include <vector>

#include <QAction>
#include <QDockWidget>
#include <QInputDialog>
#include <QPlainTextEdit>

#include "apps/workbench/document/document.h"
#include "apps/workbench/document/raise_map.h"
#include "apps/workbench/document/solid_operations.h"
#include "apps/workbench/document/typed_move.h"
#include "apps/workbench/solid/bodies_dock.h"
#include "apps/workbench/solid/move_dialog.h"
#include "apps/workbench/solid/raise_dialog.h"
#include "apps/workbench/solid/solid_view.h"
#include "apps/workbench/solid/starter_dialog.h"

namespace korvel::workbench {
namespace {

/// Shows a dialog that takes care of itself, and calls `act` if it is accepted.
template <class Dialog, class Act>
void open(Dialog* dialog, QObject* receiver, Act act) {
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(dialog, &QDialog::accepted, receiver, [dialog, act] { act(*dialog); });
    dialog->open();
}

} // namespace

void SolidView::add_change_actions(const Menus& menus) {
    const auto add = [&](const char* name, const QString& text, const QString& tip, auto act) {
        QAction* const action = menus.solid->addAction(text);
        action->setObjectName(QString::fromLatin1(name));
        action->setStatusTip(tip);
        action->setToolTip(tip);
        connect(action, &QAction::triggered, this, act);
        return action;
    };
    QAction* const raise = add("raise", tr("&Raise Regions…"),
                               tr("Make bodies from regions of the map, between two levels"),
                               [this] { ask_to_raise(); });
    raise->setShortcut(QKeySequence(QStringLiteral("Ctrl+R")));
    menus.tools->addAction(raise);
    add("new_cuboid", tr("New &Cuboid…"), tr("Begin with a cuboid"),
        [this] { ask_for_starter(false); });
    add("new_ball", tr("New Ba&ll…"), tr("Begin with a ball"), [this] { ask_for_starter(true); });
    menus.solid->addSeparator();
    add("move_by_or_to", tr("&Move By or To…"), tr("Move a vertex or a body by coordinates"),
        [this] { ask_to_move(); });
    add("weld", tr("&Weld…"), tr("Join vertices, edges and faces where bodies touch"),
        [this] { ask_to_weld(); });
    add("clean", tr("Clea&n"), tr("Remove faces of no body and vertices of no face"),
        [this] { clean(document_.solids()); });
    QAction* const remove =
        add("delete_bodies", tr("&Delete Bodies"), tr("Delete the selected bodies"), [this] {
            if (!document_.solids().selected().empty()) {
                remove_bodies(document_.solids(), document_.solids().selected());
            }
        });
    menus.solid->addSeparator();
    QAction* const hide = add("hide_bodies", tr("&Hide Selected"),
                              tr("Leave the selected bodies out of the view"), [this] {
                                  SolidModel& solids = document_.solids();
                                  std::set<int> hidden = solids.hidden();
                                  hidden.insert(solids.selected().begin(), solids.selected().end());
                                  solids.set_hidden(std::move(hidden));
                              });
    add("show_bodies", tr("Show &All Bodies"), tr("Show the bodies that are hidden"),
        [this] { document_.solids().set_hidden({}); });
    const auto enable = [this, remove, hide] {
        for (QAction* const action : {remove, hide}) {
            action->setEnabled(!document_.solids().selected().empty());
        }
    };
    connect(&document_.solids(), &SolidModel::selection_changed, this, enable);
    enable();
}

void SolidView::ask_to_raise() {
    const MapModel& map = document_.map();
    if (map.found() == nullptr) {
        emit hint_changed(tr("There is no region to raise: open or draw a map first"));
        return;
    }
    open(new RaiseDialog(static_cast<int>(map.selected().size()), !document_.solids().empty(),
                         window()),
         this, [this](const RaiseDialog& dialog) {
             raise_map(document_.map(), document_.solids(), dialog.settings());
         });
}

void SolidView::ask_for_starter(bool is_ball) {
    open(new StarterDialog(is_ball, !document_.solids().empty(), window()), this,
         [this](const StarterDialog& dialog) {
             make_starter(document_.solids(), dialog.starter());
         });
}

void SolidView::ask_to_move() {
    const SolidModel& solids = document_.solids();
    if (solids.empty()) {
        emit hint_changed(tr("There are no solids to move"));
        return;
    }
    open(new MoveDialog(solids.solids(), last_pick_, window()), this,
         [this](const MoveDialog& dialog) { make_typed_move(document_.solids(), dialog.move()); });
}

void SolidView::ask_to_weld() {
    auto* const dialog = new QInputDialog(window());
    constexpr double largest = 1e9;
    constexpr int decimals = 6;
    dialog->setWindowTitle(tr("Weld"));
    dialog->setInputMode(QInputDialog::DoubleInput);
    dialog->setDoubleRange(0, largest);
    dialog->setDoubleDecimals(decimals);
    dialog->setLabelText(tr("Join vertices no farther apart than"));
    open(dialog, this,
         [this](const QInputDialog& asked) { weld(document_.solids(), asked.doubleValue()); });
}

void SolidView::add_docks() {
    auto* const bodies = new BodiesDock(document_.solids());
    auto* const info = new QDockWidget(tr("Picked"));
    info->setObjectName(QStringLiteral("picked"));
    auto* const report = new QPlainTextEdit(info);
    report->setReadOnly(true);
    report->setAccessibleName(tr("What was picked"));
    report->setPlaceholderText(tr("Click a solid with the Pick tool"));
    info->setWidget(report);
    connect(this, &SolidView::picked, report, &QPlainTextEdit::setPlainText);
    docks_ = {bodies, info};
}

} // namespace korvel::workbench
