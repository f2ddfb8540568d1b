#include "spatialref/SystemComposer.h"

QString SystemComposer::Geographic(const QString& name, const QString& datum, const QString& spheroid,
                                   const QString& semiMajor, const QString& inverseFlattening,
                                   const QString& meridian, const QString& degrees, const QString& minutes,
                                   const QString& seconds, const QString& unit, const QString& radiansPerUnit)
{
    QString wkt;
    wkt += "GEOGCS[\"" + name + "\",";
    wkt += "DATUM[\"" + datum + "\",";
    wkt += "SPHEROID[\"" + spheroid + "\",";
    wkt += semiMajor + "," + inverseFlattening + "]],";
    wkt += "PRIMEM[\"" + meridian + "\",";
    wkt += degrees + "," + minutes + "," + seconds + "],";
    wkt += "UNIT[\"" + unit + "\"," + radiansPerUnit + "]]";
    return wkt;
}

QString SystemComposer::Projected(const QString& name, const QString& geographicWkt, const QString& projection,
                                  const QMap<QString, QString>& parameters, const QString& unit,
                                  const QString& metresPerUnit)
{
    QString wkt = "PROJCS[\"" + name + "\"," + geographicWkt + ",PROJECTION[\"" + projection + "\"],";
    for (auto it = parameters.cbegin(); it != parameters.cend(); ++it)
        wkt += "PARAMETER[\"" + it.key() + "\"," + it.value() + "],";
    wkt += "UNIT[\"" + unit + "\"," + metresPerUnit + "]]";
    return wkt;
}
