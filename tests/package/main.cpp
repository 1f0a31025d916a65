// What a host does first: digitised curves in, regions out. Two squares that share a side.

#include <cstdio>

#include <korvel/module/korvel.h>

int main() {
    CArray<tagPOINT> points;
    CArray<int> counts;
    for (const tagPOINT point : {POINT{0, 0}, {200, 0}, {200, 100}, {0, 100}, {0, 0}}) {
        points.Add(point);
    }
    counts.Add(5);
    points.Add({100, 0});
    points.Add({100, 100});
    counts.Add(2);

    CREGION network;
    network.SetPtsInfo(points, counts);
    CCPloy2DRg regions;
    network.GetAllRegion(regions);

    double inside[] = {50, 50};
    double outside[] = {250, 50};
    std::printf("%d regions\n", regions.region_list.GetSize());
    return regions.region_list.GetSize() == 2 && regions.search_pt_polyrg(inside) >= 0 &&
                   regions.search_pt_polyrg(outside) == -1
               ? 0
               : 1;
}
