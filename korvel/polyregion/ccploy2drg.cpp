// The records of a polygon-region set, its derived sides and its file.

#include "korvel/polyregion/ccploy2drg.h"

#include "korvel/base/text_reader.h"
#include "korvel/plane/line_equation.h"
#include "korvel/polyregion/side_topology.h"

using korvel::Progress;

CCPloy2DRg::CCPloy2DRg(const CCPloy2DRg& src) {
    *this = src;
}

CCPloy2DRg::~CCPloy2DRg() {
    RemoveAll();
}

CCPloy2DRg& CCPloy2DRg::operator=(const CCPloy2DRg& src) {
    if (this != &src) {
        RemoveAll();
        pt_list.Copy(src.pt_list);
        side_list.Copy(src.side_list);
        ring_list.Copy(src.ring_list);
        region_list.Copy(src.region_list);
    }
    return *this;
}

void CCPloy2DRg::Copy(const CCPloy2DRg& src) {
    *this = src;
}

CCPloy2DRg::PyToRg& CCPloy2DRg::PyToRg::operator=(const PyToRg& src) {
    if (this != &src) {
        tag0 = src.tag0;
        tag1 = src.tag1;
        std::copy(std::begin(src.attr), std::end(src.attr), std::begin(attr));
        red = src.red;
        green = src.green;
        blue = src.blue;
        rings.Copy(src.rings);
    }
    return *this;
}

void CCPloy2DRg::RemoveAll() {
    pt_list.RemoveAll();
    side_list.RemoveAll();
    ring_list.RemoveAll();
    region_list.RemoveAll();
}

void CCPloy2DRg::translate_cood(int ox, int oy, double x0, double y0, double sx, double sy,
                                double s) {
    for (VERT2D& pt : pt_list) {
        pt.x = (pt.x - ox) * sx / s + x0;
        pt.y = (pt.y - oy) * sy / s + y0;
    }
}

void CCPloy2DRg::creat_top_rel() {
    korvel::derive_sides(*this, [&](int a, int b) {
        const korvel::LineEquation line = korvel::side_line_through(
            korvel::plane_point(pt_list[a]), korvel::plane_point(pt_list[b]));
        LINE2D side;
        side.p0 = a;
        side.p1 = b;
        side.a = line.a;
        side.b = line.b;
        side.c = line.c;
        return side;
    });
}

void CCPloy2DRg::readpolyrg(FILE* stream) {
    if (stream == nullptr) {
        return;
    }
    korvel::TextReader reader(stream);
    int points = 0;
    if (!reader.read(points) || points < 1) {
        return;
    }
    const auto read_point = [&](VERT2D& pt) {
        if (!reader.read(pt.x)) {
            return Progress::nothing;
        }
        return reader.read(pt.y) ? Progress::all : Progress::part;
    };
    const auto read_rings = [&] {
        int rings = 0;
        return reader.read(rings) &&
               (rings < 1 || korvel::read_records(rings, ring_list, [&](RING& ring) {
                    return korvel::read_counted_ints(reader, ring.pts);
                }));
    };
    const auto read_regions = [&] {
        int regions = 0;
        return reader.read(regions) &&
               (regions < 1 || korvel::read_records(regions, region_list, [&](PyToRg& region) {
                    return korvel::read_counted_ints(reader, region.rings);
                }));
    };
    if (korvel::read_records(points, pt_list, read_point) && read_rings()) {
        read_regions();
    }
    creat_top_rel();
}

void CCPloy2DRg::writepolyrg(FILE* stream) {
    if (stream == nullptr) {
        return;
    }
    const auto write_list = [&](const CArray<int>& list) {
        std::fprintf(stream, "%d\n", list.GetSize());
        for (const int index : list) {
            std::fprintf(stream, "%d ", index); // a blank behind the last one too
        }
        std::fprintf(stream, "\n");
    };
    std::fprintf(stream, "%d\n", pt_list.GetSize());
    if (pt_list.IsEmpty()) {
        return;
    }
    for (const VERT2D& pt : pt_list) {
        std::fprintf(stream, "%f %f\n", pt.x, pt.y);
    }
    std::fprintf(stream, "%d\n", ring_list.GetSize());
    for (const RING& ring : ring_list) {
        write_list(ring.pts);
    }
    std::fprintf(stream, "%d\n", region_list.GetSize());
    for (const PyToRg& region : region_list) {
        write_list(region.rings);
    }
}
