#pragma once

#include "korvel/base/members.h"
#include "korvel/body/tmod3d.h"

namespace korvel {

/// Empties the lists of gathered faces, vertices, edges and levels, and the weights.
inline void empty_relation_lists(TMOD3D& model) {
    remove_lists(model, &TMOD3D::relat_list_1, &TMOD3D::relat_list_2, &TMOD3D::relat_list_3,
                 &TMOD3D::relat_list_4, &TMOD3D::mut_weights);
}

} // namespace korvel
