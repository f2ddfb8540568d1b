// Writes the five spatial-reference catalogues of the data folder
// ("Coordinate System/spatialreference") from PROJ's database, in the ESRI
// naming that the geometry library produces:
//
//   SPHEROID.xml       datum, spheroid, semi-major axis, semi-minor axis, inverse flattening
//   AngularUnit.xml    unit, radians per unit
//   PrimeMeridian.xml  name, degrees, minutes, seconds
//   Projection.xml     NAME, then one element per parameter (attribute "key", default value)
//   LinearUnit.xml     unit, metres per unit
//
// Every geographic 2D and projected system of the EPSG and ESRI registries is
// exported as ESRI WKT; the catalogues collect the parts those texts use, so
// every name is one that PROJ reads back. A projection is kept only when a
// system composed the way the new-projected-system dialog composes it (its
// parameters in name order, on WGS 84, in metres) converts points.
//
// Usage: srs_catalogues OUTPUT_FOLDER
// The output depends on PROJ's database only; run scripts/make-srs-catalogues
// after a PROJ upgrade and commit the result.

#include "spatialref/SystemComposer.h"

#include <proj.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QMap>
#include <QSaveFile>
#include <QStringList>
#include <QXmlStreamWriter>

#include <cmath>
#include <cstdio>
#include <memory>
#include <vector>

