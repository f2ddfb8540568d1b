#include "PointLineConverter.h"

#include "CliSupport.h"

#include "spatialref/CoordinateConversion.h"

#include "KivGeometry/CoordFuncLibrary.h"

#include <QIODevice>
#include <QTextCodec>
#include <QTextStream>

#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

namespace {

constexpr qsizetype kReadBlock = 1 << 20;
constexpr size_t kWriteBlock = 1 << 20;

inline bool isSeparator(char c)
{
    return c == ' ' || c == '\t' || c == ',';
}

/// Raw bytes of the input as text for messages: UTF-8, or GB18030 when the
/// bytes are not UTF-8 (files written on Chinese desktops).
QString decode(const char* begin, const char* end)
{
    const int size = int(end - begin);
    QTextCodec::ConverterState state;
    QString text = QTextCodec::codecForName("UTF-8")->toUnicode(begin, size, &state);
    if (state.invalidChars > 0)
        text = QTextCodec::codecForName("GB18030")->toUnicode(begin, size);
    return text;
}

} // namespace

PointLineConverter::PointLineConverter(const CoordinateConversion& conversion, const Options& options)
    : m_conversion(conversion), m_options(options)
{
    m_north.reserve(BatchSize);
    m_east.reserve(BatchSize);
    m_h.reserve(BatchSize);
    m_line.reserve(BatchSize);
    m_values.reserve(BatchSize);
    m_separator.reserve(BatchSize);
    m_success.resize(BatchSize);
    m_out.reserve(kWriteBlock + 4096);
}

bool PointLineConverter::parseNumber(const char* begin, const char* end, double* value)
{
    // from_chars takes no leading '+'.
    if (begin < end && *begin == '+') {
        ++begin;
        if (begin < end && (*begin == '-' || *begin == '+'))
            return false;
    }
    if (begin == end)
        return false;
    double v = 0.0;
    const auto result = std::from_chars(begin, end, v, std::chars_format::general);
    if (result.ec != std::errc() || result.ptr != end || !std::isfinite(v))
        return false;
    *value = v;
    return true;
}

void PointLineConverter::appendFixed(std::vector<char>& out, double value, int decimals)
{
    char buffer[400];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, decimals);
    if (result.ec != std::errc()) {
        // Beyond 1e300 or so: not a coordinate; keep the line readable anyway.
        const auto fallback = std::to_chars(buffer, buffer + sizeof buffer, value);
        out.insert(out.end(), buffer, fallback.ptr);
        return;
    }
    out.insert(out.end(), buffer, result.ptr);
}

bool PointLineConverter::parseValue(const char* begin, const char* end, bool angle, double* value) const
{
    if (parseNumber(begin, end, value))
        return true;
    if (!angle)
        return false;
    bool ok = false;
    const double degrees = KivGeometry::CoordFuncLibrary::ConvertDegMinSecToDeg(decode(begin, end), &ok);
    if (!ok || !std::isfinite(degrees))
        return false;
    *value = degrees;
    return true;
}

void PointLineConverter::reject(qint64 lineNumber, const QString& message)
{
    m_rejects.emplace_back(lineNumber, message);
    ++m_rejected;
}

void PointLineConverter::handleLine(const char* begin, const char* end, qint64 lineNumber)
{
    if (end > begin && end[-1] == '\r')
        --end;
    const char* pieces[4][2];
    int count = 0;
    char separator = 0;
    const char* p = begin;
    while (p < end) {
        while (p < end && isSeparator(*p)) {
            if (*p == ',' || (*p == '\t' && separator != ','))
                separator = *p;
            ++p;
        }
        if (p == end)
            break;
        const char* start = p;
        while (p < end && !isSeparator(*p))
            ++p;
        if (count < 4) {
            pieces[count][0] = start;
            pieces[count][1] = p;
        }
        ++count;
    }
    if (count == 0)
        return;
    if (count < 2 || count > 3) {
        reject(lineNumber, QStringLiteral("expected \"X Y [H]\": \"%1\"").arg(decode(begin, end)));
        return;
    }
    double v[3] = {0.0, 0.0, 0.0};
    for (int i = 0; i < count; ++i) {
        const bool angle = m_options.angularInput && i < 2;
        if (!parseValue(pieces[i][0], pieces[i][1], angle, &v[i])) {
            reject(lineNumber, QStringLiteral("%1: \"%2\"")
                                   .arg(angle ? QLatin1String("not an angle") : QLatin1String("not a number"),
                                        decode(pieces[i][0], pieces[i][1])));
            return;
        }
    }
    if (std::isfinite(m_options.codeCentralMeridian)) {
        const int zone = KivGeometry::CoordFuncLibrary::ZoneNumberOf(v[1]);
        const QString mismatch = zone > 0 ? CliSupport::zoneMismatch(zone, m_options.codeCentralMeridian) : QString();
        if (!mismatch.isEmpty()) {
            reject(lineNumber, mismatch);
            return;
        }
    }
    m_north.push_back(v[0]);
    m_east.push_back(v[1]);
    m_h.push_back(v[2]);
    m_line.push_back(lineNumber);
    m_values.push_back(char(count));
    m_separator.push_back(separator ? separator : ' ');
}

