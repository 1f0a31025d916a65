#include "kit/maps/front.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <vector>

#include "kit/base/exact_predicates.h"

namespace korvel::kit {
namespace {

// Ends a call of the exact class.
struct FrontFails {};

// The directed sides of triangles that all turn alike and of what surrounds them, each at most
// once. Where each also occurs in reverse, the boundary of all triangles is that of the region, so
// that every point of the region is in one triangle and no other point is.
class DirectedSides {
public:
    explicit DirectedSides(int sides)
        : slots_(std::bit_ceil(2 * static_cast<std::size_t>(sides) + 2), empty) {}

    // False when the side is there.
    bool add(int from, int to) {
        std::uint64_t& slot = find(from, to);
        if (slot != empty) {
            return false;
        }
        slot = key(from, to);
        lone_ += find(to, from) == empty ? 1 : -1;
        if (2 * ++count_ > slots_.size()) {
            grow();
        }
        return true;
    }

    bool are_paired() const { return lone_ == 0; }

private:
    static constexpr std::uint64_t empty = ~std::uint64_t{0};

    static std::uint64_t key(int from, int to) {
        return std::uint64_t{static_cast<std::uint32_t>(from)} << 32U |
               static_cast<std::uint32_t>(to);
    }

    std::uint64_t& find(int from, int to) {
        const std::uint64_t wanted = key(from, to);
        constexpr std::uint64_t golden = 0x9E3779B97F4A7C15; // 2^64 over the golden ratio
        std::size_t slot = (wanted * golden) >> 32U;
        while (true) {
            slot &= slots_.size() - 1;
            if (slots_[slot] == wanted || slots_[slot] == empty) {
                return slots_[slot];
            }
            ++slot;
        }
    }

    void grow() {
        std::vector<std::uint64_t> old(2 * slots_.size(), empty);
        old.swap(slots_);
        for (const std::uint64_t side : old) {
            if (side != empty) {
                find(static_cast<int>(side >> 32U), static_cast<int>(side & 0xFFFFFFFFU)) = side;
            }
        }
    }

    std::vector<std::uint64_t> slots_; // open addressing
    std::size_t count_ = 0;
    int lone_ = 0; // sides whose reverse is missing
};

// Looks at triangles as they come.
class FrontWatch {
public:
    FrontWatch(const PLYDT& set, int region, bool may_be_flat);

    // False once the triangles cannot cover the region any more.
    bool can_cover();
    bool covers() { return can_cover() && sides_.are_paired(); }

private:
    static int side_count(const PLYDT& set, int region);
    bool add(const PLYDT::TRG& triangle);

    const PLYDT& set_;
    DirectedSides sides_;
    int seen_ = 0;
    int least_turn_;
    bool can_cover_ = true;
};

} // namespace

bool cover_by_front(PLYDT& set, int region, bool may_be_flat, const Context& context) {
    if (!set.trg_list.IsEmpty()) {
        set.trg_list.RemoveAll();
    }
    FrontWatch watch(set, region, may_be_flat);
    if (!watch.can_cover()) {
        return false;
    }
    const TraceFilesOverride no_traces(false);
    const CheckPointScope checks([&](const char* /*stage*/, long long /*done*/, long long /*all*/) {
        context.stop_if_requested("triangulating regions");
        if (!watch.can_cover()) {
            throw FrontFails();
        }
    });
    try {
        set.poly_tranglate(set.region_list[region]);
    } catch (const FrontFails&) {
        return false; // the call has changed the triangles alone
    }
    return watch.covers();
}

namespace {

// All rings turn alike, so the outside is on the other side of a hole's sides.
FrontWatch::FrontWatch(const PLYDT& set, int region, bool may_be_flat)
    : set_(set), sides_(side_count(set, region)), least_turn_(may_be_flat ? 0 : 1) {
    const CArray<int>& rings = set.region_list[region].rings;
    for (int i = 0; i < rings.GetSize(); ++i) {
        const CArray<int>& ring = set.ring_list[rings[i]].pts;
        for (int k = 0; k < ring.GetSize(); ++k) {
            const int from = ring[k];
            const int to = ring[k + 1 < ring.GetSize() ? k + 1 : 0];
            can_cover_ = can_cover_ && (i == 0 ? sides_.add(to, from) : sides_.add(from, to));
        }
    }
}

// Of a region of n points and h holes there are n + 2h - 2 triangles.
int FrontWatch::side_count(const PLYDT& set, int region) {
    int points = 0;
    for (const int ring : set.region_list[region].rings) {
        points += set.ring_list[ring].pts.GetSize() + 2;
    }
    return 4 * points;
}

bool FrontWatch::can_cover() {
    while (can_cover_ && seen_ < set_.trg_list.GetSize()) {
        can_cover_ = add(set_.trg_list[seen_++]);
    }
    return can_cover_;
}

bool FrontWatch::add(const PLYDT::TRG& t) {
    const auto corner = [&](int point) {
        return PlanePoint{set_.pt_list[point].x, set_.pt_list[point].y};
    };
    return turn(corner(t.va), corner(t.vb), corner(t.vc)) >= least_turn_ &&
           sides_.add(t.va, t.vb) && sides_.add(t.vb, t.vc) && sides_.add(t.vc, t.va);
}

} // namespace
} // namespace korvel::kit
