// A face's vertices as OpenGL calls; the caller brackets them with `glBegin` and `glEnd`.

#include "korvel/base/indices.h"
#include "korvel/geometry/poly3d.h"
#include "korvel/platform/opengl.h"

using korvel::has_element;

void POLY3D::gl_draw_poly(CArray<VERT3D, VERT3D&>* verts) {
    for (const int v : this->verts) {
        if (has_element(*verts, v)) {
            glVertex3dv((*verts)[v].view_xyz);
        }
    }
}

void POLY3D::gl_draw_orig_poly(CArray<VERT3D, VERT3D&>* verts) {
    for (const int v : this->verts) {
        if (has_element(*verts, v)) {
            glVertex3dv((*verts)[v].model_xyz);
        }
    }
}
