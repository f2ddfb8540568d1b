#pragma once

#include "ProjObjectPool.h"

#include <ogr_spatialref.h>

#include <QString>

#include <cstdint>
#include <memory>
#include <string>

namespace KivGeometry {

class SpatialReference;

/// What a `SpatialReference` holds: the system itself (kept in its authority
/// form, with traditional GIS axis order), whether it is shown in ESRI form,
/// and caches of what is costly to derive (the WKT1 text and its node tree,
/// the canonical identity used by the PROJ caches, the geographic base).
///
/// The ESRI form is only a flag: the system does not change, so an ESRI copy
/// shares the identity and the cached PROJ objects of its original.
class SpatialReferencePrivate
{
public:
    SpatialReferencePrivate();
    SpatialReferencePrivate(const SpatialReferencePrivate& other);
    SpatialReferencePrivate& operator=(const SpatialReferencePrivate& other);
    ~SpatialReferencePrivate();

    /// Takes `srs` as the held system (empty when `srs` is null or empty).
    void assign(const OGRSpatialReference* srs);
    void clear();
    /// Drops every cache after the held system or its form changed.
    void invalidate();

    bool isValid() const { return m_valid; }
    const OGRSpatialReference& srs() const { return m_srs; }
    bool isEsri() const { return m_esri; }
    void setEsri(bool esri);

    /// One of `SpatialReferenceType`.
    int kind() const;
    /// WKT1 in the current form (ESRI or authority), one line or indented.
    std::string wkt1(bool multiline) const;
    /// Value of the first child of the first node called `name` in the WKT1
    /// tree of the current form ("DATUM", "SPHEROID", "PROJECTION"); the root
    /// node's for a null name. Empty when there is no such node.
    QString nodeValue(const char* name) const;

    /// The canonical identity of the system (a small number standing for its
    /// WKT2 text), computed once; 0 when nothing is held.
    std::uint64_t identity() const;
    /// The WKT2 text behind an identity.
    static std::string canonicalText(std::uint64_t identity);
    /// Cached PROJ object of the system: the bare system (without a bound
    /// transformation to WGS 84) with traditional GIS axis order. Used for
    /// comparisons.
    std::shared_ptr<ProjObjectPool::Entry> normalizedCrs() const;

    /// The geographic base, derived once and kept.
    std::shared_ptr<const SpatialReferencePrivate> geographic() const;

    /// Same datum (by PROJ's equivalence or by name once ESRI "D_" prefixes
    /// are ignored), same ellipsoid and prime meridian.
    bool sameGeographicBase(const SpatialReferencePrivate& other) const;
    /// Same system apart from names and axis order.
    bool sameSystem(const SpatialReferencePrivate& other) const;

private:
    const OGR_SRSNode* tree() const;

    OGRSpatialReference m_srs;
    bool m_valid = false;
    bool m_esri = false;

    mutable std::string m_wkt1;
    mutable std::unique_ptr<OGR_SRSNode> m_tree;
    mutable bool m_treeBuilt = false;
    mutable std::uint64_t m_identity = 0;
    mutable std::shared_ptr<ProjObjectPool::Entry> m_normalizedCrs;
    mutable std::shared_ptr<const SpatialReferencePrivate> m_geographic;
};

} // namespace KivGeometry
