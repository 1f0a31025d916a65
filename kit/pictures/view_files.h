#pragma once

#include <filesystem>
#include <vector>

#include "kit/base/context.h"
#include "kit/pictures/model_view.h"
#include "kit/pictures/offscreen_renderer.h"
#include "korvel/module/korvel.h"

// Views of models as PNG files. Only in a kit with EGL (KORVEL_HAS_EGL).

namespace korvel::kit {

/// Throws an `Error` unless a view can be written to the file: its extension is .png, and the place
/// can be written.
void check_view_file(const std::filesystem::path& file);

/// The same for the numbered files of a turntable.
void check_turntable_files(const std::filesystem::path& file, int count);

/// Writes a picture of the model as PNG, completely or not at all. Throws an `Error`: of kind input
/// for another extension and for a model too small or too large for single precision, of kind
/// output where there is no OpenGL or the picture cannot be written.
void write_picture(const Solids& solids, const std::filesystem::path& file,
                   const ViewOptions& options = {});
void write_picture(const TMOD3D& model, const std::filesystem::path& file,
                   const ViewOptions& options = {});

/// Writes `count` pictures of the model as it turns about its z axis once, all in one scale,
/// completely or not at all. `options.part` and `options.marked` have no effect. The files are
/// numbered from 0: ball-00.png, ball-01.png … for ball.png. Afterwards the model is turned as
/// before. Throws like `write_picture`.
void write_turntable(Solids& solids, const std::filesystem::path& file, int count,
                     const ViewOptions& options = {}, const Context& context = {});
void write_turntable(TMOD3D& model, const std::filesystem::path& file, int count,
                     const ViewOptions& options = {}, const Context& context = {});

/// The name of a file in a numbered series: with number 7 in two digits "ball.png" becomes
/// "ball-07.png".
std::filesystem::path numbered_file(const std::filesystem::path& file, int number, int digits);

/// The names of the files of a turntable, in their order.
std::vector<std::filesystem::path> turntable_files(const std::filesystem::path& file, int count);

} // namespace korvel::kit
