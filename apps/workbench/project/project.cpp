#include "apps/workbench/project/project.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <utility>

#include <QFile>
#include <QTemporaryDir>

#include "apps/workbench/project/project_json.h"
#include "apps/workbench/project/zip_archive.h"

namespace korvel::workbench {
namespace {

constexpr const char* kind_entry = "mimetype";
constexpr const char* kind_text = "application/x-korvel-project";
constexpr const char* facts_entry = "project.json";
constexpr const char* curves_entry = "map.curves";
constexpr const char* solids_entry = "solids.ply";

CurveUnits units_of(const Curves& curves);
std::string curves_text(const Curves& curves, CurveUnits units);
std::string ply_bytes(const kit::Mesh& mesh);
Curves read_curves(const kit::TextFile& file, const CurvesFacts& facts);
kit::Mesh read_mesh(const kit::TextFile& file, const kit::Placement& placement,
                    const kit::Context& context);

} // namespace

void write_project(const Project& project, const std::filesystem::path& file) {
    const CurveUnits units = units_of(project.curves);
    std::vector<ZipEntry> entries = {
        {kind_entry, kind_text, false},
        {facts_entry, project_json(project, units)},
        {curves_entry, curves_text(project.curves, units)},
    };
    if (!project.solids.bodies.empty()) {
        entries.push_back({solids_entry, ply_bytes(project.solids.mesh)});
    }
    write_zip(entries, file);
}

Project read_project(const std::filesystem::path& file, const kit::Context& context) {
    ZipReader zip(file);
    const std::string name = kit::text_of(file) + ": ";
    if (!zip.contains(facts_entry)) {
        zip.fail("not a project of korvel: the entry project.json is missing");
    }
    Project project;
    const CurvesFacts facts =
        read_project_json(zip.read(facts_entry, context), name + facts_entry, project);
    project.curves =
        read_curves(kit::TextFile(name + curves_entry, zip.read(curves_entry, context)), facts);
    if (!project.solids.bodies.empty()) {
        project.solids.mesh =
            read_mesh(kit::TextFile(name + solids_entry, zip.read(solids_entry, context)),
                      project.solids.mesh.placement, context);
    }
    return project;
}

bool is_project_file(const std::filesystem::path& file) {
    return QString::fromStdString(kit::text_of(file)).endsWith(".korvel", Qt::CaseInsensitive);
}

namespace {

CurveUnits units_of(const Curves& curves) {
    const auto returns = [&](const kit::GridPoint& point) {
        const kit::GridPoint there = curves.nearest(curves.to_user(point));
        return there.x == point.x && there.y == point.y;
    };
    return std::ranges::all_of(
               curves, [&](const Curve& curve) { return std::ranges::all_of(curve, returns); })
               ? CurveUnits::user
               : CurveUnits::steps;
}

std::string curves_text(const Curves& curves, CurveUnits units) {
    std::string text = std::to_string(curves.size()) + '\n';
    for (const Curve& curve : curves) {
        text.append(std::to_string(curve.size())).append("\n");
        for (const kit::GridPoint& point : curve) {
            const kit::Point2 place =
                units == CurveUnits::user
                    ? curves.to_user(point)
                    : kit::Point2{static_cast<double>(point.x), static_cast<double>(point.y)};
            text.append(kit::plain_digits(place[0])).append(" ");
            text.append(kit::plain_digits(place[1])).append("\n");
        }
    }
    return text;
}

// The kit writes meshes into files only.
std::string ply_bytes(const kit::Mesh& mesh) {
    const QTemporaryDir folder;
    if (!folder.isValid()) {
        throw kit::output_error(folder.errorString().toStdString());
    }
    const QString name = folder.filePath(QStringLiteral("solids.ply"));
    kit::write_mesh(mesh, kit::path_of(name.toStdString()), kit::MeshFormat::ply);
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly)) {
        throw kit::output_error(name.toStdString() + ": " + file.errorString().toStdString());
    }
    return file.readAll().toStdString();
}

Curves read_curves(const kit::TextFile& file, const CurvesFacts& facts) {
    kit::WordReader words(file);
    kit::CurveNetwork read;
    kit::read_curves(words, read);
    kit::Network network;
    network.set_placement(facts.placement);
    int next = 0;
    for (const int count : read.counts) {
        Curve curve;
        curve.reserve(static_cast<std::size_t>(count));
        for (int end = next + count; next < end; ++next) {
            const auto index = static_cast<std::size_t>(next);
            const kit::Point2 place =
                read.decimals.empty() ? kit::to_point(read.pts[next]) : read.decimals[index];
            curve.push_back(facts.units == CurveUnits::user ? facts.placement.grid.nearest(place)
                                                            : kit::Grid().nearest(place));
        }
        network.add_curve(curve);
    }
    return Curves(network);
}

kit::Mesh read_mesh(const kit::TextFile& file, const kit::Placement& placement,
                    const kit::Context& context) {
    const auto stream = kit::stream_of(file);
    kit::Mesh mesh = kit::read_mesh(stream.get(), file.name, kit::MeshFormat::ply, context);
    mesh.placement = placement;
    return mesh;
}

} // namespace
} // namespace korvel::workbench
