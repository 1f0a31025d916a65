#include "apps/workbench/project/project_json.h"

#include <algorithm>

#include <QCoreApplication>
#include <QJsonDocument>

#include "apps/workbench/project/json_facts.h"

namespace korvel::workbench {
namespace {

constexpr int version = 1;
constexpr const char* format = "korvel project";

QJsonObject map_object(const Project& project, CurveUnits units);
QJsonObject solids_object(const Project& project);
QJsonObject body_object(const kit::StoredBody& body, bool is_hidden);
QJsonObject placement_object(const kit::Placement& placement);
QJsonArray array_of(std::initializer_list<double> numbers);
QString text_of(const std::string& text);

CurvesFacts read_map(const JsonFacts& facts, Project& project);
RegionNote read_note(const JsonFacts& facts);
Background read_background(const JsonFacts& facts);
void read_solids(const JsonFacts& facts, Project& project);
kit::StoredBody read_body(const JsonFacts& facts);
kit::Placement read_placement(const JsonFacts& facts);
void read_plane(const JsonFacts& facts, Project& project);

} // namespace

std::string project_json(const Project& project, CurveUnits units) {
    QJsonObject whole = {
        {"format", format},
        {"version", version},
        {"program", QCoreApplication::applicationName() + QLatin1Char(' ') +
                        QCoreApplication::applicationVersion()},
        {"map", map_object(project, units)},
    };
    if (!project.solids.bodies.empty()) {
        whole.insert("solids", solids_object(project));
    }
    if (project.plane) {
        const kit::Plane& plane = *project.plane;
        whole.insert("plane", array_of({plane.a, plane.b, plane.c, plane.d}));
    }
    if (!project.saved_as.empty()) {
        whole.insert("saved_as", text_of(project.saved_as));
    }
    return QJsonDocument(whole).toJson().toStdString();
}

CurvesFacts read_project_json(const std::string& json, const std::string& name, Project& project) {
    const JsonFacts facts = JsonFacts::parse(json, name);
    if (facts.text("format") != format) {
        facts.fail("the format is '" + facts.text("format") + "' instead of '" + format + "'");
    }
    if (const int found = facts.whole("version"); found != version) {
        facts.fail("version " + std::to_string(found) + " of the format is not known, only " +
                   std::to_string(version));
    }
    if (facts.has("solids")) {
        read_solids(facts.object("solids"), project);
    }
    if (facts.has("plane")) {
        read_plane(facts, project);
    }
    if (facts.has("saved_as")) {
        project.saved_as = facts.text("saved_as");
    }
    return read_map(facts.object("map"), project);
}

namespace {

QJsonObject map_object(const Project& project, CurveUnits units) {
    QJsonObject map = {{"placement", placement_object(project.curves.placement())},
                       {"coordinates", units == CurveUnits::user ? "user" : "steps"}};
    if (project.tolerance) {
        map.insert("tolerance", *project.tolerance);
    }
    QJsonArray notes;
    for (const RegionNote& note : project.notes) {
        QJsonObject object = {{"place", array_of({note.place[0], note.place[1]})}};
        if (!note.name.empty()) {
            object.insert("name", text_of(note.name));
        }
        if (note.levels) {
            object.insert("levels", array_of({note.levels->low, note.levels->high}));
        }
        notes.append(object);
    }
    if (!notes.isEmpty()) {
        map.insert("regions", notes);
    }
    if (const Background& background = project.background; !background.file.isEmpty()) {
        QJsonArray to_user;
        for (const double number : background.to_user) {
            to_user.append(number);
        }
        map.insert("background", QJsonObject{{"file", background.file}, {"to_user", to_user}});
    }
    return map;
}

QJsonObject solids_object(const Project& project) {
    QJsonArray bodies;
    for (const kit::StoredBody& body : project.solids.bodies) {
        const bool is_hidden = project.hidden.contains(static_cast<int>(bodies.size()));
        bodies.append(body_object(body, is_hidden));
    }
    return {{"placement", placement_object(project.solids.mesh.placement)},
            {"view", array_of({project.view.turn, project.view.tilt})},
            {"bodies", bodies}};
}

QJsonObject body_object(const kit::StoredBody& body, bool is_hidden) {
    const kit::BodyColour& colour = body.colour;
    QJsonObject object = {
        {"colour", array_of({colour.hue, colour.saturation, colour.lightness, colour.alpha})}};
    if (!body.name.empty()) {
        object.insert("name", text_of(body.name));
    }
    if (body.faces.empty()) {
        object.insert("faces", body.face_count);
    } else {
        QJsonArray faces;
        for (const int face : body.faces) {
            faces.append(face);
        }
        object.insert("faces", faces);
    }
    if (is_hidden) {
        object.insert("hidden", true);
    }
    return object;
}

QJsonObject placement_object(const kit::Placement& placement) {
    const kit::Grid& grid = placement.grid;
    const kit::Point3 origin = grid.origin();
    QJsonObject object = {{"step", text_of(grid.step_text())},
                          {"origin", array_of({origin[0], origin[1], origin[2]})}};
    if (grid.is_y_down()) {
        object.insert("down", true);
    }
    if (!placement.reference.empty()) {
        object.insert("reference", text_of(placement.reference));
    }
    return object;
}

QJsonArray array_of(std::initializer_list<double> numbers) {
    QJsonArray array;
    for (const double number : numbers) {
        array.append(number);
    }
    return array;
}

QString text_of(const std::string& text) {
    return QString::fromStdString(text);
}

CurvesFacts read_map(const JsonFacts& facts, Project& project) {
    const std::string coordinates = facts.text("coordinates");
    if (coordinates != "user" && coordinates != "steps") {
        facts.fail("the coordinates are '" + coordinates + "' instead of 'user' or 'steps'");
    }
    if (facts.has("tolerance")) {
        project.tolerance = facts.number("tolerance");
    }
    if (facts.has("regions")) {
        for (const JsonFacts& note : facts.objects("regions")) {
            project.notes.push_back(read_note(note));
        }
    }
    if (facts.has("background")) {
        project.background = read_background(facts.object("background"));
    }
    return {read_placement(facts.object("placement")),
            coordinates == "user" ? CurveUnits::user : CurveUnits::steps};
}

RegionNote read_note(const JsonFacts& facts) {
    RegionNote note;
    const std::vector<double> place = facts.numbers("place", 2);
    note.place = {place[0], place[1]};
    if (facts.has("name")) {
        note.name = facts.text("name");
    }
    if (facts.has("levels")) {
        const std::vector<double> levels = facts.numbers("levels", 2);
        note.levels = kit::Levels{levels[0], levels[1]};
    }
    return note;
}

Background read_background(const JsonFacts& facts) {
    Background background;
    background.file = text_of(facts.text("file"));
    const std::vector<double> to_user =
        facts.numbers("to_user", static_cast<int>(background.to_user.size()));
    std::ranges::copy(to_user, background.to_user.begin());
    return background;
}

void read_solids(const JsonFacts& facts, Project& project) {
    project.solids.mesh.placement = read_placement(facts.object("placement"));
    const std::vector<double> view = facts.numbers("view", 2);
    project.view = {view[0], view[1]};
    for (const JsonFacts& body : facts.objects("bodies")) {
        if (body.has("hidden") && body.truth("hidden")) {
            project.hidden.insert(static_cast<int>(project.solids.bodies.size()));
        }
        project.solids.bodies.push_back(read_body(body));
    }
}

kit::StoredBody read_body(const JsonFacts& facts) {
    constexpr int channels = 4;
    kit::StoredBody body;
    const std::vector<double> colour = facts.numbers("colour", channels);
    body.colour = {colour[0], colour[1], colour[2], colour[3]};
    if (facts.has("name")) {
        body.name = facts.text("name");
    }
    if (facts.is_array("faces")) {
        body.faces = facts.wholes("faces");
        body.face_count = static_cast<int>(body.faces.size());
    } else {
        body.face_count = facts.whole("faces");
    }
    return body;
}

kit::Placement read_placement(const JsonFacts& facts) {
    const std::string step = facts.text("step");
    const std::vector<double> origin = facts.numbers("origin", 3);
    std::optional<kit::Grid> grid = kit::Grid::parse(step, {origin[0], origin[1], origin[2]});
    if (!grid) {
        facts.fail("the step '" + step + "' is no number above 0");
    }
    grid->turn_y_down(facts.has("down") && facts.truth("down"));
    return {*grid, facts.has("reference") ? facts.text("reference") : std::string()};
}

void read_plane(const JsonFacts& facts, Project& project) {
    constexpr int coefficients = 4;
    const std::vector<double> numbers = facts.numbers("plane", coefficients);
    project.plane = kit::Plane{numbers[0], numbers[1], numbers[2], numbers[3]};
    if (project.plane->normal_length() <= 0) {
        facts.fail("the plane has no normal");
    }
}

} // namespace
} // namespace korvel::workbench
