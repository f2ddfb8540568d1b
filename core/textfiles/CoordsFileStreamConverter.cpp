#include "textfiles/CoordsFileStreamConverter.h"

#include "io/OrderedPipeline.h"
#include "io/OutputFile.h"
#include "spatialref/CoordinateConversion.h"
#include "textfiles/CoordsFileWriter.h"
#include "textfiles/CoordsLineFormatter.h"
#include "textfiles/CoordsLineParser.h"
#include "textfiles/TextFileFormat.h"

#include <QDir>
#include <QFile>
#include <QIODevice>
#include <QTemporaryFile>
#include <QTextCodec>

#include <algorithm>
#include <iterator>
#include <exception>

namespace {

constexpr qint64 kReadBlock = 1 << 20;

/// The input decoded as a text-mode file through a text stream would be:
/// every carriage return dropped, a byte order mark
/// choosing its Unicode codec, else UTF-8 when the whole file is valid UTF-8
/// and GBK otherwise. While everything read is ASCII no codec is needed (all
/// candidates agree on it), so a plain ASCII file is never scanned twice.
class InputText
{
public:
    bool open(const QString& path)
    {
        m_path = path;
        m_file.setFileName(path);
        return m_file.open(QIODevice::ReadOnly);
    }
    qint64 size() const { return m_file.size(); }
    qint64 position() const { return m_raw; }
    QString error() const { return m_file.errorString(); }

    /// Appends the next block of text: 1, 0 at the end, -1 on a read error.
    int readMore(QString& text)
    {
        const qint64 start = m_raw;
        const qint64 n = m_file.read(m_buffer.data(), kReadBlock);
        if (n < 0)
            return -1;
        if (n == 0)
            return 0;
        m_raw += n;
        char* const b = m_buffer.data();
        const int m = int(std::remove(b, b + n, '\r') - b);
        if (!m_codec) {
            if (start == 0)
                m_codec = QTextCodec::codecForUtfText(QByteArray::fromRawData(b, m), nullptr);
            if (!m_codec) {
                const bool ascii = std::all_of(b, b + m, [](char c) { return (static_cast<unsigned char>(c) & 0x80) == 0; });
                if (ascii) {
                    text.append(QLatin1String(b, m));
                    return 1;
                }
                m_codec = QTextCodec::codecForName(utf8From(start) ? "UTF-8" : "GBK");
                // Text before this block has been read already: a byte order
                // mark from here on is a character, not a header.
                if (start > 0)
                    m_state.flags |= QTextCodec::IgnoreHeader;
            }
        }
        text.append(m_codec->toUnicode(b, m, &m_state));
        return 1;
    }

private:
    /// True when the file is valid UTF-8 from `offset` (where the first
    /// non-ASCII byte's block starts) to its end.
    bool utf8From(qint64 offset)
    {
        QFile scan(m_path);
        if (!scan.open(QIODevice::ReadOnly) || !scan.seek(offset))
            return false;
        std::vector<char> buffer(1 << 16);
        int pending = 0;
        qint64 n;
        while ((n = scan.read(buffer.data(), qint64(buffer.size()))) > 0) {
            const auto* u = reinterpret_cast<const unsigned char*>(buffer.data());
            for (qint64 i = 0; i < n; ++i) {
                const unsigned char c = u[i];
                if (pending > 0) {
                    if ((c & 0xc0) != 0x80)
                        return false;
                    --pending;
                } else if (c >= 0x80) {
                    if (c >= 0xc2 && c <= 0xdf)
                        pending = 1;
                    else if (c >= 0xe0 && c <= 0xef)
                        pending = 2;
                    else if (c >= 0xf0 && c <= 0xf4)
                        pending = 3;
                    else
                        return false;
                }
            }
        }
        return n == 0 && pending == 0;
    }

