// The exact classes alone, without the kit: curves, regions, triangles, solids and their section.

#include <cstdio>
#include <exception>

#include "korvel/module/korvel.h"

int main(int argc, char** argv) try {
    FILE* const file = argc == 2 ? std::fopen(argv[1], "w") : nullptr;
    if (file == nullptr) {
        std::fputs("usage: exact_classes MODEL\n", stderr);
        return 1;
    }
    PLYDT::set_trace_files(false);
    korvel::set_message_box_handler([](const char*, unsigned) { return IDOK; }); // no notices

    // A closed outline, a closed hole, and a line across that sticks out at both ends.
    const tagPOINT network[] = {{0, 0},   {90, 0},  {90, 60}, {0, 60},  {0, 0},   {10, 10},
                                {30, 10}, {30, 50}, {10, 50}, {10, 10}, {60, -5}, {50, 65}};
    CArray<tagPOINT> points;
    for (const tagPOINT& point : network) {
        points.Add(point);
    }
    CArray<int> counts;
    counts.Add(5);
    counts.Add(5);
    counts.Add(2);
    CREGION builder;
    builder.SetPtsInfo(points, counts);

    TMOD3D model;
    double height = 10;
    for (const tagPOINT click : {tagPOINT{5, 5}, {70, 30}}) { // a region on either side of the line
        PLYDT region;
        builder.SetSelectRegion(click);
        builder.GetSelectRegion(region);
        region.region_tranglate();
        region.CoordinatesTrans(1, 0, 0, 0, 0, 1, 1, 0, height); // lower and upper points
        model.create3dmode(region);                              // adds a body
        height *= 2;
    }
    for (const BODY3D& body : model.bodies) {
        std::printf("%d faces, volume %g\n", body.polys.GetSize(), body.volume);
    }

    double plane[] = {1, 0.2, 0.3, -40}; // x + 0.2 y + 0.3 z = 40
    TMOD2D section;
    model.get_section(plane, section);
    for (const POLY3D& loop : section.polys) {
        std::printf("a loop of %d corners\n", loop.verts.GetSize());
    }
    model.write_mode(file);
    std::fclose(file);
} catch (const std::exception& error) { // no memory
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
