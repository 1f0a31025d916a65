// Plane sets and section models: every call.

#include <cstdint>

#include "tests/fuzz/exercise.h"

namespace korvel::test {
namespace {

/// A device that reads every point and draws nothing.
class ReadingDc final : public CDC {
public:
    CPen* SelectObject(CPen* pen) override {
        seen_ += pen != nullptr ? pen->colour : 0;
        return nullptr;
    }
    CBrush* SelectObject(CBrush* brush) override {
        seen_ += brush != nullptr ? brush->colour : 0;
        return nullptr;
    }
    int SetPolyFillMode(int mode) override { return mode; }
    COLORREF GetBkColor() const override { return static_cast<COLORREF>(seen_); }
    COLORREF SetBkColor(COLORREF colour) override { return colour; }
    POINT MoveTo(int x, int y) override { return see({x, y}); }
    BOOL LineTo(int x, int y) override { return see({x, y}).x != 0; }
    BOOL Polygon(const POINT* points, int count) override {
        for (int i = 0; i < count; ++i) {
            see(points[i]);
        }
        return 1;
    }
    BOOL PolyPolygon(const POINT* points, const int* counts, int polygons) override {
        for (int polygon = 0; polygon < polygons; points += counts[polygon++]) {
            Polygon(points, counts[polygon]);
        }
        return 1;
    }

private:
    POINT see(POINT point) {
        seen_ += static_cast<std::uint64_t>(point.x) ^ static_cast<std::uint64_t>(point.y);
        return point;
    }

    std::uint64_t seen_ = 0;
};

/// The seven numbers that map world to device coordinates.
struct View {
    explicit View(Bytes& bytes)
        : ox(bytes.integer()), oy(bytes.integer()), x0(bytes.real()), y0(bytes.real()),
          sx(bytes.real()), sy(bytes.real()), s(bytes.real()) {}

    int ox;
    int oy;
    double x0;
    double y0;
    double sx;
    double sy;
    double s;
};

/// Writes a section unless its file would be huge: each group is written with as many numbers as
/// the last face has corners.
void write_unless_huge(TMOD2D& section) {
    constexpr long long most_numbers = 1'000'000;
    const int faces = section.polys.GetSize();
    const long long corners = faces > 0 ? section.polys[faces - 1].verts.GetSize() : 0;
    if (corners * section.groups.GetSize() <= most_numbers) {
        section.writedate(nowhere());
    }
}

} // namespace

void exercise(TMOD2D& section, Bytes& bytes) {
    ReadingDc dc;
    write_unless_huge(section);
    for (int round = 0; round < 2; ++round) {
        const View view(bytes);
        section.draw_filled_model(bytes.choice(5) - 1, bytes.choice(5) - 1, view.ox, view.oy,
                                  view.x0, view.y0, view.sx, view.sy, view.s, &dc);
    }
    for (POLY3D_CPLX& group : section.groups) {
        group.hue = bytes.real();
        group.saturation = bytes.real();
        group.rgb_color();
        group.cpgn_area(section.polys);
    }
    for (POLY3D& face : section.polys) {
        constexpr int most_corners = 1000; // edge chains cost the square of the corners
        if (face.verts.GetSize() > most_corners || face.lines.GetSize() > most_corners) {
            continue;
        }
        face.find_side(section.lines);
        face.line_to_vert(section.lines);
    }
    TMOD2D copy(section);
    copy.intlmode();
    copy = section;
    copy.Copy(copy);
    copy.set_poly_at_grow();
    copy.RemoveAll();
    copy.writedate(nowhere());
}

void exercise(CCPloy2DRg& set, Bytes& bytes) {
    ReadingDc dc;
    for (int round = 0; round < 2; ++round) {
        const View view(bytes);
        set.Draw_Poly_Line(view.ox, view.oy, view.x0, view.y0, view.sx, view.sy, view.s, &dc);
        set.Draw_Regon(view.ox, view.oy, view.x0, view.y0, view.sx, view.sy, view.s, &dc);
        double point[2] = {bytes.real(), bytes.real()};
        set.search_pt_polyrg(point);
        for (RING& ring : set.ring_list) {
            set.PtInRing(point, ring);
        }
        set.writepolyrg(nowhere());
        CCPloy2DRg copy(set);
        copy.translate_cood(view.ox, view.oy, view.x0, view.y0, view.sx, view.sy, view.s);
        copy.creat_top_rel();
        copy.pt_list.SetSize(copy.pt_list.GetSize() / 2);
        copy.creat_top_rel();
        copy.Draw_Poly_Line(0, 0, 0, 0, 1, 1, 1, &dc);
        if (!set.region_list.IsEmpty()) {
            CCPloy2DRg::PyToRg region(set.region_list[0]);
            edit(region.rings, set.ring_list.GetSize(), bytes);
            copy.ptInPlyRegen(point, region);
            copy.Draw_Poly(0, 0, 0, 0, 1, 1, 1, region, &dc);
        }
        copy.RemoveAll();
        copy.search_pt_polyrg(point);
    }
}

void exercise(PLYDT& set, Bytes& bytes) {
    ReadingDc dc;
    set.creat_top_rel();
    for (PLYDT::PyToRg& region : set.region_list) {
        set.poly_tranglate(region); // sides are current
    }
    set.region_tranglate();
    set.Draw_Trgls(&dc);
    PLYDT copy(set); // rings without points
    copy.region_tranglate();
    copy.Draw_Trgls(&dc);
    const View view(bytes);
    set.CoordinatesTrans(bytes.choice(5), view.ox, view.oy, view.x0, view.y0, view.sx, view.sy,
                         bytes.real(), bytes.real());
}

void edit(CArray<int>& list, int size, Bytes& bytes) {
    const int slot = bytes.choice(list.GetSize() + 1);
    list.SetAtGrow(slot, bytes.index(size));
}

void take_set(PLYDT& set, Bytes& bytes) {
    set.pt_list.SetSize(bytes.choice(24));
    for (VERT2D& point : set.pt_list) {
        point.x = bytes.real();
        point.y = bytes.real();
    }
    const int points = set.pt_list.GetSize();
    set.ring_list.SetSize(bytes.choice(5));
    for (RING& ring : set.ring_list) {
        ring.pts.SetSize(bytes.choice(16));
        // Usually consecutive points, so that rings enclose an area.
        int next = bytes.choice(points);
        for (int& point : ring.pts) {
            point = bytes.chance(8) ? bytes.index(points) : next;
            next = next + 1 < points ? next + 1 : 0;
        }
    }
    set.region_list.SetSize(bytes.choice(4));
    for (PLYDT::PyToRg& region : set.region_list) {
        region.rings.SetSize(bytes.choice(4));
        for (int& ring : region.rings) {
            ring = bytes.index(set.ring_list.GetSize());
        }
    }
    set.trg_list.SetSize(bytes.choice(4));
    for (PLYDT::TRG& triangle : set.trg_list) {
        triangle.va = bytes.index(points);
        triangle.vb = bytes.index(points);
        triangle.vc = bytes.index(points);
    }
}

} // namespace korvel::test
