#pragma once

#include <filesystem>

#include "korvel/body/tmod3d.h"
#include "korvel/platform/message_box.h"
#include "korvel/polyregion/plydt.h"

namespace korvel::bench {

/// A temporary model file, removed with its object.
class ModelFile {
public:
    /// The library's own form, or vertices and triangles in the Object File Format.
    enum class Form { own, off };

    explicit ModelFile(TMOD3D& model, Form form = Form::own);
    ModelFile(const ModelFile&) = delete;
    ModelFile& operator=(const ModelFile&) = delete;
    ~ModelFile();

    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

/// Throws when the library does not read the file.
void read_model(const std::filesystem::path& path, TMOD3D& model);

/// Vertices and faces of one body, nothing derived: a ball of meridians and parallels with smooth
/// bumps. The triangles are well shaped when the even number `faces` has a divisor near its root.
void bumpy_ball(TMOD3D& model, int faces);

/// The same bumps on a refined icosahedron of 20 · 4^rounds triangles.
void bumpy_refined_ball(TMOD3D& model, int rounds);

/// The six-sided prism of one cell of a chequerboard, as a set to be raised.
void prism_set(PLYDT& set, int cell);

/// Vertices and faces of the prisms of the first `bodies` cells, nothing derived.
void prism_field(TMOD3D& model, int bodies);

/// The same field, written to a file and read into an empty model: everything is derived.
void read_prism_field(TMOD3D& model, int bodies);

/// Suppresses the notices of `create3dmode` during its lifetime.
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
