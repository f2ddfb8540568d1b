// How much building a CoordinateTransformation costs once its pair has been
// seen, against PROJ building the operation from scratch (what an uncached
// library pays for every point), and how the batch seven-parameter shift
// compares with PROJ running the same pipeline directly.

#include "KivGeometry/CoordinateTransformation.h"
#include "KivGeometry/CoordinateTransformation_7Param.h"
#include "KivGeometry/ProjectedCoordinateSystem.h"
#include "KivGeometry/SpatialReferenceFactory.h"

#include <proj.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <vector>

using namespace KivGeometry;
using Clock = std::chrono::steady_clock;

static double micros(Clock::time_point a, Clock::time_point b)
{
    return std::chrono::duration<double, std::micro>(b - a).count();
}

int main()
{
    auto source = SpatialReferenceFactory::CreateSpatialReference(QStringLiteral("EPSG:4214"));
    auto target = SpatialReferenceFactory::CreateSpatialReference(QStringLiteral("EPSG:2436"));
    auto pcs = target.dynamicCast<ProjectedCoordinateSystem>();

    auto t0 = Clock::now();
    { CoordinateTransformation first(source, target); }
    auto t1 = Clock::now();
    std::printf("first construction for the pair:        %10.1f us\n", micros(t0, t1));

    const int rounds = 100000;
    double x = 117.5, y = 30.2;
    t0 = Clock::now();
    for (int i = 0; i < rounds; ++i) {
        CoordinateTransformation ct(source, target);
        double px = x, py = y;
        ct.Transform(1, &px, &py, nullptr);
    }
    t1 = Clock::now();
    const double cached = micros(t0, t1) / rounds;
    std::printf("cached construction + one point:        %10.3f us\n", cached);

    t0 = Clock::now();
    for (int i = 0; i < rounds / 10; ++i) {
        CoordinateTransformation ct(pcs, pcs->GetGeographicCoordinateSystem());
        double px = 548000.0, py = 3375708.0;
        ct.Transform(1, &px, &py, nullptr);
    }
    t1 = Clock::now();
    std::printf("to GetGeographicCoordinateSystem():     %10.3f us\n", micros(t0, t1) / (rounds / 10));

    const QString wkt = target->ExportToWkt();
    t0 = Clock::now();
    for (int i = 0; i < 200; ++i) {
        CoordinateTransformation ct(source, SpatialReferenceFactory::CreateSpatialReference(wkt));
        double px = x, py = y;
        ct.Transform(1, &px, &py, nullptr);
    }
    t1 = Clock::now();
    std::printf("system re-created from WKT each time:   %10.1f us\n", micros(t0, t1) / 200);

    PJ_CONTEXT* ctx = proj_context_create();
    proj_log_level(ctx, PJ_LOG_NONE);
    const int uncachedRounds = 20;
    t0 = Clock::now();
    for (int i = 0; i < uncachedRounds; ++i) {
        PJ* op = proj_create_crs_to_crs(ctx, "EPSG:4214", "EPSG:2436", nullptr);
        PJ* norm = proj_normalize_for_visualization(ctx, op);
        proj_trans(norm, PJ_FWD, proj_coord(x, y, 0, 0));
        proj_destroy(norm);
        proj_destroy(op);
    }
    t1 = Clock::now();
    const double uncached = micros(t0, t1) / uncachedRounds;
    std::printf("PROJ building the operation each time:  %10.1f us\n", uncached);
    std::printf("ratio cached / PROJ-from-scratch:       %10.6f\n\n", cached / uncached);

    // Seven parameters on 1,000,000 points.
    const int n = 1000000;
    const double p[7] = {-12.3, -130.9, -83.5, 1.2, -2.8, 4.5, 3.2e-6};
    std::vector<double> b(n), l(n), h(n);
    for (int i = 0; i < n; ++i) {
        b[size_t(i)] = 25.0 + (i % 1000) * 0.01;
        l[size_t(i)] = 115.5 + (i / 1000) * 0.003;
        h[size_t(i)] = 50.0;
    }
    std::vector<double> b2 = b, l2 = l, h2 = h;
    CoordinateTransformation_7Param seven;
    seven.SetCT7Param(p[0], p[1], p[2], p[3], p[4], p[5], p[6]);
    seven.SetSourceSpheroid(6378245.0, 0, 1.0 / 298.3);
    seven.SetTargetSpheroid(6378137.0, 0, 1.0 / 298.257223563);
    t0 = Clock::now();
    seven.ConvertBLHToBLH(n, b2.data(), l2.data(), h2.data());
    t1 = Clock::now();
    const double ours = micros(t0, t1) / 1e6;

    PJ* pipeline = proj_create(ctx, "+proj=pipeline +step +proj=unitconvert +xy_in=deg +xy_out=rad"
                                    " +step +proj=cart +a=6378245 +rf=298.3 +step +proj=helmert +x=-12.3 +y=-130.9"
                                    " +z=-83.5 +rx=1.2 +ry=-2.8 +rz=4.5 +s=3.2 +convention=coordinate_frame"
                                    " +step +inv +proj=cart +ellps=WGS84 +step +proj=unitconvert +xy_in=rad +xy_out=deg");
    std::vector<double> b3 = b, l3 = l, h3 = h;
    t0 = Clock::now();
    proj_trans_generic(pipeline, PJ_FWD, l3.data(), sizeof(double), size_t(n), b3.data(), sizeof(double), size_t(n),
                       h3.data(), sizeof(double), size_t(n), nullptr, 0, 0);
    t1 = Clock::now();
    const double direct = micros(t0, t1) / 1e6;
    double largest = 0;
    for (int i = 0; i < n; ++i)
        largest = std::max(largest, std::max(std::fabs(b2[size_t(i)] - b3[size_t(i)]), std::fabs(l2[size_t(i)] - l3[size_t(i)])));
    std::printf("seven parameters, 1e6 points:           %10.3f s\n", ours);
    std::printf("PROJ pipeline directly, 1e6 points:     %10.3f s\n", direct);
    std::printf("ratio ours / PROJ:                      %10.3f\n", ours / direct);
    std::printf("largest difference:                     %10.3g degrees\n", largest);
    proj_destroy(pipeline);
    proj_context_destroy(ctx);
    return 0;
}
