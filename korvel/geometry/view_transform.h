#pragma once

#include "korvel/platform/export.h"

// Matrices are 16 doubles, row by row; points are rows, multiplied on the left of the matrix, and
// only the 3×3 block turns them.

/// Makes the two rotation matrices and the direction of a view. The first angle tilts about the x
/// axis, the second turns about the z axis, both in degrees. m1 turns view coordinates back into
/// model coordinates, m2 model coordinates into view coordinates; dir is the view's third axis.
KORVEL_API void rate_xyz_matrix(double a, double b, double* m1, double* m2, double* dir);

/// q = p turned by m.
KORVEL_API void rotate_point(double* m, double* p, double* q);
