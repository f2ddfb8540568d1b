#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>

namespace KivAdapterUI {

/// The predefined systems that the picker offers, read once per process from
/// PROJ's database: geographic 2D and projected systems of the EPSG and ESRI
/// authorities, sorted by name. Deprecated EPSG entries are left out (EPSG
/// deprecates definitions that were wrong); ESRI entries are all kept, since
/// PROJ marks an ESRI code deprecated once an EPSG twin exists, while ESRI
/// data keeps carrying the ESRI code (ESRI:102100 for Web Mercator).
class SpatialReferenceCatalog
{
public:
    enum Kind { Geographic, Projected };

    struct Entry
    {
        QString code;        ///< "EPSG:4214"
        QString name;        ///< "Beijing 1954"
        Kind kind = Geographic;
        bool deprecated = false;
        QString searchName;  ///< lower case, '_' as blank
        QString searchCode;  ///< "epsg:4214"
        QString number;      ///< "4214"
    };

    /// The process-wide catalogue, built on first use (thread-safe).
    static const SpatialReferenceCatalog& Instance();

    int Count() const { return m_entries.size(); }
    const Entry& At(int index) const { return m_entries.at(index); }
    /// Index of the entry with this code (case-insensitive, blanks around
    /// ignored), or -1.
    int IndexOf(const QString& code) const;

    /// Splits filter text into the words that `Matches` expects.
    static QStringList FilterWords(const QString& text);
    /// True when every word is part of the entry's name (case-insensitive,
    /// '_' and blank alike), or starts its code ("epsg:42", "4214").
    static bool Matches(const Entry& entry, const QStringList& words);

private:
    SpatialReferenceCatalog();

    QVector<Entry> m_entries;
    QHash<QString, int> m_index;  ///< upper-case code -> entry
};

} // namespace KivAdapterUI