    QString m_path;
    QFile m_file;
    std::vector<char> m_buffer = std::vector<char>(size_t(kReadBlock));
    qint64 m_raw = 0;
    QTextCodec* m_codec = nullptr;
    QTextCodec::ConverterState m_state;
};

/// Whole lines of text and the number of the first.
struct Chunk
{
    QString text;
    qint64 firstLine = 0;
};

/// What a worker made of a chunk.
struct ChunkResult
{
    QByteArray bytes;
    qint64 stopLine = 0;
    qint64 skipped = 0;
    std::vector<qint64> skippedNumbers;
    qint64 badHeights = 0;
    std::vector<qint64> badHeightNumbers;
    qint64 points = 0;
    qint64 failed = 0;
    CoordsPoint firstFailed;
    qint64 unshifted = 0;
    qint64 notes = 0;
    CoordsPoint firstNotePoint;
    QString firstNote;
    std::vector<CoordsPoint> kept;
    std::vector<char> keptConverted;
};

void noteLine(std::vector<qint64>& numbers, qint64 line)
{
    if (numbers.size() < size_t(CoordsFileStreamConverter::NoteLimit))
        numbers.push_back(line);
}

QByteArray encode(QTextCodec* codec, const QString& text)
{
    // As a text stream writes: no byte order mark.
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    return codec->fromUnicode(text.constData(), text.size(), &state);
}

/// One worker's tools, reused from chunk to chunk.
struct Worker
{
    explicit Worker(const TextFileFormat& format) : parser(format) {}
    CoordsLineParser parser;
    std::vector<CoordsPoint> points;
    std::vector<double> north, east, h;
    std::vector<int> success;
    QString text;
};

} // namespace

struct CoordsFileStreamConverter::Private
{
    int chunkLines = 16384;
    int keep = 0;
    PointCheck check;
    InputText input;
    bool opened = false;

    qint64 stopLine = 0;
    qint64 skipped = 0;
    std::vector<qint64> skippedNumbers;
    qint64 badHeights = 0;
    std::vector<qint64> badHeightNumbers;
    qint64 points = 0;
    qint64 failed = 0;
    CoordsPoint firstFailed;
    qint64 unshifted = 0;
    qint64 notes = 0;
    CoordsPoint firstNotePoint;
    QString firstNote;
    QString readError;
    CoordsPointStore kept;

    void work(Worker& w, const CoordinateConversion* conversion, const CoordsLineFormatter* formatter,
              QTextCodec* codec, Chunk& chunk, ChunkResult& r) const;
    void merge(ChunkResult& r);
};

