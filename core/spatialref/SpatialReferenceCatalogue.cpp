#include "spatialref/SpatialReferenceCatalogue.h"

#include "KivUI/EnvironmentSetting.h"

#include <QDomDocument>
#include <QFile>

QString SpatialReferenceCatalogue::Folder()
{
    return KivUI::EnvironmentSetting::Instance()->GetDataDir() + "//Coordinate System//spatialreference";
}

SpatialReferenceCatalogue::Status SpatialReferenceCatalogue::ReadDocument(const QString& path, QDomDocument* document)
{
    // The path stays a QString all the way, so a data folder below a
    // non-ASCII folder opens whatever the process's locale.
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return OpenFailed;
    if (!document->setContent(&file))
        return ParseFailed;
    return Ok;
}

SpatialReferenceCatalogue::Status SpatialReferenceCatalogue::ReadRecords(const QString& path, int fieldCount,
                                                                         QList<QStringList>* records)
{
    QDomDocument document;
    const Status status = ReadDocument(path, &document);
    if (status != Ok)
        return status;
    for (QDomElement record = document.documentElement().firstChildElement(); !record.isNull();
         record = record.nextSiblingElement()) {
        QStringList values;
        QDomElement field = record.firstChildElement();
        for (int i = 0; i < fieldCount; ++i) {
            values << (field.isNull() ? QString() : field.text());
            if (!field.isNull())
                field = field.nextSiblingElement();
        }
        records->append(values);
    }
    return Ok;
}

QStringList SpatialReferenceCatalogue::Column(const QList<QStringList>& records, int field)
{
    QStringList column;
    for (const QStringList& record : records)
        column << record.value(field);
    return column;
}
