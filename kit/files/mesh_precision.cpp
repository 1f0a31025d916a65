#include "kit/files/mesh_precision.h"

#include <algorithm>
#include <cmath>

namespace korvel::kit {

double change_by_format(const Mesh& mesh, MeshFormat format) {
    double change = 0;
    if (format == MeshFormat::stl) {
        for (const Point3& point : mesh.points) {
            for (const double value : point) {
                change = std::max(change, std::abs(value - static_cast<float>(value)));
            }
        }
    }
    return change;
}

} // namespace korvel::kit