bool PointLineConverter::flushOutput(const Sink& sink, QTextStream&, bool force)
{
    if (m_out.empty() || (!force && m_out.size() < kWriteBlock))
        return true;
    const bool written = sink(m_out.data(), qsizetype(m_out.size()));
    m_out.clear();
    if (!written)
        m_writeFailed = true;
    return written;
}

bool PointLineConverter::flushBatch(const Sink& sink, QTextStream& err)
{
    const int n = int(m_north.size());
    // Heights of two-value lines go in as 0; they are not written back.
    if (n > 0)
        m_conversion.Convert(n, m_north.data(), m_east.data(), m_h.data(), m_success.data());
    size_t nextReject = 0;
    const auto reportRejectsBefore = [&](qint64 line) {
        for (; nextReject < m_rejects.size() && m_rejects[nextReject].first < line; ++nextReject) {
            err << m_options.messagePrefix << "line " << m_rejects[nextReject].first << ": "
                << m_rejects[nextReject].second << '\n';
        }
    };
    for (int i = 0; i < n; ++i) {
        if (!m_success[i]) {
            reportRejectsBefore(m_line[i]);
            err << m_options.messagePrefix << "line " << m_line[i] << ": cannot convert this point\n";
            ++m_rejected;
            continue;
        }
        const char separator = m_separator[i];
        appendFixed(m_out, m_north[i], m_options.precisionXY);
        m_out.push_back(separator);
        appendFixed(m_out, m_east[i], m_options.precisionXY);
        if (m_values[i] == 3) {
            m_out.push_back(separator);
            appendFixed(m_out, m_h[i], m_options.precisionH);
        }
        m_out.push_back('\n');
        ++m_converted;
        if (!flushOutput(sink, err, false))
            return false;
    }
    reportRejectsBefore(std::numeric_limits<qint64>::max());
    m_rejects.clear();
    m_north.clear();
    m_east.clear();
    m_h.clear();
    m_line.clear();
    m_values.clear();
    m_separator.clear();
    return true;
}

bool PointLineConverter::process(QIODevice* input, const Sink& sink, QTextStream& err)
{
    std::vector<char> buffer(2 * kReadBlock);
    size_t have = 0;
    qint64 lineNumber = 0;
    bool eof = false;
    while (!eof) {
        if (buffer.size() - have < size_t(kReadBlock))
            buffer.resize(have + 2 * kReadBlock); // a line longer than a block
        const qint64 got = input->read(buffer.data() + have, kReadBlock);
        if (got < 0) {
            err << m_options.messagePrefix << "cannot read the input: " << input->errorString() << '\n';
            return false;
        }
        if (got == 0)
            eof = true;
        have += size_t(got);

        const char* p = buffer.data();
        const char* end = p + have;
        // Editors on Windows start UTF-8 files with a byte-order mark.
        if (lineNumber == 0 && have >= 3 && std::memcmp(p, "\xEF\xBB\xBF", 3) == 0)
            p += 3;
        while (p < end) {
            const char* nl = static_cast<const char*>(std::memchr(p, '\n', size_t(end - p)));
            if (!nl) {
                if (!eof)
                    break;
                nl = end; // last line without a line feed
            }
            handleLine(p, nl, ++lineNumber);
            if ((m_north.size() >= size_t(BatchSize) || m_rejects.size() >= size_t(BatchSize))
                && !flushBatch(sink, err))
                return false;
            p = nl < end ? nl + 1 : end;
        }
        const size_t rest = size_t(end - p);
        if (rest > 0 && p != buffer.data())
            std::memmove(buffer.data(), p, rest);
        have = rest;
    }
    return flushBatch(sink, err) && flushOutput(sink, err, true);
}
