// Construction, copying and emptying of a body model.

#include "korvel/body/tmod3d.h"

#include "korvel/base/members.h"

TMOD3D::TMOD3D() {
    inti_vis_plan();
}

TMOD3D::TMOD3D(const TMOD3D& src) {
    *this = src;
}

TMOD3D::~TMOD3D() {
    RemoveAll();
}

TMOD3D& TMOD3D::operator=(const TMOD3D& src) {
    if (this == &src) {
        return *this; // self-assignment keeps the object
    }
    RemoveAll();
    korvel::copy_members(
        *this, src, &TMOD3D::orig_shift, &TMOD3D::view_center, &TMOD3D::wrap_cuboid,
        &TMOD3D::wrap_radius, &TMOD3D::cuboid_corners, &TMOD3D::rotated_corners,
        &TMOD3D::cuboid_min, &TMOD3D::cuboid_max, &TMOD3D::model_frame, &TMOD3D::view_bounds,
        &TMOD3D::vis_angle_1, &TMOD3D::vis_angle_2, &TMOD3D::view_dir, &TMOD3D::view_scale,
        &TMOD3D::ant_matrix, &TMOD3D::rot_matrix, &TMOD3D::pick_data, &TMOD3D::edit_state,
        &TMOD3D::relat_list_1, &TMOD3D::relat_list_2, &TMOD3D::relat_list_3, &TMOD3D::relat_list_4,
        &TMOD3D::mut_weights, &TMOD3D::sect_model_1, &TMOD3D::sect_model_2, &TMOD3D::mode_ok,
        &TMOD3D::orig, &TMOD3D::tail_data, &TMOD3D::verts, &TMOD3D::lines, &TMOD3D::polys,
        &TMOD3D::bodies);
    return *this;
}

void TMOD3D::Copy(const TMOD3D& src) {
    *this = src;
}

void TMOD3D::RemoveAll() {
    korvel::remove_lists(*this, &TMOD3D::bodies, &TMOD3D::polys, &TMOD3D::lines, &TMOD3D::verts,
                         &TMOD3D::relat_list_1, &TMOD3D::relat_list_2, &TMOD3D::relat_list_3,
                         &TMOD3D::relat_list_4, &TMOD3D::mut_weights);
    sect_model_1.RemoveAll();
    sect_model_2.RemoveAll();
    mode_ok = 0;
}
