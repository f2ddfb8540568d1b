#pragma once

#include "textfiles/CoordsPoint.h"
#include "textfiles/TextFileFormat.h"

#include <QString>
#include <QStringRef>
#include <QVector>

/// Takes one data line of a coordinate text file apart as a text-file format
/// says, for the streaming conversion that the file conversion dialog and the
/// command line share.
///
/// A line with fewer than two pieces, or another piece count than the format
/// has columns, stops the reading; a line whose north or east value is not a
/// number is skipped; any other line gives a point.
class CoordsLineParser
{
public:
    enum Outcome { Point, Skipped, Stop };

    explicit CoordsLineParser(const TextFileFormat& format);

    /// Parses `length` characters of `text` from `from` (no line feed).
    /// `badHeight` is set when the height field is not a finite number (the
    /// point keeps what the text reads as, 0 for text).
    Outcome Parse(const QString& text, int from, int length, CoordsPoint* point, bool* badHeight);

    /// The value of a number field as the dialog has always read it
    /// (`QStringRef::toDouble`), with a quicker way for plain decimals such as
    /// "-39.904211" that gives the same double.
    static double ToDouble(const QStringRef& text, bool* ok);

private:
    TextFileFormat m_format;
    int m_expected;
    bool m_hasSep;
    QChar m_sep;
    QVector<QStringRef> m_pieces; ///< reused from line to line
};
