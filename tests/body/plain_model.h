#pragma once

#include "korvel/body/tmod3d.h"

namespace korvel::test {

// The passes over a model in their plain form, every record against every other. Of the library
// they use the records with their own calls, no table and no list that another pass has made.

void comput_mode_aux_parm_plainly(TMOD3D& model);
void found_top_rel_plainly(TMOD3D& model);
void add_model_plainly(TMOD3D& model, const TMOD3D& added);
void get_section_plainly(TMOD3D& model, const double* n, TMOD2D& out);
bool legal_body_rel_side_plainly(TMOD3D& model);
bool trace_section_poly_plainly(TMOD3D& model, int body, int face, int edge, CArray<int>& loop);

} // namespace korvel::test
