#pragma once

#include <QList>
#include <QString>
#include <QStringList>

class QDomDocument;

/// The small XML catalogues of "Coordinate System/spatialreference" in the
/// host's data folder, from which the new-system dialogs offer datums, units,
/// prime meridians and projections. They are read again every time a dialog
/// is built, so an edited catalogue shows at once.
class SpatialReferenceCatalogue
{
public:
    enum Status { Ok, OpenFailed, ParseFailed };

    /// The catalogue folder, built the way the dialogs have always built it
    /// (the doubled separators included).
    static QString Folder();

    /// Opens and parses `path`.
    static Status ReadDocument(const QString& path, QDomDocument* document);

    /// Positional reading: one record per child element of the document
    /// element, of which the texts of the first `fieldCount` child elements
    /// are taken, whatever their names; a short record gives empty texts.
    static Status ReadRecords(const QString& path, int fieldCount, QList<QStringList>* records);

    /// Column `field` of every record.
    static QStringList Column(const QList<QStringList>& records, int field);
};