namespace {

// One node of a WKT text: keyword and children; a leaf keeps its literal text
// (quoted strings without their quotes).
struct Node
{
    QString keyword;
    QString text;
    bool quoted = false;
    std::vector<Node> children;
    const Node* child(const QString& name) const
    {
        for (const Node& c : children)
            if (c.keyword == name)
                return &c;
        return nullptr;
    }
    QString value(int i) const { return i < int(children.size()) ? children[i].text : QString(); }
};

class WktReader
{
public:
    explicit WktReader(const QString& text) : m_text(text) {}
    bool read(Node& node)
    {
        skipBlanks();
        if (m_pos < m_text.size() && m_text[m_pos] == '"') {
            const int end = m_text.indexOf('"', m_pos + 1);
            if (end < 0)
                return false;
            node.text = m_text.mid(m_pos + 1, end - m_pos - 1);
            node.quoted = true;
            m_pos = end + 1;
            return true;
        }
        const int start = m_pos;
        while (m_pos < m_text.size() && !QString("[],").contains(m_text[m_pos]))
            ++m_pos;
        const QString word = m_text.mid(start, m_pos - start).trimmed();
        skipBlanks();
        if (m_pos < m_text.size() && m_text[m_pos] == '[') {
            node.keyword = word;
            ++m_pos;
            for (;;) {
                Node c;
                if (!read(c))
                    return false;
                node.children.push_back(c);
                skipBlanks();
                if (m_pos >= m_text.size())
                    return false;
                const QChar sep = m_text[m_pos++];
                if (sep == ']')
                    return true;
                if (sep != ',')
                    return false;
            }
        }
        node.text = word;
        return !word.isEmpty();
    }

private:
    void skipBlanks()
    {
        while (m_pos < m_text.size() && m_text[m_pos].isSpace())
            ++m_pos;
    }
    QString m_text;
    int m_pos = 0;
};

struct PjDeleter
{
    void operator()(PJ* p) const { proj_destroy(p); }
};
using PjPtr = std::unique_ptr<PJ, PjDeleter>;

QString esriWkt(PJ_CONTEXT* ctx, const char* auth, const char* code, PJ_CATEGORY category = PJ_CATEGORY_CRS)
{
    PjPtr obj(proj_create_from_database(ctx, auth, code, category, 0, nullptr));
    if (!obj)
        return QString();
    const char* wkt = proj_as_wkt(ctx, obj.get(), PJ_WKT1_ESRI, nullptr);
    return wkt ? QString::fromUtf8(wkt) : QString();
}

bool parse(const QString& wkt, Node& root)
{
    return !wkt.isEmpty() && WktReader(wkt).read(root) && !root.keyword.isEmpty();
}

// Codes in numeric order, so that the first system using a part (whose values
// become the catalogue's defaults) does not depend on the database's order.
QStringList codes(PJ_CONTEXT* ctx, const char* auth, PJ_TYPE type)
{
    QStringList list;
    PROJ_STRING_LIST raw = proj_get_codes_from_database(ctx, auth, type, 0);
    for (PROJ_STRING_LIST p = raw; p && *p; ++p)
        list << QString::fromUtf8(*p);
    proj_string_list_destroy(raw);
    std::stable_sort(list.begin(), list.end(), [](const QString& a, const QString& b) {
        bool okA = false, okB = false;
        const qlonglong na = a.toLongLong(&okA), nb = b.toLongLong(&okB);
        if (okA && okB)
            return na < nb;
        if (okA != okB)
            return okA;
        return a < b;
    });
    return list;
}

struct DatumRecord
{
    QString name, spheroid, semiMajor, semiMinor, inverseFlattening;
};

struct ProjectionRecord
{
    QString name;
    QList<QPair<QString, QString>> parameters;  // in the order the WKT gives them
};

QString number(double v)
{
    QString s = QString::number(v, 'g', 15);
    if (!s.contains('.') && !s.contains('e'))
        s += ".0";
    return s;
}

// Does a system composed as the dialog composes it (parameters in name order,
// the given geographic base, metres) convert points from that base?
bool projectionWorks(PJ_CONTEXT* ctx, const ProjectionRecord& p)
{
    const QString geogcs = "GEOGCS[\"GCS_WGS_1984\",DATUM[\"D_WGS_1984\",SPHEROID[\"WGS_1984\",6378137.0,"
                           "298.257223563]],PRIMEM[\"Greenwich\",0.0],UNIT[\"Degree\",0.0174532925199433]]";
    QMap<QString, QString> sorted;
    for (const auto& kv : p.parameters)
        sorted.insert(kv.first, kv.second);
    const QString wkt = SystemComposer::Projected(QStringLiteral("test"), geogcs, p.name, sorted,
                                                  QStringLiteral("Meter"), QStringLiteral("1.0"));
    PjPtr crs(proj_create(ctx, wkt.toUtf8().constData()));
    if (!crs || proj_get_type(crs.get()) != PJ_TYPE_PROJECTED_CRS)
        return false;
    PjPtr op(proj_create_crs_to_crs(ctx, "EPSG:4326", wkt.toUtf8().constData(), nullptr));
    if (!op)
        return false;
    PjPtr norm(proj_normalize_for_visualization(ctx, op.get()));
    if (!norm)
        return false;
    // Near the projection's origin, where every method is defined.
    double lon0 = 0, lat0 = 0;
    for (const auto& kv : p.parameters) {
        const QString key = kv.first.toLower();
        if (key == "central_meridian" || key == "longitude_of_center" || key == "longitude_of_origin")
            lon0 = kv.second.toDouble();
        if (key == "latitude_of_origin" || key == "latitude_of_center")
            lat0 = kv.second.toDouble();
    }
    const double offsets[][2] = {{0.5, 0.5}, {0.5, -0.5}, {-0.5, 0.5}, {0.5, 0}};
    for (const auto& o : offsets) {
        const double lat = std::max(-89.0, std::min(89.0, lat0 + o[1]));
        PJ_COORD c = proj_trans(norm.get(), PJ_FWD, proj_coord(lon0 + o[0], lat, 0, 0));
        if (std::isfinite(c.xy.x) && std::isfinite(c.xy.y) && std::abs(c.xy.x) < 1e15)
            return true;
    }
    return false;
}

bool writeCatalogue(const QString& path, const QString& root, const QString& record, const QStringList& fields,
                    const QList<QStringList>& rows)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QXmlStreamWriter xml(&file);
    xml.setAutoFormatting(true);
    xml.setAutoFormattingIndent(2);
    xml.writeStartDocument();
    xml.writeStartElement(root);
    for (const QStringList& row : rows) {
        xml.writeStartElement(record);
        for (int i = 0; i < fields.size(); ++i)
            xml.writeTextElement(fields[i], row.value(i));
        xml.writeEndElement();
    }
    xml.writeEndElement();
    xml.writeEndDocument();
    return !xml.hasError() && file.commit();
}

bool writeProjections(const QString& path, const QList<ProjectionRecord>& projections)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QXmlStreamWriter xml(&file);
    xml.setAutoFormatting(true);
    xml.setAutoFormattingIndent(2);
    xml.writeStartDocument();
    xml.writeStartElement("Projections");
    for (const ProjectionRecord& p : projections) {
        xml.writeStartElement("Projection");
        xml.writeTextElement("NAME", p.name);
        for (const auto& kv : p.parameters) {
            xml.writeStartElement("PARAMETER");
            xml.writeAttribute("key", kv.first);
            xml.writeCharacters(kv.second);
            xml.writeEndElement();
        }
        xml.writeEndElement();
    }
    xml.writeEndElement();
    xml.writeEndDocument();
    return !xml.hasError() && file.commit();
}

