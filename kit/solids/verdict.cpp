#include "kit/solids/verdict.h"

#include "kit/base/number_text.h"

namespace korvel::kit {

std::string text(const Verdict& verdict) {
    const std::string edge = "the edge between vertices " + std::to_string(verdict.ends[0]) +
                             " and " + std::to_string(verdict.ends[1]);
    std::string face = "face " + std::to_string(verdict.face);
    if (verdict.body >= 0) {
        face += " of body " + std::to_string(verdict.body);
    }
    switch (verdict.kind) {
    case Verdict::Kind::legal:
        return "legal";
    case Verdict::Kind::edge_meets_face:
        return edge + " would pass through " + face + " or touch it";
    case Verdict::Kind::edge_without_length:
        return edge + " would have no length";
    case Verdict::Kind::face_without_area:
        return face + " would have no area, and a move cannot be checked beside such a face";
    case Verdict::Kind::out_of_range:
        break;
    }
    return "vertex " + std::to_string(verdict.vertex) + " would be at " +
           number_text(verdict.coordinate) + ", which does not fit single precision";
}

} // namespace korvel::kit
