#pragma once

#include <QString>

/// The encoding rule of written coordinate files (the stream converter
/// writes them; `CoordsLineFormatter` lays out each line): a path whose part
/// from its first "." on is ".csv" (any case) switches the application's
/// locale codec to GB18030 before writing; the text goes out in the locale
/// codec; afterwards the locale codec is UTF-8.
class CoordsFileWriter
{
public:
    /// True when writing `path` switches to GB18030: the part of the path
    /// from its first "." onwards is ".csv", ignoring case. A folder named
    /// "a.b" therefore keeps a "points.csv" below it in the locale codec.
    static bool UsesGB18030(const QString& path);
};
