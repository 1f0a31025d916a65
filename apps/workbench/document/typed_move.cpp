#include "apps/workbench/document/typed_move.h"

#include <QCoreApplication>

#include "apps/workbench/document/solid_model.h"

namespace korvel::workbench {
namespace {

kit::Point3 position_of(const kit::Solids& solids, const TypedMove& move);

} // namespace

void make_typed_move(SolidModel& solids, const TypedMove& move) {
    const QString text = move.is_body ? QCoreApplication::translate("SolidModel", "Move body")
                                      : QCoreApplication::translate("SolidModel", "Move vertex");
    solids.change(text, [move](kit::SolidsEditor& editor) {
        editor.set_view({0, 0}); // u, v and w run along x, y and z
        if (move.is_body) {
            editor.gather_body(move.number);
        } else {
            editor.gather_vertex(move.number, move.depth);
        }
        kit::Point3 by = move.xyz;
        if (move.is_place) {
            const kit::Point3 from = position_of(editor.solids(), move);
            for (std::size_t k = 0; k < by.size(); ++k) {
                by[k] -= from[k];
            }
        }
        editor.move(by);
        const kit::Verdict verdict = editor.judge();
        if (!verdict.is_legal()) {
            editor.undo();
            throw kit::input_error(kit::text(verdict));
        }
    });
}

namespace {

kit::Point3 position_of(const kit::Solids& solids, const TypedMove& move) {
    if (!move.is_body) {
        return solids.vertex(move.number);
    }
    const kit::Box box = solids[move.number].bounds();
    kit::Point3 middle;
    for (std::size_t k = 0; k < middle.size(); ++k) {
        middle[k] = (box.low[k] + box.high[k]) / 2;
    }
    return middle;
}

} // namespace
} // namespace korvel::workbench
