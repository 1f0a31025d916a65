// The tools of the view of solids, one of which is chosen, and how what they drag moves.

#include <array>

#include <QAction>
#include <QActionGroup>

#include "apps/workbench/solid/insert_tool.h"
#include "apps/workbench/solid/move_body_tool.h"
#include "apps/workbench/solid/move_mode.h"
#include "apps/workbench/solid/move_vertex_tool.h"
#include "apps/workbench/solid/pick_tool.h"
#include "apps/workbench/solid/plane_tool.h"
#include "apps/workbench/solid/scale_body_tool.h"
#include "apps/workbench/solid/solid_view.h"

namespace korvel::workbench {
namespace {

using MakeTool = std::unique_ptr<SolidTool> (*)(SolidView& view, MoveMode mode);

struct ToolChoice {
    const char* name;
    const char* text;
    const char* tip;
    bool is_in_toolbar;
    MakeTool make;
};

template <class Tool>
std::unique_ptr<SolidTool> make_tool(SolidView& view, MoveMode /*mode*/) {
    return std::make_unique<Tool>(view);
}

std::unique_ptr<SolidTool> make_vertex_tool(SolidView& view, MoveMode mode) {
    auto tool = std::make_unique<MoveVertexTool>(view);
    tool->set_mode(mode);
    return tool;
}

std::unique_ptr<SolidTool> make_body_tool(SolidView& view, MoveMode mode) {
    return std::make_unique<MoveBodyTool>(view, mode);
}

template <InsertTool::Place place>
std::unique_ptr<SolidTool> make_insert_tool(SolidView& view, MoveMode /*mode*/) {
    return std::make_unique<InsertTool>(view, place);
}

constexpr std::array tools = {
    ToolChoice{"pick_solid", QT_TRANSLATE_NOOP("SolidView", "&Pick"),
               QT_TRANSLATE_NOOP("SolidView", "Report face, edge, vertex and body under the mouse"),
               true, &make_tool<PickTool>},
    ToolChoice{"move_vertex", QT_TRANSLATE_NOOP("SolidView", "Move &Vertex"),
               QT_TRANSLATE_NOOP("SolidView", "Drag a vertex with those around it"), true,
               &make_vertex_tool},
    ToolChoice{"move_body", QT_TRANSLATE_NOOP("SolidView", "Move &Body"),
               QT_TRANSLATE_NOOP("SolidView", "Drag a body"), true, &make_body_tool},
    ToolChoice{"scale_body", QT_TRANSLATE_NOOP("SolidView", "&Scale Body"),
               QT_TRANSLATE_NOOP("SolidView", "Drag the sides of a body's box"), true,
               &make_tool<ScaleBodyTool>},
    ToolChoice{"insert_on_face", QT_TRANSLATE_NOOP("SolidView", "Insert Point on &Face"),
               QT_TRANSLATE_NOOP("SolidView", "Divide a face at a point"), false,
               &make_insert_tool<InsertTool::Place::face>},
    ToolChoice{"insert_on_edge", QT_TRANSLATE_NOOP("SolidView", "Insert Point on &Edge"),
               QT_TRANSLATE_NOOP("SolidView", "Divide an edge and the faces at it"), false,
               &make_insert_tool<InsertTool::Place::edge>},
};

} // namespace

void SolidView::add_tool_actions(const Menus& menus) {
    auto* const group = new QActionGroup(this);
    menus.tools->addSeparator();
    for (const ToolChoice& choice : tools) {
        QAction* const action = menus.solid->addAction(tr(choice.text));
        action->setObjectName(QString::fromLatin1(choice.name));
        action->setStatusTip(tr(choice.tip));
        action->setToolTip(tr(choice.tip));
        action->setCheckable(true);
        group->addAction(action);
        if (choice.is_in_toolbar) {
            menus.tools->addAction(action);
        }
        connect(action, &QAction::triggered, this, [this, make = choice.make] {
            make_tool_ = [this, make] { return make(*this, move_mode_); };
            choose(make_tool_());
        });
    }
    QAction* const drag_plane = menus.section->addAction(tr("&Drag Plane"));
    drag_plane->setStatusTip(tr("Moves the plane by the mouse in the view of the solids"));
    drag_plane->setCheckable(true);
    group->addAction(drag_plane);
    connect(drag_plane, &QAction::triggered, this, [this] {
        make_tool_ = {};
        choose(std::make_unique<PlaneTool>(*this));
    });
    group->actions().constFirst()->setChecked(true);
    add_mode_actions(*menus.solid->addMenu(tr("How to &Move")));
    menus.solid->addSeparator();
}

void SolidView::add_mode_actions(QMenu& menu) {
    auto* const group = new QActionGroup(this);
    for (const MoveModeText& mode : move_modes) {
        QAction* const action = menu.addAction(tr(mode.text));
        action->setStatusTip(tr(mode.tip));
        action->setCheckable(true);
        action->setChecked(mode.mode == move_mode_);
        group->addAction(action);
        connect(action, &QAction::triggered, this, [this, chosen = mode.mode] {
            move_mode_ = chosen;
            if (make_tool_) {
                choose(make_tool_());
            }
        });
    }
}

} // namespace korvel::workbench
