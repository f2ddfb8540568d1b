#pragma once

// PROJ's own answers, computed in the test, that our results are checked
// against. Header only, so that only the executables using it link PROJ.

#include <proj.h>

#include <QString>

#include <cmath>

namespace KivTest {

/// One silent PROJ object: a PROJ string or pipeline, a system ("EPSG:4214"),
/// or "FROM -> TO" for PROJ's best operation between two systems. Points go
/// in GIS order: x is easting or longitude, y northing or latitude.
class ProjReference
{
public:
    explicit ProjReference(const QString& definition) : m_ctx(proj_context_create())
    {
        proj_log_level(m_ctx, PJ_LOG_NONE);
        const int arrow = definition.indexOf(QLatin1String(" -> "));
        if (arrow < 0) {
            m_pj = proj_create(m_ctx, definition.toUtf8().constData());
            return;
        }
        PJ* raw = proj_create_crs_to_crs(m_ctx, definition.left(arrow).toUtf8().constData(),
                                         definition.mid(arrow + 4).toUtf8().constData(), nullptr);
        if (raw) {
            m_pj = proj_normalize_for_visualization(m_ctx, raw);
            proj_destroy(raw);
        }
    }
    ~ProjReference()
    {
        proj_destroy(m_pj);
        proj_context_destroy(m_ctx);
    }
    ProjReference(const ProjReference&) = delete;
    ProjReference& operator=(const ProjReference&) = delete;

    bool isValid() const { return m_pj != nullptr; }
    PJ_CONTEXT* context() const { return m_ctx; }
    PJ* get() const { return m_pj; }

    /// Forward (or `direction`), in place; false (point unchanged) when PROJ fails.
    bool transform(double& x, double& y, double& z, PJ_DIRECTION direction = PJ_FWD) const
    {
        if (!m_pj)
            return false;
        const PJ_COORD c = proj_trans(m_pj, direction, proj_coord(x, y, z, 0));
        if (!std::isfinite(c.xyz.x) || !std::isfinite(c.xyz.y))
            return false;
        x = c.xyz.x;
        y = c.xyz.y;
        z = c.xyz.z;
        return true;
    }

private:
    PJ_CONTEXT* m_ctx;
    PJ* m_pj = nullptr;
};

/// One point through `definition` (see ProjReference), in place.
inline bool projTransform(const QString& definition, double& x, double& y, double& z)
{
    return ProjReference(definition).transform(x, y, z);
}

} // namespace KivTest
