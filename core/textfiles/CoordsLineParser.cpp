#include "textfiles/CoordsLineParser.h"

#include <charconv>
#include <cmath>

CoordsLineParser::CoordsLineParser(const TextFileFormat& format)
    : m_format(format),
      m_expected(format.ColumnCount()),
      m_hasSep(!format.separator.isEmpty()),
      m_sep(m_hasSep ? format.separator.at(0) : QChar())
{
}

double CoordsLineParser::ToDouble(const QStringRef& text, bool* ok)
{
    // Both this and Qt round the decimal text correctly to the nearest
    // double, so a plain decimal gives the same value either way. Anything
    // else (signs, exponents, blanks, leading zeros, zero, long texts) goes
    // to Qt, which decides what it accepts.
    const int n = text.size();
    if (n > 0 && n <= 24) {
        char buffer[24];
        const QChar* c = text.constData();
        int i = 0;
        if (c[0] == QLatin1Char('-')) {
            buffer[0] = '-';
            i = 1;
        }
        const int intStart = i;
        while (i < n && c[i] >= QLatin1Char('0') && c[i] <= QLatin1Char('9')) {
            buffer[i] = char(c[i].unicode());
            ++i;
        }
        const int intDigits = i - intStart;
        bool plain = intDigits > 0 && (intDigits == 1 || buffer[intStart] != '0');
        if (plain && i < n) {
            plain = c[i] == QLatin1Char('.');
            buffer[i] = '.';
            const int fracStart = ++i;
            while (i < n && c[i] >= QLatin1Char('0') && c[i] <= QLatin1Char('9')) {
                buffer[i] = char(c[i].unicode());
                ++i;
            }
            plain = plain && i > fracStart && i == n;
        }
        if (plain) {
            double value = 0.0;
            const auto result = std::from_chars(buffer, buffer + n, value);
            if (result.ec == std::errc() && result.ptr == buffer + n && value != 0.0 && std::isfinite(value)) {
                if (ok)
                    *ok = true;
                return value;
            }
        }
    }
    return text.toDouble(ok);
}

CoordsLineParser::Outcome CoordsLineParser::Parse(const QString& text, int from, int length, CoordsPoint* point,
                                                  bool* badHeight)
{
    // Split at the separator, dropping empty pieces; without a separator the
    // line is one piece.
    m_pieces.clear();
    if (!m_hasSep) {
        if (length > 0)
            m_pieces.append(QStringRef(&text, from, length));
    } else {
        const QChar* data = text.constData();
        const int end = from + length;
        int start = from;
        for (int i = from; i <= end; ++i) {
            if (i == end || data[i] == m_sep) {
                if (i > start)
                    m_pieces.append(QStringRef(&text, start, i - start));
                start = i + 1;
            }
        }
    }
    const int count = m_pieces.size();
    if (count < 2 || count != m_expected)
        return Stop;

    const auto coordinate = [](const QStringRef& piece, double* value) {
        bool ok = false;
        *value = ToDouble(piece, &ok);
        return ok && std::isfinite(*value);
    };
    double east = 0.0, north = 0.0;
    const bool eastOk = m_format.eastColumn < count && coordinate(m_pieces.at(m_format.eastColumn), &east);
    const bool northOk = m_format.northColumn < count && coordinate(m_pieces.at(m_format.northColumn), &north);
    if (!eastOk || !northOk)
        return Skipped;

    CoordsPoint& p = *point;
    p.east = east;
    p.north = north;
    p.h = 0.0;
    bool heightOk = true;
    if (m_format.heightColumn < count)
        p.h = ToDouble(m_pieces.at(m_format.heightColumn), &heightOk);
    *badHeight = !heightOk || !std::isfinite(p.h);
    p.id.clear();
    if (m_format.pointIdColumn < count)
        p.id = m_pieces.at(m_format.pointIdColumn).toString();
    p.others.clear();
    if (!m_format.otherColumns.isEmpty()) {
        p.others.reserve(m_format.otherColumns.size());
        for (int c : m_format.otherColumns) {
            if (c < count)
                p.others << m_pieces.at(c).toString();
        }
    }
    return Point;
}
