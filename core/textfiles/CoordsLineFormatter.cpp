#include "textfiles/CoordsLineFormatter.h"

#include <charconv>
#include <cmath>

CoordsLineFormatter::CoordsLineFormatter(const QString& record)
{
    const TextFileFormat format = TextFileFormat::FromRecord(record);
    for (const QString& field : format.fields)
        m_kinds << TextFileFormat::KindOf(field);
    m_separator = format.separator;
}

void CoordsLineFormatter::AppendFixed6(QString& out, double value)
{
    // Both ways give the correctly rounded digits, except that Qt rounds an
    // exact half up where std::to_chars rounds it to even. An exact half at
    // the 7th decimal is an odd multiple of 1/128. Values that print as zero
    // (the sign of "-0.000000"), huge ones and non-numbers are left to Qt.
    const double magnitude = std::fabs(value);
    const double scaled = value * 128.0;
    const bool half = scaled == std::trunc(scaled) && std::fmod(scaled, 2.0) != 0.0;
    if (std::isfinite(value) && magnitude >= 1e-6 && magnitude < 1e15 && !half) {
        char buffer[40];
        const auto result = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, 6);
        if (result.ec == std::errc()) {
            out.append(QLatin1String(buffer, int(result.ptr - buffer)));
            return;
        }
    }
    out += QString::number(value, 'f', 6);
}

void CoordsLineFormatter::Append(QString& out, const CoordsPoint& p) const
{
    const int last = m_kinds.size() - 1;
    int other = 0;
    for (int i = 0; i <= last; ++i) {
        switch (m_kinds.at(i)) {
        case TextFileFormat::PointID: out += p.id; break;
        case TextFileFormat::Latitude: AppendFixed6(out, p.north); break;
        case TextFileFormat::Longitude: AppendFixed6(out, p.east); break;
        case TextFileFormat::Altitude: AppendFixed6(out, p.h); break;
        case TextFileFormat::Other:
            if (other < p.others.size())
                out += p.others.at(other);
            ++other;
            break;
        case TextFileFormat::Unknown: break;
        }
        if (i != last)
            out += m_separator;
    }
    out += QLatin1Char('\n');
}
