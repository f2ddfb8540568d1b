#include "textfiles/CoordsFileConverter.h"

#include "spatialref/CoordinateConversion.h"

#include <algorithm>

bool CoordsFileConverter::Run(const CoordinateConversion& conversion, const std::vector<CoordsPoint>& points,
                              std::vector<CoordsPoint>* results, std::vector<int>* rows, const Progress& progress)
{
    results->clear();
    rows->clear();
    if (!conversion.IsReady())
        return false;
    results->reserve(points.size());
    rows->reserve(points.size());

    // The route converts arrays; feed it blocks so the copies stay in cache.
    constexpr int kBlock = 4096;
    std::vector<double> north(kBlock), east(kBlock), h(kBlock);
    std::vector<int> success(kBlock);
    const int total = static_cast<int>(points.size());
    for (int first = 0; first < total; first += kBlock) {
        const int n = std::min(kBlock, total - first);
        for (int i = 0; i < n; ++i) {
            const CoordsPoint& p = points[first + i];
            north[i] = p.north;
            east[i] = p.east;
            h[i] = p.h;
            success[i] = 0;
        }
        conversion.Convert(n, north.data(), east.data(), h.data(), success.data());
        for (int i = 0; i < n; ++i) {
            if (!success[i])
                continue;
            CoordsPoint p = points[first + i];
            p.north = north[i];
            p.east = east[i];
            p.h = h[i];
            results->push_back(std::move(p));
            rows->push_back(first + i);
        }
        if (progress)
            progress(first + n, total);
    }
    return true;
}
