// The life of a body model.

#include "korvel/body/tmod3d.h"

#include <algorithm>

namespace {

template <class Array>
void copy_elements(Array& target, const Array& source) {
    target.SetSize(source.GetSize());
    std::copy(source.begin(), source.end(), target.begin());
}

} // namespace

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
        return *this;
    }
    RemoveAll();
    std::copy_n(src.orig_shift, 3, orig_shift);
    std::copy_n(src.view_center, 3, view_center);
    std::copy_n(src.wrap_cuboid, 6, wrap_cuboid);
    wrap_radius = src.wrap_radius;
    for (int corner = 0; corner < 8; ++corner) {
        std::copy_n(src.cuboid_corners[corner], 3, cuboid_corners[corner]);
        std::copy_n(src.rotated_corners[corner], 3, rotated_corners[corner]);
    }
    std::copy_n(src.cuboid_min, 3, cuboid_min);
    std::copy_n(src.cuboid_max, 3, cuboid_max);
    std::copy_n(src.model_frame, 6, model_frame);
    std::copy_n(src.view_bounds, 6, view_bounds);
    vis_angle_1 = src.vis_angle_1;
    vis_angle_2 = src.vis_angle_2;
    std::copy_n(src.view_dir, 3, view_dir);
    view_scale = src.view_scale;
    std::copy_n(src.ant_matrix, 16, ant_matrix);
    std::copy_n(src.rot_matrix, 16, rot_matrix);
    std::copy_n(src.pick_data, 9, pick_data);
    std::copy_n(src.edit_state, 11, edit_state);
    relat_list_1.Copy(src.relat_list_1);
    relat_list_2.Copy(src.relat_list_2);
    relat_list_3.Copy(src.relat_list_3);
    relat_list_4.Copy(src.relat_list_4);
    mut_weights.Copy(src.mut_weights);
    sect_model_1 = src.sect_model_1;
    sect_model_2 = src.sect_model_2;
    mode_ok = src.mode_ok;
    std::copy_n(src.orig, 3, orig);
    std::copy_n(src.tail_data, 8, tail_data);
    copy_elements(verts, src.verts);
    copy_elements(lines, src.lines);
    copy_elements(polys, src.polys);
    copy_elements(bodies, src.bodies);
    return *this;
}

void TMOD3D::Copy(const TMOD3D& src) {
    *this = src;
}

void TMOD3D::RemoveAll() {
    bodies.RemoveAll();
    polys.RemoveAll();
    lines.RemoveAll();
    verts.RemoveAll();
    relat_list_1.RemoveAll();
    relat_list_2.RemoveAll();
    relat_list_3.RemoveAll();
    relat_list_4.RemoveAll();
    mut_weights.RemoveAll();
    sect_model_1.RemoveAll();
    sect_model_2.RemoveAll();
    mode_ok = 0;
}
