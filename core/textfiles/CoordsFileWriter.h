#pragma once

#include "textfiles/CoordsPoint.h"

#include <QString>

class QIODevice;

#include <functional>
#include <vector>

/// Writes converted points in the layout of a text-file format record: the
/// title line first when the input had one, then one line per point with the
/// format's fields in order, numbers with 6 decimals. Shared by the file
/// conversion dialog and the command-line tool, so both write the same bytes.
///
/// Encoding: a path whose part from its first "." on is ".csv" (any case)
/// switches the application's locale codec to GB18030 before writing; the
/// text goes out in the locale codec; afterwards the locale codec is UTF-8.
///
/// The file is replaced whole or not at all (written to a temporary file
/// beside it, then renamed), so a failure never leaves a half-written file.
class CoordsFileWriter
{
public:
    /// Called now and then with the points written so far and their count.
    using Progress = std::function<void(qint64 done, qint64 total)>;

    /// False when the file cannot be written (nothing is changed on disk).
    static bool Write(const QString& path, const QString& record, bool hasTitle, const QString& titleLine,
                      const std::vector<CoordsPoint>& points, const Progress& progress = Progress());

    /// The same bytes into an open device, for outputs that must not be
    /// replaced (a named pipe, standard output); `path` decides the encoding
    /// only. False when a write failed; nothing is committed or closed.
    static bool WriteTo(QIODevice* device, const QString& path, const QString& record, bool hasTitle,
                        const QString& titleLine, const std::vector<CoordsPoint>& points,
                        const Progress& progress = Progress());

    /// True when writing `path` switches to GB18030: the part of the path
    /// from its first "." onwards is ".csv", ignoring case. A folder named
    /// "a.b" therefore keeps a "points.csv" below it in the locale codec.
    static bool UsesGB18030(const QString& path);
};
