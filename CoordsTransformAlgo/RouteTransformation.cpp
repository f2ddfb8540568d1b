#include "RouteTransformation.h"

#include "spatialref/CoordinateConversion.h"

#include "KivGeometry/SpatialReferenceFactory.h"

#include <proj.h>

#include <cmath>
#include <map>
#include <mutex>
#include <vector>

void RouteTransformation::ImportWkt(OGRSpatialReference& srs, const QString& wkt)
{
    static std::mutex mutex;
    static std::map<QString, OGRSpatialReference> parsed;
    {
        std::lock_guard<std::mutex> lock(mutex);
        const auto found = parsed.find(wkt);
        if (found != parsed.end()) {
            srs = found->second;
            return;
        }
    }
    const QByteArray text = wkt.toUtf8();
    srs.importFromWkt(text.constData());
    srs.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    std::lock_guard<std::mutex> lock(mutex);
    if (parsed.size() >= 64)
        parsed.clear();
    parsed.emplace(wkt, srs);
}

namespace {

std::unique_ptr<CoordinateConversion> makeRoute(const RouteSettings& settings)
{
    const auto source = KivGeometry::SpatialReferenceFactory::CreateSpatialReference(settings.sourceWkt);
    const auto target = KivGeometry::SpatialReferenceFactory::CreateSpatialReference(settings.targetWkt);
    if (!source || !target)
        return nullptr;
    std::unique_ptr<CoordinateConversion> route(new CoordinateConversion(source, target));
    route->SetMode(settings.useSevenParameters ? CoordinateConversion::SevenParameters
                                               : CoordinateConversion::FourParameters);
    route->SetParams(settings.params);
    route->SetCodeNumber(settings.codeNumber);
    return route;
}

/// The route's pipeline, empty when it has none. The warper makes an inverse
/// for every thread and every overview; each asks here, once per process.
std::string pipelineOf(const RouteSettings& settings)
{
    QString key = settings.sourceWkt + QLatin1Char('\n') + settings.targetWkt + QLatin1Char('\n')
                  + QString::number(int(settings.useSevenParameters));
    for (double v : settings.params)
        key += QLatin1Char(',') + QString::number(v, 'g', 17);
    static std::mutex mutex;
    static std::map<QString, std::string> known;
    {
        std::lock_guard<std::mutex> lock(mutex);
        const auto found = known.find(key);
        if (found != known.end())
            return found->second;
    }
    const auto route = makeRoute(settings);
    const std::string pipeline = route ? route->Pipeline() : std::string();
    std::lock_guard<std::mutex> lock(mutex);
    if (known.size() >= 64)
        known.clear();
    known.emplace(key, pipeline);
    return pipeline;
}

} // namespace

RouteTransformation::RouteTransformation(const RouteSettings& settings, bool inverse)
    : m_settings(settings), m_inverse(inverse)
{
    ImportWkt(m_sourceSrs, settings.sourceWkt);
    ImportWkt(m_targetSrs, settings.targetWkt);
    m_sourceGeographic = m_sourceSrs.IsGeographic();
    m_targetGeographic = m_targetSrs.IsGeographic();
    if (inverse) {
        const std::string pipeline = pipelineOf(settings);
        if (!pipeline.empty()) {
            m_context = proj_context_create();
            proj_log_level(m_context, PJ_LOG_NONE);
            m_pipeline = proj_create(m_context, pipeline.c_str());
            if (m_pipeline)
                return;
        }
    }
    m_route = makeRoute(settings);
    if (m_route && inverse) {
        m_guess.reset(new CoordinateConversion(
            KivGeometry::SpatialReferenceFactory::CreateSpatialReference(settings.targetWkt),
            KivGeometry::SpatialReferenceFactory::CreateSpatialReference(settings.sourceWkt)));
        m_guess->SetMode(CoordinateConversion::Direct);
    }
}

RouteTransformation::~RouteTransformation()
{
    proj_destroy(m_pipeline);
    if (m_context)
        proj_context_destroy(m_context);
}

bool RouteTransformation::IsValid() const
{
    if (m_inverse && m_pipeline)
        return true;
    return m_route && m_route->IsReady() && (!m_inverse || (m_guess && m_guess->IsReady()));
}

OGRSpatialReference* RouteTransformation::GetSourceCS()
{
    return m_inverse ? &m_targetSrs : &m_sourceSrs;
}

OGRSpatialReference* RouteTransformation::GetTargetCS()
{
    return m_inverse ? &m_sourceSrs : &m_targetSrs;
}

OGRCoordinateTransformation* RouteTransformation::Clone() const
{
    auto* copy = new RouteTransformation(m_settings, m_inverse);
    copy->m_zonePrefix = m_zonePrefix;
    return copy;
}

OGRCoordinateTransformation* RouteTransformation::GetInverse() const
{
    if (m_inverse)
        return new RouteTransformation(m_settings, false);
    auto* inverse = new RouteTransformation(m_settings, true);
    inverse->m_zonePrefix = m_zonePrefix;
    return inverse;
}

