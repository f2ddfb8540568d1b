#include "PointLineConverter.h"

#include "CliSupport.h"

#include "io/OrderedPipeline.h"
#include "spatialref/CoordinateConversion.h"

#include "KivGeometry/CoordFuncLibrary.h"

#include <QIODevice>
#include <QTextCodec>
#include <QTextStream>

#include <charconv>
#include <cmath>
#include <cstring>
#include <algorithm>
#include <limits>

namespace {

constexpr qsizetype kReadBlock = 1 << 20;

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

/// One worker's batch and its conversion object.
struct PointLineConverter::Worker
{
    const CoordinateConversion* conversion = nullptr;
    std::vector<double> north, east, h;
    std::vector<qint64> line;
    std::vector<char> values;    ///< 2 or 3 per point
    std::vector<char> separator; ///< ',', '\t' or ' ' per point
    std::vector<int> success;
    /// Lines of the batch that could not be read, reported with the batch so
    /// that messages come in line order.
    std::vector<std::pair<qint64, QString>> rejects;
};

/// Whole lines and the number of the first.
struct PointLineConverter::Chunk
{
    std::vector<char> bytes;
    qint64 firstLine = 0;
};

/// A chunk's output bytes and messages, written and reported in order.
struct PointLineConverter::ChunkResult
{
    std::vector<char> out;
    QString messages;
    qint64 converted = 0;
    qint64 rejected = 0;
    qint64 unshifted = 0;
};

PointLineConverter::PointLineConverter(const std::vector<const CoordinateConversion*>& conversions,
                                       const Options& options)
    : m_options(options)
{
    for (const CoordinateConversion* conversion : conversions) {
        std::unique_ptr<Worker> w(new Worker);
        w->conversion = conversion;
        w->north.reserve(BatchSize);
        w->east.reserve(BatchSize);
        w->h.reserve(BatchSize);
        w->line.reserve(BatchSize);
        w->values.reserve(BatchSize);
        w->separator.reserve(BatchSize);
        w->success.resize(BatchSize);
        m_workers.push_back(std::move(w));
    }
}

PointLineConverter::~PointLineConverter() = default;

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

void PointLineConverter::handleLine(Worker& w, const char* begin, const char* end, qint64 lineNumber) const
{
    const auto reject = [&w](qint64 number, const QString& message) { w.rejects.emplace_back(number, message); };
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
    w.north.push_back(v[0]);
    w.east.push_back(v[1]);
    w.h.push_back(v[2]);
    w.line.push_back(lineNumber);
    w.values.push_back(char(count));
    w.separator.push_back(separator ? separator : ' ');
}

void PointLineConverter::flushBatch(Worker& w, ChunkResult& result) const
{
    const int n = int(w.north.size());
    // Heights of two-value lines go in as 0; they are not written back.
    if (n > 0) {
        int unshifted = 0;
        w.conversion->Convert(n, w.north.data(), w.east.data(), w.h.data(), w.success.data(), &unshifted);
        result.unshifted += unshifted;
    }
    const QString& prefix = m_options.messagePrefix;
    size_t nextReject = 0;
    const auto reportRejectsBefore = [&](qint64 line) {
        for (; nextReject < w.rejects.size() && w.rejects[nextReject].first < line; ++nextReject) {
            result.messages += prefix + QStringLiteral("line %1: ").arg(w.rejects[nextReject].first)
                               + w.rejects[nextReject].second + QLatin1Char('\n');
            ++result.rejected;
        }
    };
    std::vector<char>& out = result.out;
    for (int i = 0; i < n; ++i) {
        if (!w.success[size_t(i)]) {
            reportRejectsBefore(w.line[size_t(i)]);
            result.messages += prefix + QStringLiteral("line %1: cannot convert this point\n").arg(w.line[size_t(i)]);
            ++result.rejected;
            continue;
        }
        const char separator = w.separator[size_t(i)];
        appendFixed(out, w.north[size_t(i)], m_options.precisionXY);
        out.push_back(separator);
        appendFixed(out, w.east[size_t(i)], m_options.precisionXY);
        if (w.values[size_t(i)] == 3) {
            out.push_back(separator);
            appendFixed(out, w.h[size_t(i)], m_options.precisionH);
        }
        out.push_back('\n');
        ++result.converted;
    }
    reportRejectsBefore(std::numeric_limits<qint64>::max());
    w.rejects.clear();
    w.north.clear();
    w.east.clear();
    w.h.clear();
    w.line.clear();
    w.values.clear();
    w.separator.clear();
}

void PointLineConverter::convertChunk(Worker& w, const Chunk& chunk, ChunkResult& result) const
{
    const char* p = chunk.bytes.data();
    const char* const end = p + chunk.bytes.size();
    qint64 lineNumber = chunk.firstLine;
    result.out.reserve(chunk.bytes.size() + chunk.bytes.size() / 2);
    while (p < end) {
        const char* nl = static_cast<const char*>(std::memchr(p, '\n', size_t(end - p)));
        if (!nl)
            nl = end; // the last line without a line feed
        handleLine(w, p, nl, lineNumber++);
        if (w.north.size() >= size_t(BatchSize) || w.rejects.size() >= size_t(BatchSize))
            flushBatch(w, result);
        p = nl < end ? nl + 1 : end;
    }
    flushBatch(w, result);
}

bool PointLineConverter::process(QIODevice* input, const Sink& sink, QTextStream& err)
{
    OrderedPipeline<Chunk, ChunkResult> pipeline(
        int(m_workers.size()),
        [this](Chunk& chunk, ChunkResult& result, int worker) { convertChunk(*m_workers[size_t(worker)], chunk, result); },
        [&](ChunkResult& result) {
            if (!result.messages.isEmpty())
                err << result.messages;
            m_converted += result.converted;
            m_rejected += result.rejected;
            m_unshifted += result.unshifted;
            if (!result.out.empty() && !sink(result.out.data(), qsizetype(result.out.size()))) {
                m_writeFailed = true;
                return false;
            }
            return true;
        });

    std::vector<char> buffer(2 * kReadBlock);
    size_t have = 0;
    qint64 lineNumber = 0;
    bool eof = false;
    bool start = true;
    const int chunkLines = std::max(1, m_options.chunkLines);
    while (!eof) {
        if (buffer.size() - have < size_t(kReadBlock))
            buffer.resize(have + 2 * kReadBlock); // a line longer than a block
        const qint64 got = input->read(buffer.data() + have, kReadBlock);
        if (got < 0) {
            // What was read before goes out first, so the messages stay in order.
            pipeline.finish();
            err << m_options.messagePrefix << "cannot read the input: " << input->errorString() << '\n';
            return false;
        }
        if (got == 0)
            eof = true;
        have += size_t(got);

        const char* p = buffer.data();
        const char* end = p + have;
        // Editors on Windows start UTF-8 files with a byte-order mark.
        if (start && have >= 3) {
            if (std::memcmp(p, "\xEF\xBB\xBF", 3) == 0)
                p += 3;
            start = false;
        }
        // Whole lines, at most chunkLines of them per chunk; at the end of
        // the input the last line needs no line feed.
        while (p < end) {
            const char* cut = p;
            int lines = 0;
            while (lines < chunkLines && cut < end) {
                const char* nl = static_cast<const char*>(std::memchr(cut, '\n', size_t(end - cut)));
                if (!nl) {
                    if (eof)
                        cut = end, ++lines;
                    break;
                }
                cut = nl + 1;
                ++lines;
            }
            if (lines == 0)
                break;
            Chunk chunk;
            chunk.bytes.assign(p, cut);
            chunk.firstLine = lineNumber + 1;
            lineNumber += lines;
            p = cut;
            if (!pipeline.push(std::move(chunk)))
                break;
        }
        if (pipeline.stopped())
            break;
        if (p != buffer.data())
            start = false;
        const size_t rest = size_t(end - p);
        if (rest > 0 && p != buffer.data())
            std::memmove(buffer.data(), p, rest);
        have = rest;
    }
    const bool finished = pipeline.finish();
    if (pipeline.failure())
        std::rethrow_exception(pipeline.failure());
    return finished && !m_writeFailed;
}
