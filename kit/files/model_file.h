#pragma once

#include <cstdio>
#include <optional>
#include <string>

#include "kit/files/records.h"
#include "kit/files/text_file.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {

/// Reads a body model file into an empty model with `TMOD3D::read_mode`, after checking what that
/// call takes on trust: counts, numbers and indices. Throws an input error at the first thing that
/// does not fit. Bodies take on the colours that the file holds (see `colours_from_parameters`).
///
/// Coordinates pass through single precision. The result names the first whole-numbered coordinate
/// that this changes, if there is one.
std::optional<std::string> read_model(const TextFile& file, TMOD3D& out);

/// Reads vertices, faces and bodies from words and derives nothing. Indices may come out as -1
/// where problems are collected.
RecordLines read_model(WordReader& words, TMOD3D& out);

/// The first coordinate that reading changes.
std::optional<Finding> first_change(const TMOD3D& model, const RecordLines& lines);

/// Writes a model with `TMOD3D::write_mode`, the bodies' colours in their parameters.
void write_model(TMOD3D& model, FILE* out);

/// A model file stores no colours, but three parameters for each body that no computation uses: the
/// command stores hue, saturation and lightness there. Sets the colour of each body from its
/// parameters, if they are a colour: 0 < hue <= 360, saturation and lightness from 0 to 1.
void colours_from_parameters(TMOD3D& model);

} // namespace korvel::kit
