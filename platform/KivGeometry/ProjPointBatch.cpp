#include "ProjPointBatch.h"

#include <algorithm>
#include <cmath>

namespace KivGeometry {

namespace {
constexpr int kBatch = 512;
}

bool ProjPointBatch::transform(PJ* pj, PJ_DIRECTION direction, int count,
                               const double* inX, const double* inY, const double* inZ,
                               double* outX, double* outY, double* outZ, int* success)
{
    if (count <= 0)
        return true;
    if (!pj || !inX || !inY || !outX || !outY || (inZ && !outZ)) {
        if (success)
            std::fill(success, success + count, 0);
        return false;
    }
    double bx[kBatch];
    double by[kBatch];
    double bz[kBatch];
    bool all = true;
    for (int start = 0; start < count; start += kBatch) {
        const int n = std::min(kBatch, count - start);
        std::copy(inX + start, inX + start + n, bx);
        std::copy(inY + start, inY + start + n, by);
        if (inZ)
            std::copy(inZ + start, inZ + start + n, bz);
        proj_trans_generic(pj, direction, bx, sizeof(double), size_t(n), by, sizeof(double), size_t(n),
                           inZ ? bz : nullptr, inZ ? sizeof(double) : 0, inZ ? size_t(n) : 0, nullptr, 0, 0);
        for (int i = 0; i < n; ++i) {
            // PROJ marks a failed point with HUGE_VAL.
            const bool ok = std::isfinite(bx[i]) && std::isfinite(by[i]) && (!inZ || std::isfinite(bz[i]));
            if (ok) {
                outX[start + i] = bx[i];
                outY[start + i] = by[i];
                if (inZ)
                    outZ[start + i] = bz[i];
            } else {
                all = false;
            }
            if (success)
                success[start + i] = ok ? 1 : 0;
        }
    }
    proj_errno_reset(pj);
    return all;
}

} // namespace KivGeometry
