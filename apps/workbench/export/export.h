#pragma once

#include <filesystem>

#include <QImage>
#include <QString>

#include "apps/workbench/document/find_map.h"
#include "kit/kit.h"

namespace korvel::workbench {

// What of a document is written for other programs. The suffix of the file selects the format:
// that of a picture, of features or of a mesh, and any other the format of korvel. Files are
// complete or absent. Each throws a kit::Error.

/// The regions of a map: a picture in distinct colours, polygons with their attributes and levels,
/// or a region file.
void export_regions(const FoundMap& found, const std::filesystem::path& file);

/// Curves: lines with their numbers, or a curve file.
void export_curves(const kit::Network& network, const std::filesystem::path& file);

/// A section: a picture, drawn with these options, polygons of the bodies with their areas, or a
/// section file.
void export_section(const kit::Section& section, const kit::SectionPictureOptions& options,
                    const std::filesystem::path& file);

/// An image, as PNG.
void export_image(const QImage& image, const std::filesystem::path& file);

// The formats of each for a dialog, separated as QFileDialog takes them.

QString region_formats();
QString curve_formats();
QString section_formats();
QString solid_formats(); ///< that `kit::write_solids` writes

} // namespace korvel::workbench