// Names in alphabetical order, except that `last` (the dialog's default unit
// is the catalogue's last entry) goes to the end.
QList<QStringList> byName(QMap<QString, QString> units, const QString& last = QString())
{
    QList<QStringList> rows;
    for (auto it = units.cbegin(); it != units.cend(); ++it)
        if (it.key() != last)
            rows << QStringList{it.key(), it.value()};
    if (!last.isEmpty() && units.contains(last))
        rows << QStringList{last, units.value(last)};
    return rows;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s OUTPUT_FOLDER\n", argv[0]);
        return 2;
    }
    const QString out = QString::fromLocal8Bit(argv[1]);
    if (!QDir().mkpath(out)) {
        std::fprintf(stderr, "cannot create %s\n", argv[1]);
        return 1;
    }
    PJ_CONTEXT* ctx = proj_context_create();
    proj_log_level(ctx, PJ_LOG_NONE);
    proj_context_set_enable_network(ctx, 0);

    QMap<QString, DatumRecord> datums;
    QMap<QString, QString> angularUnits, linearUnits, primeMeridians;
    QMap<QString, ProjectionRecord> projections;
    struct Variant
    {
        int count = 0;
        ProjectionRecord record;
    };
    QMap<QString, QMap<QString, Variant>> variants;  // name -> sorted keys -> use

    for (const char* auth : {"EPSG", "ESRI"}) {
        for (const QString& code : codes(ctx, auth, PJ_TYPE_GEOGRAPHIC_2D_CRS)) {
            Node gcs;
            if (!parse(esriWkt(ctx, auth, code.toUtf8().constData()), gcs) || gcs.keyword != "GEOGCS")
                continue;
            const Node* datum = gcs.child("DATUM");
            const Node* spheroid = datum ? datum->child("SPHEROID") : nullptr;
            const Node* unit = gcs.child("UNIT");
            const Node* pm = gcs.child("PRIMEM");
            if (!datum || !spheroid || !unit || !pm)
                continue;
            if (unit->value(0).isEmpty() || unit->value(1).toDouble() <= 0)
                continue;
            angularUnits.insert(unit->value(0), unit->value(1));
            PjPtr crs(proj_create_from_database(ctx, auth, code.toUtf8().constData(), PJ_CATEGORY_CRS, 0, nullptr));
            // The dialog writes the meridian as degrees, minutes, seconds and
            // the geometry library reads only the first number: the whole
            // longitude in decimal degrees goes into the degrees text.
            if (!primeMeridians.contains(pm->value(0))) {
                PjPtr meridian(crs ? proj_get_prime_meridian(ctx, crs.get()) : nullptr);
                double longitude = 0, factor = 0;
                if (meridian && proj_prime_meridian_get_parameters(ctx, meridian.get(), &longitude, &factor, nullptr))
                    primeMeridians.insert(pm->value(0), number(longitude * factor * 180.0 / M_PI));
            }
            const QString name = datum->value(0);
            if (!name.startsWith("D_") || datums.contains(name))
                continue;
            PjPtr ellipsoid(crs ? proj_get_ellipsoid(ctx, crs.get()) : nullptr);
            double a = 0, b = 0, rf = 0;
            int computed = 0;
            if (!ellipsoid || !proj_ellipsoid_get_parameters(ctx, ellipsoid.get(), &a, &b, &computed, &rf))
                continue;
            datums.insert(name, {name, spheroid->value(0), spheroid->value(1), number(b), spheroid->value(2)});
        }
    }

    // The registry's other angular units, named as the ESRI export names them,
    // unless a unit of the same size is already listed.
    int unitCount = 0;
    PROJ_UNIT_INFO** units = proj_get_units_from_database(ctx, "EPSG", "angular", 0, &unitCount);
    for (int i = 0; i < unitCount; ++i) {
        const double factor = units[i]->conv_factor;
        bool known = factor <= 0;
        for (const QString& f : angularUnits)
            known = known || std::abs(f.toDouble() - factor) <= 1e-12 * factor;
        if (known)
            continue;
        const QString text = "GEOGCS[\"x\",DATUM[\"WGS_1984\",SPHEROID[\"WGS 84\",6378137,298.257223563]],"
                             "PRIMEM[\"Greenwich\",0],UNIT[\""
            + QString::fromUtf8(units[i]->name) + "\"," + QString::number(factor, 'g', 17) + "]]";
        PjPtr crs(proj_create(ctx, text.toUtf8().constData()));
        const char* wkt = crs ? proj_as_wkt(ctx, crs.get(), PJ_WKT1_ESRI, nullptr) : nullptr;
        Node gcs;
        const Node* unit = wkt && parse(QString::fromUtf8(wkt), gcs) ? gcs.child("UNIT") : nullptr;
        if (unit && !unit->value(0).isEmpty() && unit->value(1).toDouble() > 0)
            angularUnits.insert(unit->value(0), unit->value(1));
    }
    proj_unit_list_destroy(units);

    for (const char* auth : {"EPSG", "ESRI"}) {
        for (const QString& code : codes(ctx, auth, PJ_TYPE_PROJECTED_CRS)) {
            Node pcs;
            if (!parse(esriWkt(ctx, auth, code.toUtf8().constData()), pcs) || pcs.keyword != "PROJCS")
                continue;
            const Node* projection = pcs.child("PROJECTION");
            const Node* unit = nullptr;
            for (const Node& c : pcs.children)
                if (c.keyword == "UNIT")
                    unit = &c;
            if (unit && !unit->value(0).isEmpty() && unit->value(1).toDouble() > 0)
                linearUnits.insert(unit->value(0), unit->value(1));
            if (!projection || projection->value(0).isEmpty())
                continue;
            ProjectionRecord record{projection->value(0), {}};
            const double toMetres = unit ? unit->value(1).toDouble() : 1.0;
            for (const Node& c : pcs.children) {
                if (c.keyword != "PARAMETER")
                    continue;
                // Defaults are given in metres, the dialog's default unit.
                QString value = c.value(1);
                const QString key = c.value(0).toLower();
                if ((key == "false_easting" || key == "false_northing") && toMetres != 1.0)
                    value = number(std::round(value.toDouble() * toMetres * 1000.0) / 1000.0);
                record.parameters << qMakePair(c.value(0), value);
            }
            // One name may come with several parameter sets (ESRI's
            // Lambert_Conformal_Conic with one or two standard parallels):
            // the catalogue keeps the set most systems use, with the values
            // of the first system using it.
            QStringList keys;
            for (const auto& kv : record.parameters)
                keys << kv.first;
            keys.sort();
            Variant& variant = variants[record.name][keys.join(',')];
            if (variant.count++ == 0)
                variant.record = record;
        }
    }
    for (auto name = variants.cbegin(); name != variants.cend(); ++name) {
        const Variant* best = nullptr;
        for (auto v = name.value().cbegin(); v != name.value().cend(); ++v)
            if (!best || v.value().count > best->count)
                best = &v.value();
        if (best && projectionWorks(ctx, best->record))
            projections.insert(name.key(), best->record);
    }
    proj_context_destroy(ctx);

    const QString folder = QDir(out).absolutePath() + "/";
    QList<QStringList> datumRows;
    for (const DatumRecord& d : datums)
        datumRows << QStringList{d.name, d.spheroid, d.semiMajor, d.semiMinor, d.inverseFlattening};
    QList<QStringList> pmRows;
    for (auto it = primeMeridians.cbegin(); it != primeMeridians.cend(); ++it)
        pmRows << QStringList{it.key(), it.value(), "0", "0"};

    const bool ok =
        writeCatalogue(folder + "SPHEROID.xml", "Spheroids", "Datum",
                       {"DatumName", "SpheroidName", "SemiMajorAxis", "SemiMinorAxis", "InverseFlattening"},
                       datumRows)
        && writeCatalogue(folder + "AngularUnit.xml", "AngularUnits", "AngularUnit", {"Name", "RadiansPerUnit"},
                          byName(angularUnits))
        && writeCatalogue(folder + "PrimeMeridian.xml", "PrimeMeridians", "PrimeMeridian",
                          {"Name", "Degrees", "Minutes", "Seconds"}, pmRows)
        && writeProjections(folder + "Projection.xml", projections.values())
        && writeCatalogue(folder + "LinearUnit.xml", "LinearUnits", "LinearUnit", {"Name", "MetersPerUnit"},
                          byName(linearUnits, "Meter"));
    if (!ok) {
        std::fprintf(stderr, "cannot write the catalogues into %s\n", argv[1]);
        return 1;
    }
    std::printf("%d datums, %d angular units, %d prime meridians, %d projections, %d linear units\n",
                int(datums.size()), int(angularUnits.size()), int(primeMeridians.size()),
                int(projections.size()), int(linearUnits.size()));
    return 0;
}
