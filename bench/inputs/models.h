#pragma once

#include <filesystem>

#include "korvel/body/tmod3d.h"
#include "korvel/platform/message_box.h"
#include "korvel/polyregion/plydt.h"

namespace korvel::bench {

/// A model file that goes away with its object.
class ModelFile {
public:
    /// What stands in it: the library's own form, or the vertices and triangles as OFF.
    enum class Form { own, off };

    explicit ModelFile(TMOD3D& model, Form form = Form::own);
    ModelFile(const ModelFile&) = delete;
    ModelFile& operator=(const ModelFile&) = delete;
    ~ModelFile();

    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

void read_model(const std::filesystem::path& path, TMOD3D& model);

/// One body's vertices and faces, nothing derived: a ball of meridians and parallels with smooth
/// bumps, of `faces` triangles. An even number with a divisor near its root gives a well-shaped
/// ball.
void bumpy_ball(TMOD3D& model, int faces);

/// The same bumps on a refined icosahedron of 20 · 4^rounds triangles.
void bumpy_refined_ball(TMOD3D& model, int rounds);

/// The six-sided prism of one cell of a wide chequerboard, as a set to be raised.
void prism_set(PLYDT& set, int cell);

/// Vertices and faces of `bodies` prisms side by side, nothing derived.
void prism_field(TMOD3D& model, int bodies);

/// For as long as it lives, the notices that `create3dmode` shows go nowhere.
class Silence {
public:
    Silence();
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;
    ~Silence();

private:
    message_box_handler former_;
};

} // namespace korvel::bench
