#pragma once

#include <QMap>
#include <QString>

/// The WKT texts of the systems the new-system dialogs compose from their
/// fields. Every value goes in as its text stands (catalogue texts and
/// typed numbers alike), names in quotation marks, without blanks: the
/// systems users composed before read back the same.
class SystemComposer
{
public:
    /// GEOGCS["name",DATUM["datum",SPHEROID["spheroid",a,1/f]],
    /// PRIMEM["meridian",deg,min,sec],UNIT["unit",radians]]: the prime
    /// meridian carries three numbers and the semi-minor axis is not written.
    static QString Geographic(const QString& name, const QString& datum, const QString& spheroid,
                              const QString& semiMajor, const QString& inverseFlattening, const QString& meridian,
                              const QString& degrees, const QString& minutes, const QString& seconds,
                              const QString& unit, const QString& radiansPerUnit);

    /// PROJCS["name",<geographic>,PROJECTION["projection"],
    /// PARAMETER["key",value],...,UNIT["unit",metres]] with the parameters in
    /// the order of their names.
    static QString Projected(const QString& name, const QString& geographicWkt, const QString& projection,
                             const QMap<QString, QString>& parameters, const QString& unit,
                             const QString& metresPerUnit);
};
