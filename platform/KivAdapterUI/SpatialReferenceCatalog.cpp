#include "KivAdapterUI/SpatialReferenceCatalog.h"

#include <proj.h>

#include <algorithm>

namespace KivAdapterUI {

namespace {

QString searchForm(const QString& text)
{
    QString s = text.toLower();
    s.replace(QLatin1Char('_'), QLatin1Char(' '));
    return s;
}

void readAuthority(PJ_CONTEXT* ctx, const char* authority, QVector<SpatialReferenceCatalog::Entry>& out)
{
    PJ_TYPE types[] = {PJ_TYPE_GEOGRAPHIC_2D_CRS, PJ_TYPE_PROJECTED_CRS};
    PROJ_CRS_LIST_PARAMETERS* params = proj_get_crs_list_parameters_create();
    if (!params)
        return;
    params->types = types;
    params->typesCount = 2;
    params->allow_deprecated = 1;
    int count = 0;
    PROJ_CRS_INFO** list = proj_get_crs_info_list_from_database(ctx, authority, params, &count);
    proj_get_crs_list_parameters_destroy(params);
    if (!list)
        return;
    const bool keepDeprecated = qstrcmp(authority, "ESRI") == 0;
    for (int i = 0; i < count; ++i) {
        const PROJ_CRS_INFO* info = list[i];
        if (!info || !info->auth_name || !info->code || !info->name)
            continue;
        if (info->deprecated && !keepDeprecated)
            continue;
        SpatialReferenceCatalog::Entry e;
        e.number = QString::fromUtf8(info->code);
        e.code = QString::fromUtf8(info->auth_name) + QLatin1Char(':') + e.number;
        e.name = QString::fromUtf8(info->name);
        e.kind = info->type == PJ_TYPE_PROJECTED_CRS ? SpatialReferenceCatalog::Projected
                                                      : SpatialReferenceCatalog::Geographic;
        e.deprecated = info->deprecated != 0;
        e.searchName = searchForm(e.name);
        e.searchCode = e.code.toLower();
        out.append(e);
    }
    proj_crs_info_list_destroy(list);
}

} // namespace

const SpatialReferenceCatalog& SpatialReferenceCatalog::Instance()
{
    static const SpatialReferenceCatalog catalog;
    return catalog;
}

SpatialReferenceCatalog::SpatialReferenceCatalog()
{
    PJ_CONTEXT* ctx = proj_context_create();
    if (!ctx)
        return;
    // A missing or unreadable database leaves the catalogue empty; PROJ's own
    // log line would only confuse the user.
    proj_log_level(ctx, PJ_LOG_NONE);
    readAuthority(ctx, "EPSG", m_entries);
    readAuthority(ctx, "ESRI", m_entries);
    proj_context_destroy(ctx);

    // PROJ lists a few systems twice (once per area of use); keep one.
    std::stable_sort(m_entries.begin(), m_entries.end(), [](const Entry& a, const Entry& b) { return a.code < b.code; });
    m_entries.erase(std::unique(m_entries.begin(), m_entries.end(),
                                [](const Entry& a, const Entry& b) { return a.code == b.code; }),
                    m_entries.end());
    std::sort(m_entries.begin(), m_entries.end(), [](const Entry& a, const Entry& b) {
        const int c = QString::compare(a.name, b.name, Qt::CaseInsensitive);
        if (c != 0)
            return c < 0;
        return a.code < b.code;
    });
    m_index.reserve(m_entries.size());
    for (int i = 0; i < m_entries.size(); ++i)
        m_index.insert(m_entries.at(i).code.toUpper(), i);
}

int SpatialReferenceCatalog::IndexOf(const QString& code) const
{
    return m_index.value(code.trimmed().toUpper(), -1);
}

QStringList SpatialReferenceCatalog::FilterWords(const QString& text)
{
    QStringList words = text.toLower().split(QRegExp(QStringLiteral("\\s+")), Qt::SkipEmptyParts);
    for (QString& w : words)
        w.replace(QLatin1Char('_'), QLatin1Char(' '));
    return words;
}

bool SpatialReferenceCatalog::Matches(const Entry& entry, const QStringList& words)
{
    for (const QString& w : words) {
        if (entry.searchName.contains(w) || entry.searchCode.startsWith(w) || entry.number.startsWith(w))
            continue;
        return false;
    }
    return true;
}

} // namespace KivAdapterUI