void CoordsFileStreamConverter::Private::work(Worker& w, const CoordinateConversion* conversion,
                                              const CoordsLineFormatter* formatter, QTextCodec* codec, Chunk& chunk,
                                              ChunkResult& r) const
{
    w.points.clear();
    const QString& t = chunk.text;
    const int size = t.size();
    qint64 line = chunk.firstLine;
    CoordsPoint p;
    for (int pos = 0; pos < size; ++line) {
        const int nl = t.indexOf(QLatin1Char('\n'), pos);
        const int end = nl < 0 ? size : nl;
        int length = end - pos;
        // A text stream's line ends in "\n" or "\r\n".
        if (nl >= 0 && length > 0 && t.at(end - 1) == QLatin1Char('\r'))
            --length;
        bool badHeight = false;
        switch (w.parser.Parse(t, pos, length, &p, &badHeight)) {
        case CoordsLineParser::Stop:
            r.stopLine = line;
            return;
        case CoordsLineParser::Skipped:
            ++r.skipped;
            noteLine(r.skippedNumbers, line);
            break;
        case CoordsLineParser::Point:
            if (badHeight) {
                ++r.badHeights;
                noteLine(r.badHeightNumbers, line);
            }
            w.points.push_back(std::move(p));
            break;
        }
        pos = end + 1;
    }
    const int n = int(w.points.size());
    r.points = n;
    if (check) {
        for (const CoordsPoint& point : w.points) {
            const QString note = check(point);
            if (note.isEmpty())
                continue;
            if (r.notes++ == 0) {
                r.firstNote = note;
                r.firstNotePoint = point;
            }
        }
    }
    // A point's number is below its line's: chunks from further down keep nothing.
    const bool keep = chunk.firstLine <= qint64(this->keep) + 1;
    if (!formatter) {
        if (keep)
            r.kept = w.points;
        return; // only reading
    }

    w.north.resize(size_t(n));
    w.east.resize(size_t(n));
    w.h.resize(size_t(n));
    w.success.assign(size_t(n), 0);
    for (int i = 0; i < n; ++i) {
        w.north[size_t(i)] = w.points[size_t(i)].north;
        w.east[size_t(i)] = w.points[size_t(i)].east;
        w.h[size_t(i)] = w.points[size_t(i)].h;
    }
    if (n > 0) {
        int unshifted = 0;
        conversion->Convert(n, w.north.data(), w.east.data(), w.h.data(), w.success.data(), &unshifted);
        r.unshifted += unshifted;
    }
    w.text.clear();
    for (int i = 0; i < n; ++i) {
        CoordsPoint& point = w.points[size_t(i)];
        const bool converted = w.success[size_t(i)] != 0;
        if (converted) {
            point.north = w.north[size_t(i)];
            point.east = w.east[size_t(i)];
            point.h = w.h[size_t(i)];
            formatter->Append(w.text, point);
        } else if (r.failed++ == 0) {
            r.firstFailed = point;
        }
        if (keep) {
            r.kept.push_back(point);
            r.keptConverted.push_back(char(converted));
        }
    }
    r.bytes = encode(codec, w.text);
}

void CoordsFileStreamConverter::Private::merge(ChunkResult& r)
{
    // Line numbers arrive in order, so the first ones noted are the first of the file.
    skipped += r.skipped;
    for (qint64 n : r.skippedNumbers)
        noteLine(skippedNumbers, n);
    badHeights += r.badHeights;
    for (qint64 n : r.badHeightNumbers)
        noteLine(badHeightNumbers, n);
    points += r.points;
    if (r.failed > 0 && failed == 0)
        firstFailed = r.firstFailed;
    failed += r.failed;
    unshifted += r.unshifted;
    if (r.notes > 0 && notes == 0) {
        firstNote = r.firstNote;
        firstNotePoint = r.firstNotePoint;
    }
    notes += r.notes;
    const size_t room = size_t(keep) - std::min(size_t(keep), kept.Size());
    const size_t n = std::min(room, r.kept.size());
    for (size_t i = 0; i < n; ++i)
        kept.Append(r.kept[i], i >= r.keptConverted.size() || r.keptConverted[i]);
}

CoordsFileStreamConverter::CoordsFileStreamConverter() : d(new Private) {}

CoordsFileStreamConverter::~CoordsFileStreamConverter() = default;

void CoordsFileStreamConverter::SetChunkLines(int lines)
{
    d->chunkLines = std::max(1, lines);
}

void CoordsFileStreamConverter::SetPointCheck(const PointCheck& check)
{
    d->check = check;
}

void CoordsFileStreamConverter::SetKeptPoints(int count)
{
    d->keep = std::max(0, count);
}

bool CoordsFileStreamConverter::Open(const QString& inputPath)
{
    d->opened = d->input.open(inputPath);
    return d->opened;
}