int RouteTransformation::Transform(int count, double* x, double* y, double* z, double* /*t*/, int* success)
{
    if (count <= 0)
        return TRUE;
    if (!IsValid()) {
        if (success)
            std::fill(success, success + count, FALSE);
        return FALSE;
    }
    try {
        const int converted = m_inverse ? inverse(count, x, y, z, success) : forward(count, x, y, z, success);
        return converted > 0 ? TRUE : FALSE;
    } catch (...) {
        if (success)
            std::fill(success, success + count, FALSE);
        return FALSE;
    }
}

int RouteTransformation::forward(int count, double* x, double* y, double* z, int* success)
{
    // The route takes (north, east): GDAL's y and x arrays, in place.
    int unshifted = 0;
    const int converted = m_route->Convert(count, y, x, z, success, &unshifted);
    m_unshifted += unshifted;
    return converted;
}

int RouteTransformation::inverse(int count, double* x, double* y, double* z, int* success)
{
    std::vector<int> ok(count, 1);
    if (m_pipeline) {
        proj_errno_reset(m_pipeline);
        proj_trans_generic(m_pipeline, PJ_INV, x, sizeof(double), size_t(count), y, sizeof(double), size_t(count),
                           nullptr, 0, 0, nullptr, 0, 0);
        for (int i = 0; i < count; ++i) {
            ok[i] = x[i] != HUGE_VAL && std::isfinite(x[i]) && std::isfinite(y[i]);
            if (ok[i] && m_settings.codeNumber && m_zonePrefix != 0.0)
                x[i] += m_zonePrefix;
        }
    } else {
        solveInverse(count, x, y, ok.data());
    }
    int converted = 0;
    for (int i = 0; i < count; ++i) {
        if (ok[i]) {
            if (z)
                z[i] = 0.0;
            ++converted;
        }
        if (success)
            success[i] = ok[i];
    }
    return converted;
}

int RouteTransformation::solveInverse(int count, double* x, double* y, int* ok)
{
    // Start: PROJ's operation from target to source, a few metres from the
    // answer at worst (it knows nothing of the model).
    std::vector<double> sx(x, x + count), sy(y, y + count);
    m_guess->Convert(count, sy.data(), sx.data(), nullptr, ok);
    if (m_settings.codeNumber && m_zonePrefix != 0.0)
        for (int i = 0; i < count; ++i)
            sx[i] += m_zonePrefix;

    // One Jacobian by differences at the start point; the route is so close
    // to PROJ's operation that it stays good for every iteration.
    const double hx = m_sourceGeographic ? 1e-6 : 0.1;
    const double hy = hx;
    std::vector<double> ex(3 * size_t(count)), ey(3 * size_t(count));
    std::vector<int> eok(3 * size_t(count));
    for (int i = 0; i < count; ++i) {
        ex[i] = sx[i];
        ey[i] = sy[i];
        ex[count + i] = sx[i] + hx;
        ey[count + i] = sy[i];
        ex[2 * count + i] = sx[i];
        ey[2 * count + i] = sy[i] + hy;
    }
    m_route->Convert(3 * count, ey.data(), ex.data(), nullptr, eok.data());
    std::vector<double> j11(count), j12(count), j21(count), j22(count);
    for (int i = 0; i < count; ++i) {
        if (!ok[i] || !eok[i] || !eok[count + i] || !eok[2 * count + i]) {
            ok[i] = 0;
            continue;
        }
        j11[i] = (ex[count + i] - ex[i]) / hx;
        j21[i] = (ey[count + i] - ey[i]) / hx;
        j12[i] = (ex[2 * count + i] - ex[i]) / hy;
        j22[i] = (ey[2 * count + i] - ey[i]) / hy;
    }

    const double tolerance = m_targetGeographic ? 1e-11 : 1e-6;
    std::vector<double> fx(ex.begin(), ex.begin() + count), fy(ey.begin(), ey.begin() + count);
    std::vector<int> fok(count);
    for (int iteration = 0; iteration < 8; ++iteration) {
        bool converged = true;
        for (int i = 0; i < count; ++i) {
            if (!ok[i])
                continue;
            const double rx = fx[i] - x[i];
            const double ry = fy[i] - y[i];
            if (!(std::fabs(rx) <= tolerance && std::fabs(ry) <= tolerance))
                converged = false;
            const double det = j11[i] * j22[i] - j12[i] * j21[i];
            if (!std::isfinite(det) || det == 0.0) {
                ok[i] = 0;
                continue;
            }
            sx[i] -= (j22[i] * rx - j12[i] * ry) / det;
            sy[i] -= (j11[i] * ry - j21[i] * rx) / det;
        }
        if (converged)
            break;
        std::copy(sx.begin(), sx.end(), fx.begin());
        std::copy(sy.begin(), sy.end(), fy.begin());
        m_route->Convert(count, fy.data(), fx.data(), nullptr, fok.data());
        for (int i = 0; i < count; ++i)
            ok[i] = ok[i] && fok[i];
    }

    int converted = 0;
    for (int i = 0; i < count; ++i) {
        if (ok[i] && std::isfinite(sx[i]) && std::isfinite(sy[i])) {
            x[i] = sx[i];
            y[i] = sy[i];
            ++converted;
        } else {
            ok[i] = 0;
        }
    }
    return converted;
}
