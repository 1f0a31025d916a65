#include "apps/workbench/solid/pick_report.h"

#include <cmath>

#include <QCoreApplication>
#include <QStringList>

namespace korvel::workbench {
namespace {

QString body_text(const kit::Body& body);
QString number(double value);

QString pick_text(const char* text) {
    return QCoreApplication::translate("PickReport", text);
}

} // namespace

QString pick_line(const kit::Solids& solids, const kit::Pick& pick) {
    return pick_text("%1, face %2, edge %3, vertex %4, at %5")
        .arg(body_text(solids[pick.body]))
        .arg(pick.face)
        .arg(pick.edge)
        .arg(pick.vertex)
        .arg(point_text(pick.point));
}

QString pick_report(const kit::Solids& solids, const kit::Pick& pick) {
    const kit::Face face = solids.faces()[pick.face];
    QStringList corners;
    for (const int vertex : face.vertices()) {
        corners.append(QString::number(vertex));
    }
    const std::array<int, 2> ends = solids.edge(pick.edge);
    const kit::Point3 start = solids.vertex(ends[0]);
    const kit::Point3 end = solids.vertex(ends[1]);
    const double length = std::hypot(end[0] - start[0], end[1] - start[1], end[2] - start[2]);
    return QStringList{
        body_text(solids[pick.body]),
        pick_text("Face %1: vertices %2; area %3")
            .arg(pick.face)
            .arg(corners.join(QStringLiteral(", ")))
            .arg(number(face.area())),
        pick_text("Edge %1: from vertex %2 to %3; length %4")
            .arg(pick.edge)
            .arg(ends[0])
            .arg(ends[1])
            .arg(number(length)),
        pick_text("Vertex %1: %2").arg(pick.vertex).arg(point_text(solids.vertex(pick.vertex))),
        pick_text("Point: %1").arg(point_text(pick.point)),
    }
        .join(QLatin1Char('\n'));
}

QString point_text(const kit::Point3& point) {
    return QStringLiteral("%1, %2, %3").arg(number(point[0]), number(point[1]), number(point[2]));
}

namespace {

QString body_text(const kit::Body& body) {
    const QString name = QString::fromStdString(body.name());
    return name.isEmpty() ? pick_text("Body %1").arg(body.index())
                          : pick_text("Body %1 “%2”").arg(body.index()).arg(name);
}

QString number(double value) {
    constexpr int digits = 8;
    return QString::number(value, 'g', digits);
}

} // namespace
} // namespace korvel::workbench
