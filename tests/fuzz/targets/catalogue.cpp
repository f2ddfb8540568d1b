// The spatial-reference catalogues (spheroids, units, prime meridians,
// projections). The first byte picks how many fields a record is read with.
#include "FuzzInput.h"
#include "spatialref/SpatialReferenceCatalogue.h"

#include <QDomDocument>
#include <QMap>

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    const int fieldCount = 1 + data[0] % 6;
    const QString path = KivFuzz::WriteInput(data + 1, size - 1, QStringLiteral("SPHEROID.xml"));
    QList<QStringList> records;
    if (SpatialReferenceCatalogue::ReadRecords(path, fieldCount, &records) == SpatialReferenceCatalogue::Ok) {
        for (int f = 0; f <= fieldCount; ++f)
            SpatialReferenceCatalogue::Column(records, f);
    }
    // The projection catalogue is walked by name and parameter elements,
    // the way the new projected system dialog lists and fills it.
    QDomDocument document;
    if (SpatialReferenceCatalogue::ReadDocument(path, &document) == SpatialReferenceCatalogue::Ok) {
        const QDomElement root = document.documentElement();
        QStringList names;
        for (QDomNode projection = root.firstChild(); !projection.isNull(); projection = projection.nextSibling())
            for (QDomNode node = projection.firstChild(); !node.isNull(); node = node.nextSibling())
                if (node.nodeName() == QLatin1String("NAME"))
                    names << node.toElement().text();
        QMap<QString, QString> parameters;
        for (QDomElement projection = root.firstChildElement(); !projection.isNull();
             projection = projection.nextSiblingElement()) {
            if (names.isEmpty() || projection.firstChildElement(QStringLiteral("NAME")).text() != names.last())
                continue;
            for (QDomElement parameter = projection.firstChildElement(); !parameter.isNull();
                 parameter = parameter.nextSiblingElement())
                if (parameter.nodeName() != QLatin1String("NAME"))
                    parameters.insert(parameter.attribute(QStringLiteral("key")), parameter.text());
            break;
        }
    }
    return 0;
}