int CoordsFileStreamConverter::Run(const QString& record, const std::vector<const CoordinateConversion*>& conversions,
                                   QIODevice* device, const QString& outputPath, const Progress& progress)
{
    if (!d->opened)
        return CannotOpen;
    if (record.isEmpty() || conversions.empty())
        return BadData;
    const TextFileFormat format = TextFileFormat::FromRecord(record);
    d->kept.Clear();

    // The writer's encoding rule, with its side effect on the locale codec.
    struct LocaleCodec
    {
        bool active;
        ~LocaleCodec()
        {
            if (active)
                QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
        }
    } localeCodec{device != nullptr};
    QTextCodec* codec = nullptr;
    std::unique_ptr<CoordsLineFormatter> formatter;
    if (device) {
        if (CoordsFileWriter::UsesGB18030(outputPath))
            QTextCodec::setCodecForLocale(QTextCodec::codecForName("GB18030"));
        codec = QTextCodec::codecForLocale();
        formatter.reset(new CoordsLineFormatter(record));
    }

    const qint64 total = d->input.size();
    QString pending;
    bool atEnd = false;
    const auto readMore = [&]() {
        const int got = d->input.readMore(pending);
        if (got < 0)
            d->readError = d->input.error();
        atEnd = got <= 0;
        if (progress)
            progress(d->input.position(), total);
        return got >= 0;
    };

    qint64 nextLine = 1;
    if (format.hasTitle) {
        int nl;
        while ((nl = pending.indexOf(QLatin1Char('\n'))) < 0 && !atEnd) {
            if (!readMore())
                return ReadFailed;
        }
        QString title;
        if (nl >= 0) {
            title = pending.left(nl > 0 && pending.at(nl - 1) == QLatin1Char('\r') ? nl - 1 : nl);
            pending.remove(0, nl + 1);
        } else {
            title = pending;
            pending.clear();
        }
        ++nextLine;
        if (device) {
            const QByteArray bytes = encode(codec, title + QLatin1Char('\n'));
            if (device->write(bytes) != bytes.size())
                return WriteFailed;
        }
    }

    std::vector<std::unique_ptr<Worker>> workers;
    for (size_t i = 0; i < conversions.size(); ++i)
        workers.emplace_back(new Worker(format));
    bool writeFailed = false;
    OrderedPipeline<Chunk, ChunkResult> pipeline(
        int(conversions.size()),
        [&](Chunk& chunk, ChunkResult& result, int worker) {
            d->work(*workers[size_t(worker)], conversions[size_t(worker)], formatter.get(), codec, chunk, result);
        },
        [&](ChunkResult& result) {
            if (result.stopLine > 0) {
                d->stopLine = result.stopLine;
                return false;
            }
            d->merge(result);
            if (device && !result.bytes.isEmpty() && device->write(result.bytes) != result.bytes.size()) {
                writeFailed = true;
                return false;
            }
            return true;
        });

    // Cuts the pending text into chunks of whole lines; at the end the rest
    // (a last line without line feed) goes too.
    int scanFrom = 0;
    int lines = 0;
    const auto dispatch = [&]() {
        int start = 0;
        int pos = scanFrom;
        for (;;) {
            const int nl = pending.indexOf(QLatin1Char('\n'), pos);
            if (nl < 0)
                break;
            pos = nl + 1;
            if (++lines == d->chunkLines) {
                if (!pipeline.push(Chunk{pending.mid(start, pos - start), nextLine}))
                    return false;
                nextLine += lines;
                lines = 0;
                start = pos;
            }
        }
        if (atEnd) {
            const bool pushed = start >= pending.size() || pipeline.push(Chunk{pending.mid(start), nextLine});
            pending.clear();
            return pushed;
        }
        // Nothing after `pos` holds a line feed: the next scan starts at the end.
        pending.remove(0, start);
        scanFrom = pending.size();
        return true;
    };

    bool reading = true;
    while (reading) {
        if (!atEnd && !readMore()) {
            pipeline.finish();
            return ReadFailed;
        }
        reading = dispatch() && !atEnd;
    }
    pipeline.finish();
    if (pipeline.failure())
        std::rethrow_exception(pipeline.failure());
    if (d->stopLine > 0)
        return BadData;
    if (writeFailed)
        return WriteFailed;
    if (d->points == 0)
        return BadData;
    return Success;
}

