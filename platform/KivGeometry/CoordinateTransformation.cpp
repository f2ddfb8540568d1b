#include "KivGeometry/CoordinateTransformation.h"

#include "ProjObjectPool.h"
#include "ProjPointBatch.h"
#include "SpatialReferencePrivate.h"

#include <string>

namespace KivGeometry {

class CoordinateTransformationPrivate
{
public:
    std::shared_ptr<ProjObjectPool::Entry> operation;
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

bool CoordinateTransformation::OnlyBallpark(const KivUtility::_ptr_t<SpatialReference>& source,
                                            const KivUtility::_ptr_t<SpatialReference>& target)
{
    if (!source || !target)
        return false;
    try {
        const std::uint64_t s = source->d_func()->identity();
        const std::uint64_t t = target->d_func()->identity();
        if (!s || !t)
            return false;
        PJ_CONTEXT* ctx = proj_context_create();
        if (!ctx)
            return false;
        bool ballpark = false;
        {
            PjHolder sp(proj_create(ctx, SpatialReferencePrivate::canonicalText(s).c_str()));
            PjHolder tp(proj_create(ctx, SpatialReferencePrivate::canonicalText(t).c_str()));
            PJ_OPERATION_FACTORY_CONTEXT* factory = sp.pj && tp.pj ? proj_create_operation_factory_context(ctx, nullptr) : nullptr;
            if (factory) {
                // As PROJ chooses for points: anywhere in either system's area,
                // and only operations whose grids are installed.
                proj_operation_factory_context_set_spatial_criterion(ctx, factory, PROJ_SPATIAL_CRITERION_PARTIAL_INTERSECTION);
                proj_operation_factory_context_set_grid_availability_use(
                    ctx, factory, PROJ_GRID_AVAILABILITY_DISCARD_OPERATION_IF_MISSING_GRID);
                PJ_OBJ_LIST* ops = proj_create_operations(ctx, sp.pj, tp.pj, factory);
                const int count = ops ? proj_list_get_count(ops) : 0;
                ballpark = count > 0;
                for (int i = 0; i < count && ballpark; ++i) {
                    PjHolder op(proj_list_get(ctx, ops, i));
                    if (op.pj && !proj_coordoperation_has_ballpark_transformation(ctx, op.pj))
                        ballpark = false;
                }
                proj_list_destroy(ops);
                proj_operation_factory_context_destroy(factory);
            }
        }
        proj_context_destroy(ctx);
        return ballpark;
    } catch (...) {
        return false;
    }
}

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
    if (count <= 0)
        return true;
    if (!x || !y) {
        return false;
    }
    try {
        ProjObjectPool::Lease lease(d->operation);
        return ProjPointBatch::transform(lease.get(), PJ_FWD, count, x, y, z, success);
    } catch (...) {
        return ProjPointBatch::transform(nullptr, PJ_FWD, count, x, y, z, success);
    }
}

} // namespace KivGeometry
