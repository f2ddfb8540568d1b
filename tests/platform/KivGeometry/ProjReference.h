#pragma once

// PROJ's own answers, computed in the test, that the library is checked against.

#include <proj.h>

#include <cmath>
#include <string>

namespace ProjReference {

/// A context that prints nothing; released with the object.
class Context
{
public:
    Context() : ctx(proj_context_create()) { proj_log_level(ctx, PJ_LOG_NONE); }
    ~Context() { proj_context_destroy(ctx); }
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;
    PJ_CONTEXT* ctx;
};

class Object
{
public:
    Object(PJ_CONTEXT* ctx, PJ* pj) : m_ctx(ctx), m_pj(pj) {}
    ~Object() { proj_destroy(m_pj); }
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    PJ* get() const { return m_pj; }
    explicit operator bool() const { return m_pj != nullptr; }
    /// x, y, z in place; false when PROJ fails.
    bool trans(double& x, double& y, double& z, PJ_DIRECTION dir = PJ_FWD) const
    {
        const PJ_COORD out = proj_trans(m_pj, dir, proj_coord(x, y, z, 0));
        if (!std::isfinite(out.xyz.x) || !std::isfinite(out.xyz.y))
            return false;
        x = out.xyz.x;
        y = out.xyz.y;
        z = out.xyz.z;
        return true;
    }

private:
    PJ_CONTEXT* m_ctx;
    PJ* m_pj;
};

/// PROJ's best operation between two systems, longitude/easting first.
inline PJ* operation(PJ_CONTEXT* ctx, const std::string& from, const std::string& to)
{
    PJ* op = proj_create_crs_to_crs(ctx, from.c_str(), to.c_str(), nullptr);
    if (!op)
        return nullptr;
    PJ* norm = proj_normalize_for_visualization(ctx, op);
    proj_destroy(op);
    return norm;
}

} // namespace ProjReference
