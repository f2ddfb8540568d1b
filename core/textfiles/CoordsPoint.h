#pragma once

#include <QString>
#include <QStringList>

/// One point of a coordinate text file, in the surveying order: `north` from
/// the "Latitude" column (latitude or X), `east` from the "Longitude" column
/// (longitude or Y), `h` from the height column (0 when the file has none).
struct CoordsPoint
{
    double north = 0.0;
    double east = 0.0;
    double h = 0.0;
    QString id;           ///< the point number, as written
    QStringList others;   ///< the texts of the "other" columns, in column order
};
