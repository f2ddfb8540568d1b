#include "KivGeometry/CoordinateTransformation.h"

#include "ProjObjectPool.h"
#include "ProjPointBatch.h"
#include "SpatialReferencePrivate.h"

#include <cmath>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace KivGeometry {

class CoordinateTransformationPrivate
{
public:
    std::shared_ptr<ProjObjectPool::Entry> operation;
    std::uint64_t source = 0;
    std::uint64_t target = 0;
};

namespace {

struct PjHolder
{
    explicit PjHolder(PJ* p) : pj(p) {}
    ~PjHolder() { proj_destroy(pj); }
    PjHolder(const PjHolder&) = delete;
    PjHolder& operator=(const PjHolder&) = delete;
    PJ* pj;
};

// PROJ's best operation between two systems, in traditional GIS axis order.
PJ* buildOperation(PJ_CONTEXT* ctx, std::uint64_t source, std::uint64_t target)
{
    PjHolder s(proj_create(ctx, SpatialReferencePrivate::canonicalText(source).c_str()));
    PjHolder t(proj_create(ctx, SpatialReferencePrivate::canonicalText(target).c_str()));
    if (!s.pj || !t.pj)
        return nullptr;
    PjHolder op(proj_create_crs_to_crs_from_pj(ctx, s.pj, t.pj, nullptr, nullptr));
    if (!op.pj)
        return nullptr;
    return proj_normalize_for_visualization(ctx, op.pj);
}

/// Which of PROJ's candidate operations for a pair change no datum.
enum class Ballpark { None, Some, All };

/// The candidates as PROJ weighs them for points: anywhere in either
/// system's area, and only operations whose grids are installed. Calls
/// `each` with every candidate; the caller does not own it.
template <class Each>
void forEachCandidate(PJ_CONTEXT* ctx, std::uint64_t source, std::uint64_t target, Each&& each)
{
    PjHolder s(proj_create(ctx, SpatialReferencePrivate::canonicalText(source).c_str()));
    PjHolder t(proj_create(ctx, SpatialReferencePrivate::canonicalText(target).c_str()));
    if (!s.pj || !t.pj)
        return;
    PJ_OPERATION_FACTORY_CONTEXT* factory = proj_create_operation_factory_context(ctx, nullptr);
    if (!factory)
        return;
    proj_operation_factory_context_set_spatial_criterion(ctx, factory, PROJ_SPATIAL_CRITERION_PARTIAL_INTERSECTION);
    proj_operation_factory_context_set_grid_availability_use(ctx, factory,
                                                             PROJ_GRID_AVAILABILITY_DISCARD_OPERATION_IF_MISSING_GRID);
    PJ_OBJ_LIST* ops = proj_create_operations(ctx, s.pj, t.pj, factory);
    const int count = ops ? proj_list_get_count(ops) : 0;
    for (int i = 0; i < count; ++i) {
        PjHolder op(proj_list_get(ctx, ops, i));
        if (op.pj)
            each(op.pj);
    }
    proj_list_destroy(ops);
    proj_operation_factory_context_destroy(factory);
}

std::string pairKey(std::uint64_t source, std::uint64_t target)
{
    return std::to_string(source) + ">" + std::to_string(target);
}

/// Looked up once per pair of systems for the whole process.
Ballpark ballparkOf(std::uint64_t source, std::uint64_t target)
{
    static std::mutex mutex;
    static std::map<std::string, Ballpark> known;
    const std::string key = pairKey(source, target);
    {
        std::lock_guard<std::mutex> lock(mutex);
        const auto found = known.find(key);
        if (found != known.end())
            return found->second;
    }
    int all = 0, ballpark = 0;
    if (PJ_CONTEXT* ctx = proj_context_create()) {
        forEachCandidate(ctx, source, target, [&](PJ* op) {
            ++all;
            if (proj_coordoperation_has_ballpark_transformation(ctx, op))
                ++ballpark;
        });
        proj_context_destroy(ctx);
    }
    const Ballpark result = ballpark == 0 ? Ballpark::None : ballpark == all ? Ballpark::All : Ballpark::Some;
    std::lock_guard<std::mutex> lock(mutex);
    known.emplace(key, result);
    return result;
}

/// The ballpark candidate alone, as PROJ falls back to it outside the areas
/// of the real transformations.
PJ* buildBallpark(PJ_CONTEXT* ctx, std::uint64_t source, std::uint64_t target)
{
    PJ* found = nullptr;
    forEachCandidate(ctx, source, target, [&](PJ* op) {
        if (!found && proj_coordoperation_has_ballpark_transformation(ctx, op))
            found = proj_normalize_for_visualization(ctx, op);
    });
    return found;
}

/// True when a converted point lies where the ballpark operation puts it, to
/// far less than any datum shift (millimetres).
bool sameResult(double a, double b)
{
    return std::fabs(a - b) <= 1e-9 * std::max(1.0, std::fabs(a));
}

} // namespace