qint64 CoordsFileStreamConverter::StopLine() const { return d->stopLine; }
qint64 CoordsFileStreamConverter::SkippedLines() const { return d->skipped; }
const std::vector<qint64>& CoordsFileStreamConverter::SkippedLineNumbers() const { return d->skippedNumbers; }
qint64 CoordsFileStreamConverter::BadHeights() const { return d->badHeights; }
const std::vector<qint64>& CoordsFileStreamConverter::BadHeightLineNumbers() const { return d->badHeightNumbers; }
qint64 CoordsFileStreamConverter::PointsRead() const { return d->points; }
qint64 CoordsFileStreamConverter::FailedPoints() const { return d->failed; }
qint64 CoordsFileStreamConverter::PointsWithoutDatumShift() const { return d->unshifted; }
const CoordsPoint& CoordsFileStreamConverter::FirstFailedPoint() const { return d->firstFailed; }
qint64 CoordsFileStreamConverter::Notes() const { return d->notes; }
const CoordsPoint& CoordsFileStreamConverter::FirstNotePoint() const { return d->firstNotePoint; }
QString CoordsFileStreamConverter::FirstNote() const { return d->firstNote; }
QString CoordsFileStreamConverter::ReadError() const { return d->readError; }
const CoordsPointStore& CoordsFileStreamConverter::KeptPoints() const { return d->kept; }
CoordsPointStore CoordsFileStreamConverter::TakeKeptPoints()
{
    CoordsPointStore taken = std::move(d->kept);
    d->kept.Clear();
    return taken;
}

int CoordsFileStreamConverter::RunToFile(const QString& record,
                                         const std::vector<const CoordinateConversion*>& conversions,
                                         const QString& output, const QString& encodingPath, QString* error,
                                         const Progress& progress)
{
    // What goes to a pipe, a device or standard output cannot be taken back,
    // so it is gathered in a temporary file first and copied there only once
    // the whole input was accepted.
    OutputFile outputFile(output);
    const bool spool = !outputFile.IsReplacedAtomically();
    QTemporaryFile spoolFile(QDir::tempPath() + QStringLiteral("/coordstransform-XXXXXX"));
    QIODevice* device = nullptr;
    if (spool) {
        if (!spoolFile.open()) {
            *error = QStringLiteral("cannot make a temporary file in \"%1\" for %2: %3")
                         .arg(QDir::tempPath(), outputFile.Name(), spoolFile.errorString());
            return WriteFailed;
        }
        device = &spoolFile;
    } else {
        if (!outputFile.Open(error))
            return WriteFailed;
        device = outputFile.Device();
    }

    const int result = Run(record, conversions, device, encodingPath, progress);
    if (result != Success) {
        outputFile.Cancel();
        if (result == WriteFailed)
            *error = spool ? QStringLiteral("cannot write the temporary file \"%1\": %2")
                                 .arg(spoolFile.fileName(), spoolFile.errorString())
                           : outputFile.WriteError();
        return result;
    }
    if (spool) {
        const QString readBack = QStringLiteral("cannot read back the temporary file \"%1\": %2");
        if (!spoolFile.flush() || !spoolFile.seek(0)) {
            *error = readBack.arg(spoolFile.fileName(), spoolFile.errorString());
            return WriteFailed;
        }
        if (!outputFile.Open(error))
            return WriteFailed;
        std::vector<char> block(1 << 20);
        const qint64 size = spoolFile.size();
        qint64 copied = 0, n;
        while ((n = spoolFile.read(block.data(), qint64(block.size()))) > 0) {
            if (outputFile.Device()->write(block.data(), n) != n) {
                *error = outputFile.WriteError();
                outputFile.Cancel();
                return WriteFailed;
            }
            copied += n;
        }
        if (n < 0 || copied != size) {
            *error = readBack.arg(spoolFile.fileName(), spoolFile.errorString());
            outputFile.Cancel();
            return WriteFailed;
        }
    }
    return outputFile.Commit(error) ? Success : WriteFailed;
}
