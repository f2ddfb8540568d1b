#include "SpatialReferencePrivate.h"

#include "KivGeometry/SpatialReference.h"
#include "QuietGdalErrors.h"

#include <cpl_conv.h>

#include <cctype>
#include <cmath>
#include <deque>
#include <mutex>
#include <unordered_map>

namespace KivGeometry {

namespace {

// Canonical texts are interned so that cache keys are short and a system's
// identity is computed once per object (and inherited by its copies).
struct IdentityRegistry
{
    std::mutex mutex;
    std::unordered_map<std::string, std::uint64_t> ids;
    std::deque<std::string> texts; // texts[id - 1]
};

IdentityRegistry& identities()
{
    static IdentityRegistry* r = new IdentityRegistry;
    return *r;
}

std::string exportWkt(const OGRSpatialReference& srs, const char* format, bool multiline)
{
    const char* options[] = {format, multiline ? "MULTILINE=YES" : "MULTILINE=NO", nullptr};
    char* text = nullptr;
    std::string result;
    if (srs.exportToWkt(&text, options) == OGRERR_NONE && text)
        result = text;
    CPLFree(text);
    return result;
}

// PROJ objects are released on every path.
struct PjHolder
{
    explicit PjHolder(PJ* p = nullptr) : pj(p) {}
    ~PjHolder() { proj_destroy(pj); }
    PjHolder(const PjHolder&) = delete;
    PjHolder& operator=(const PjHolder&) = delete;
    PJ* get() const { return pj; }
    PJ* pj;
};

// Datum names compared once ESRI's "D_" prefix, case and punctuation are
// ignored ("D_Beijing_1954" == "Beijing 1954").
std::string comparableName(const char* name)
{
    std::string s = name ? name : "";
    if (s.size() > 2 && (s[0] == 'D' || s[0] == 'd') && s[1] == '_')
        s.erase(0, 2);
    std::string out;
    for (char c : s) {
        if (std::isalnum(static_cast<unsigned char>(c)))
            out += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return out;
}

bool close(double a, double b, double relative)
{
    return std::fabs(a - b) <= relative * std::max(1.0, std::max(std::fabs(a), std::fabs(b)));
}

bool sameEllipsoid(PJ_CONTEXT* ctx, const PJ* a, const PJ* b)
{
    PjHolder ea(proj_get_ellipsoid(ctx, a));
    PjHolder eb(proj_get_ellipsoid(ctx, b));
    if (!ea.get() || !eb.get())
        return false;
    double aa = 0, ab = 0, fa = 0, fb = 0;
    if (!proj_ellipsoid_get_parameters(ctx, ea.get(), &aa, nullptr, nullptr, &fa)
        || !proj_ellipsoid_get_parameters(ctx, eb.get(), &ab, nullptr, nullptr, &fb))
        return false;
    // Inverse flattening 0 means a sphere on both sides.
    return close(aa, ab, 1e-12) && close(fa, fb, 1e-9);
}

bool samePrimeMeridian(PJ_CONTEXT* ctx, const PJ* a, const PJ* b)
{
    PjHolder pa(proj_get_prime_meridian(ctx, a));
    PjHolder pb(proj_get_prime_meridian(ctx, b));
    if (!pa.get() || !pb.get())
        return !pa.get() && !pb.get();
    double la = 0, lb = 0, ua = 1, ub = 1;
    proj_prime_meridian_get_parameters(ctx, pa.get(), &la, &ua, nullptr);
    proj_prime_meridian_get_parameters(ctx, pb.get(), &lb, &ub, nullptr);
    return std::fabs(la * ua - lb * ub) < 1e-12;
}

double firstAxisUnit(PJ_CONTEXT* ctx, const PJ* crs)
{
    PjHolder cs(proj_crs_get_coordinate_system(ctx, crs));
    double factor = 0;
    if (!cs.get() || !proj_cs_get_axis_info(ctx, cs.get(), 0, nullptr, nullptr, nullptr, &factor, nullptr, nullptr, nullptr))
        return 0;
    return factor;
}

int kindOf(PJ_TYPE type)
{
    switch (type) {
    case PJ_TYPE_GEOGRAPHIC_2D_CRS:
    case PJ_TYPE_GEOGRAPHIC_3D_CRS:
    case PJ_TYPE_GEOGRAPHIC_CRS:
        return SRT_Geographic;
    case PJ_TYPE_PROJECTED_CRS:
        return SRT_Projected;
    case PJ_TYPE_GEOCENTRIC_CRS:
        return SRT_Geocentric;
    case PJ_TYPE_VERTICAL_CRS:
        return SRT_Vertical;
    case PJ_TYPE_COMPOUND_CRS:
        return SRT_Compound;
    case PJ_TYPE_ENGINEERING_CRS:
        return SRT_Engineering;
    default:
        return SRT_Unknown;
    }
}

// Same datum, ellipsoid and prime meridian of two geodetic systems.
bool sameDatum(PJ_CONTEXT* ctx, const PJ* a, const PJ* b)
{
    PjHolder ga(proj_crs_get_geodetic_crs(ctx, a));
    PjHolder gb(proj_crs_get_geodetic_crs(ctx, b));
    if (!ga.get() || !gb.get())
        return false;
    PjHolder da(proj_crs_get_datum_forced(ctx, ga.get()));
    PjHolder db(proj_crs_get_datum_forced(ctx, gb.get()));
    if (!da.get() || !db.get())
        return false;
    if (proj_is_equivalent_to_with_ctx(ctx, da.get(), db.get(), PJ_COMP_EQUIVALENT))
        return true;
    // A user-defined datum that went through ESRI form keeps its "D_" prefix;
    // PROJ only knows the aliases of catalogued datums.
    const std::string na = comparableName(proj_get_name(da.get()));
    return !na.empty() && na == comparableName(proj_get_name(db.get())) && sameEllipsoid(ctx, ga.get(), gb.get())
        && samePrimeMeridian(ctx, ga.get(), gb.get());
}

} // namespace

SpatialReferencePrivate::SpatialReferencePrivate()
{
    m_srs.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
}

SpatialReferencePrivate::SpatialReferencePrivate(const SpatialReferencePrivate& other)
{
    *this = other;
}

SpatialReferencePrivate& SpatialReferencePrivate::operator=(const SpatialReferencePrivate& other)
{
    if (this == &other)
        return *this;
    QuietGdalErrors quiet;
    m_srs = other.m_srs;
    m_srs.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    m_valid = other.m_valid;
    m_esri = other.m_esri;
    m_wkt1 = other.m_wkt1;
    m_tree.reset();
    m_treeBuilt = false;
    m_identity = other.m_identity;
    m_normalizedCrs = other.m_normalizedCrs;
    m_geographic = other.m_geographic;
    return *this;
}

SpatialReferencePrivate::~SpatialReferencePrivate() = default;

void SpatialReferencePrivate::assign(const OGRSpatialReference* srs)
{
    QuietGdalErrors quiet;
    if (srs && !srs->IsEmpty()) {
        m_srs = *srs;
        m_valid = true;
    } else {
        m_srs.Clear();
        m_valid = false;
    }
    m_srs.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    m_esri = false;
    invalidate();
}

void SpatialReferencePrivate::clear()
{
    assign(nullptr);
}

void SpatialReferencePrivate::invalidate()
{
    m_wkt1.clear();
    m_tree.reset();
    m_treeBuilt = false;
    m_identity = 0;
    m_normalizedCrs.reset();
    m_geographic.reset();
}

void SpatialReferencePrivate::setEsri(bool esri)
{
    if (esri == m_esri)
        return;
    m_esri = esri;
    m_wkt1.clear();
    m_tree.reset();
    m_treeBuilt = false;
    m_geographic.reset();
}

int SpatialReferencePrivate::kind() const
{
    if (!m_valid)
        return SRT_Unknown;
    QuietGdalErrors quiet;
    // Compound first: the predicates below also answer for a compound's parts.
    if (m_srs.IsCompound())
        return SRT_Compound;
    if (m_srs.IsProjected())
        return SRT_Projected;
    if (m_srs.IsGeographic())
        return SRT_Geographic;
    if (m_srs.IsGeocentric())
        return SRT_Geocentric;
    if (m_srs.IsVertical())
        return SRT_Vertical;
    if (m_srs.IsLocal())
        return SRT_Engineering;
    return SRT_Unknown;
}

std::string SpatialReferencePrivate::wkt1(bool multiline) const
{
    if (!m_valid)
        return std::string();
    if (!multiline && !m_wkt1.empty())
        return m_wkt1;
    QuietGdalErrors quiet;
    std::string text = exportWkt(m_srs, m_esri ? "FORMAT=WKT1_ESRI" : "FORMAT=WKT1_GDAL", multiline);
    // Systems WKT1 cannot express (a few WKT2-only kinds) still export.
    if (text.empty())
        text = exportWkt(m_srs, "FORMAT=WKT2_2019", multiline);
    if (!multiline)
        m_wkt1 = text;
    return text;
}

const OGR_SRSNode* SpatialReferencePrivate::tree() const
{
    if (!m_treeBuilt) {
        m_treeBuilt = true;
        const std::string text = wkt1(false);
        if (!text.empty()) {
            QuietGdalErrors quiet;
            auto node = std::make_unique<OGR_SRSNode>();
            const char* p = text.c_str();
            if (node->importFromWkt(&p) == OGRERR_NONE)
                m_tree = std::move(node);
        }
    }
    return m_tree.get();
}

QString SpatialReferencePrivate::nodeValue(const char* name) const
{
    const OGR_SRSNode* root = tree();
    if (!root)
        return QString();
    const OGR_SRSNode* node = name ? root->GetNode(name) : root;
    if (!node || node->GetChildCount() < 1)
        return QString();
    return QString::fromUtf8(node->GetChild(0)->GetValue());
}

std::uint64_t SpatialReferencePrivate::identity() const
{
    if (!m_valid)
        return 0;
    if (m_identity)
        return m_identity;
    std::string text;
    {
        QuietGdalErrors quiet;
        text = exportWkt(m_srs, "FORMAT=WKT2_2019", false);
    }
    if (text.empty())
        return 0;
    IdentityRegistry& r = identities();
    std::lock_guard<std::mutex> lock(r.mutex);
    auto it = r.ids.find(text);
    if (it != r.ids.end()) {
        m_identity = it->second;
    } else {
        r.texts.push_back(text);
        m_identity = r.texts.size();
        r.ids.emplace(std::move(text), m_identity);
    }
    return m_identity;
}

std::string SpatialReferencePrivate::canonicalText(std::uint64_t identity)
{
    IdentityRegistry& r = identities();
    std::lock_guard<std::mutex> lock(r.mutex);
    if (identity == 0 || identity > r.texts.size())
        return std::string();
    return r.texts[identity - 1];
}

std::shared_ptr<ProjObjectPool::Entry> SpatialReferencePrivate::normalizedCrs() const
{
    if (m_normalizedCrs)
        return m_normalizedCrs;
    const std::uint64_t id = identity();
    if (!id)
        return nullptr;
    m_normalizedCrs = ProjObjectPool::entry("crs:" + std::to_string(id), [id](PJ_CONTEXT* ctx) -> PJ* {
        const std::string text = canonicalText(id);
        PjHolder crs(proj_create(ctx, text.c_str()));
        if (!crs.get())
            return nullptr;
        PJ* bare = crs.get();
        PjHolder base(proj_get_type(crs.get()) == PJ_TYPE_BOUND_CRS ? proj_get_source_crs(ctx, crs.get()) : nullptr);
        if (base.get())
            bare = base.get();
        return proj_normalize_for_visualization(ctx, bare);
    });
    return m_normalizedCrs;
}

std::shared_ptr<const SpatialReferencePrivate> SpatialReferencePrivate::geographic() const
{
    if (m_geographic || !m_valid)
        return m_geographic;
    auto g = std::make_shared<SpatialReferencePrivate>();
    if (kind() == SRT_Geographic) {
        *g = *this;
        g->m_geographic.reset();
    } else {
        QuietGdalErrors quiet;
        OGRSpatialReference* base = m_srs.CloneGeogCS();
        if (!base)
            return nullptr;
        g->assign(base);
        delete base;
        if (!g->isValid())
            return nullptr;
        g->setEsri(m_esri);
    }
    m_geographic = g;
    return m_geographic;
}

bool SpatialReferencePrivate::sameGeographicBase(const SpatialReferencePrivate& other) const
{
    auto ea = normalizedCrs();
    auto eb = other.normalizedCrs();
    if (!ea || !eb)
        return false;
    // One system compared with itself needs only one instance.
    ProjObjectPool::Lease a(ea);
    ProjObjectPool::Lease b(eb == ea ? nullptr : eb);
    if (!a || (eb != ea && !b))
        return false;
    return sameDatum(a.context(), a.get(), eb == ea ? a.get() : b.get());
}

bool SpatialReferencePrivate::sameSystem(const SpatialReferencePrivate& other) const
{
    if (!m_valid || !other.m_valid)
        return false;
    if (identity() && identity() == other.identity())
        return true;
    auto ea = normalizedCrs();
    auto eb = other.normalizedCrs();
    if (!ea || !eb)
        return false;
    ProjObjectPool::Lease a(ea);
    ProjObjectPool::Lease b(eb);
    if (!a || !b)
        return false;
    PJ_CONTEXT* ctx = a.context();
    const int ka = kindOf(proj_get_type(a.get()));
    if (ka != kindOf(proj_get_type(b.get())))
        return false;
    if (ka == SRT_Geographic)
        return sameDatum(ctx, a.get(), b.get()) && close(firstAxisUnit(ctx, a.get()), firstAxisUnit(ctx, b.get()), 1e-12);
    if (ka == SRT_Projected) {
        if (!sameDatum(ctx, a.get(), b.get()))
            return false;
        if (!close(firstAxisUnit(ctx, a.get()), firstAxisUnit(ctx, b.get()), 1e-12))
            return false;
        PjHolder ca(proj_crs_get_coordoperation(ctx, a.get()));
        PjHolder cb(proj_crs_get_coordoperation(ctx, b.get()));
        return ca.get() && cb.get() && proj_is_equivalent_to_with_ctx(ctx, ca.get(), cb.get(), PJ_COMP_EQUIVALENT);
    }
    return proj_is_equivalent_to_with_ctx(ctx, a.get(), b.get(), PJ_COMP_EQUIVALENT_EXCEPT_AXIS_ORDER_GEOGCRS) != 0;
}

} // namespace KivGeometry
