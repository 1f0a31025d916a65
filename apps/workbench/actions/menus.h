#pragma once

#include <QMenu>
#include <QString>
#include <QToolBar>

namespace korvel::workbench {

/// The menus and the toolbar of a window, to which its views add their actions. Every action is in
/// a menu; those that are used all the time are in the toolbar too.
struct Menus {
    QMenu* file = nullptr;
    QMenu* edit = nullptr;
    QMenu* map = nullptr;
    QMenu* solid = nullptr;
    QMenu* section = nullptr;
    QMenu* view = nullptr;
    QMenu* help = nullptr;
    QToolBar* tools = nullptr;
};

} // namespace korvel::workbench
