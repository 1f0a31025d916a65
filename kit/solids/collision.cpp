#include "kit/solids/collision.h"

#include <algorithm>
#include <utility>

namespace korvel::kit {
namespace {

int first_illegal_edge(TMOD3D& model, const Context& context);

} // namespace

std::optional<Collision> first_collision(TMOD3D& model, const Context& context) {
    context.report("checking the move", 0, 2);
    const CheckPointScope calls = context.follow_calls();
    if (model.legal_body_rel_side()) {
        context.report("checking the move", 2, 2);
        return {};
    }
    const int e = first_illegal_edge(model, context);
    LINE3D& edge = model.lines[e];
    const auto is_met = [&](POLY3D& face) {
        return !face.is_composed_vert(edge.start_vert) && !face.is_composed_vert(edge.end_vert) &&
               edge.detect_line_cross_poly(face, model.verts);
    };
    int f = 0; // there is one
    while (f + 1 < model.polys.GetSize() && !is_met(model.polys[f])) {
        ++f;
    }
    context.report("checking the move", 2, 2);
    return Collision{e, f};
}

namespace {

/// Restores the list of gathered edges when it is destroyed.
class WholeList {
public:
    explicit WholeList(CArray<int>& list) : list_(list) { whole.Copy(list); }
    ~WholeList() { list_ = std::move(whole); }
    WholeList(const WholeList&) = delete;
    WholeList& operator=(const WholeList&) = delete;

    CArray<int> whole;

private:
    CArray<int>& list_;
};

// Bisects the list of edges, since the exact class only reports whether all of them are free.
int first_illegal_edge(TMOD3D& model, const Context& context) {
    const WholeList list(model.relat_list_3);
    int first = 0;
    int count = list.whole.GetSize();
    while (count > 1) {
        context.report("checking the move", 1, 2);
        const int half = count / 2;
        model.relat_list_3.SetSize(half);
        std::copy_n(list.whole.begin() + first, half, model.relat_list_3.begin());
        if (model.legal_body_rel_side()) {
            first += half;
            count -= half;
        } else {
            count = half;
        }
    }
    return list.whole[first];
}

} // namespace
} // namespace korvel::kit