CoordinateTransformation::CoordinateTransformation(const KivUtility::_ptr_t<SpatialReference>& source,
                                                   const KivUtility::_ptr_t<SpatialReference>& target)
    : d(std::make_shared<CoordinateTransformationPrivate>())
{
    if (!source || !target)
        return;
    try {
        const std::uint64_t s = source->d_func()->identity();
        const std::uint64_t t = target->d_func()->identity();
        if (!s || !t)
            return;
        d->source = s;
        d->target = t;
        // The identities are computed once per system object, so a second
        // transformation for the same pair is a cache look-up.
        d->operation = ProjObjectPool::entry("op:" + std::to_string(s) + ">" + std::to_string(t),
                                             [s, t](PJ_CONTEXT* ctx) { return buildOperation(ctx, s, t); });
        if (!d->operation->isValid())
            d->operation.reset();
    } catch (...) {
        d->operation.reset();
    }
}

CoordinateTransformation::~CoordinateTransformation() = default;

bool CoordinateTransformation::IsValid() const
{
    return d->operation != nullptr;
}

bool CoordinateTransformation::Transform(int count, double* x, double* y, double* z) const
{
    return Transform(count, x, y, z, nullptr);
}

bool CoordinateTransformation::Transform(int count, double* x, double* y, double* z, int* success) const
{
    return Transform(count, x, y, z, success, nullptr);
}

bool CoordinateTransformation::Transform(int count, double* x, double* y, double* z, int* success,
                                         int* unshifted) const
{
    if (unshifted)
        *unshifted = 0;
    if (count <= 0)
        return true;
    if (!x || !y) {
        return false;
    }
    try {
        const Ballpark ballpark = unshifted && d->operation ? ballparkOf(d->source, d->target) : Ballpark::None;
        // Where PROJ mixes real transformations with a ballpark fallback, the
        // fallback's own result tells which points got it.
        std::vector<double> bx, by, bz;
        if (ballpark == Ballpark::Some) {
            bx.assign(x, x + count);
            by.assign(y, y + count);
            if (z)
                bz.assign(z, z + count);
        }
        std::vector<int> ownSuccess;
        if (ballpark != Ballpark::None && !success) {
            ownSuccess.resize(count);
            success = ownSuccess.data();
        }
        bool all = false;
        {
            ProjObjectPool::Lease lease(d->operation);
            all = ProjPointBatch::transform(lease.get(), PJ_FWD, count, x, y, z, success);
        }
        if (ballpark == Ballpark::All) {
            for (int i = 0; i < count; ++i)
                *unshifted += success[i];
        } else if (ballpark == Ballpark::Some) {
            const auto entry = ProjObjectPool::entry(
                "ballpark:" + pairKey(d->source, d->target),
                [s = d->source, t = d->target](PJ_CONTEXT* ctx) { return buildBallpark(ctx, s, t); });
            ProjObjectPool::Lease lease(entry);
            std::vector<int> converted(count);
            ProjPointBatch::transform(lease.get(), PJ_FWD, count, bx.data(), by.data(), z ? bz.data() : nullptr,
                                      converted.data());
            for (int i = 0; i < count; ++i) {
                if (success[i] && converted[i] && sameResult(x[i], bx[i]) && sameResult(y[i], by[i]))
                    ++*unshifted;
            }
        }
        return all;
    } catch (...) {
        return ProjPointBatch::transform(nullptr, PJ_FWD, count, x, y, z, success);
    }
}

std::string CoordinateTransformation::ProjDefinition() const
{
    if (!d->operation)
        return std::string();
    try {
        ProjObjectPool::Lease lease(d->operation);
        const char* text = lease ? proj_as_proj_string(lease.context(), lease.get(), PJ_PROJ_5, nullptr) : nullptr;
        return text ? std::string(text) : std::string();
    } catch (...) {
        return std::string();
    }
}

} // namespace KivGeometry
