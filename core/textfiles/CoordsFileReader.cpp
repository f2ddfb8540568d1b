#include "textfiles/CoordsFileReader.h"

#include <QFile>
#include <QTextStream>
#include <QVector>

#include <cmath>

namespace {

// Splits `line` at `sep`, dropping empty pieces, into `pieces` (reused from
// line to line: a million lines must not mean a million lists). Without a
// separator the line is one piece.
void splitLine(const QString& line, QChar sep, bool hasSep, QVector<QStringRef>& pieces)
{
    pieces.clear();
    if (!hasSep) {
        if (!line.isEmpty())
            pieces.append(QStringRef(&line));
        return;
    }
    const QChar* data = line.constData();
    const int size = line.size();
    int start = 0;
    for (int i = 0; i <= size; ++i) {
        if (i == size || data[i] == sep) {
            if (i > start)
                pieces.append(QStringRef(&line, start, i - start));
            start = i + 1;
        }
    }
}

// True when the whole file is valid UTF-8 and not plain ASCII (or starts
// with a UTF-8 byte order mark). Such a file read as GBK would turn its
// Chinese point names into garbage that the output would then carry.
bool isUtf8Text(QFile& file)
{
    char buffer[1 << 16];
    int pending = 0;  // continuation bytes still expected
    bool nonAscii = false;
    bool first = true;
    qint64 n;
    while ((n = file.read(buffer, sizeof buffer)) > 0) {
        const auto* b = reinterpret_cast<const unsigned char*>(buffer);
        if (first && n >= 3 && b[0] == 0xef && b[1] == 0xbb && b[2] == 0xbf)
            return true;
        first = false;
        for (qint64 i = 0; i < n; ++i) {
            const unsigned char c = b[i];
            if (pending > 0) {
                if ((c & 0xc0) != 0x80)
                    return false;
                --pending;
            } else if (c >= 0x80) {
                nonAscii = true;
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
    return nonAscii && pending == 0;
}

bool toCoordinate(const QStringRef& text, double* value)
{
    bool ok = false;
    *value = text.toDouble(&ok);
    return ok && std::isfinite(*value);
}

} // namespace

void CoordsFileReader::Clear()
{
    m_points.clear();
    m_points.shrink_to_fit();
    m_format = TextFileFormat();
    m_hasTitle = false;
    m_titleLine.clear();
    m_stopLine = 0;
    m_skipped = 0;
    m_skippedNumbers.clear();
    m_badHeights = 0;
    m_badHeightNumbers.clear();
}

int CoordsFileReader::Read(const QString& path, const QString& record, const Progress& progress)
{
    Clear();

    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return CannotOpen;
    const bool utf8 = isUtf8Text(file);
    file.seek(0);
    QTextStream in(&file);
    in.setCodec(utf8 ? "UTF-8" : "GBK");

    if (record.isEmpty())
        return BadData;
    m_format = TextFileFormat::FromRecord(record);
    const int expected = m_format.ColumnCount();
    const bool hasSep = !m_format.separator.isEmpty();
    const QChar sep = hasSep ? m_format.separator.at(0) : QChar();
    const int eastCol = m_format.eastColumn;
    const int northCol = m_format.northColumn;
    const int heightCol = m_format.heightColumn;
    const int idCol = m_format.pointIdColumn;
    const QVector<int>& otherCols = m_format.otherColumns;

    qint64 lineNo = 0;
    if (m_format.hasTitle) {
        m_hasTitle = true;
        m_titleLine = in.readLine();
        ++lineNo;
    }

    const qint64 total = file.size();
    QString line;
    QVector<QStringRef> pieces;
    while (in.readLineInto(&line)) {
        ++lineNo;
        if (progress && (lineNo & 0x3fff) == 0)
            progress(file.pos(), total);

        splitLine(line, sep, hasSep, pieces);
        const int count = pieces.size();
        if (count < 2 || count != expected) {
            m_stopLine = lineNo;
            m_points.clear();
            m_points.shrink_to_fit();
            return BadData;
        }

        double east = 0.0, north = 0.0;
        const bool eastOk = eastCol < count && toCoordinate(pieces.at(eastCol), &east);
        const bool northOk = northCol < count && toCoordinate(pieces.at(northCol), &north);
        if (!eastOk || !northOk) {
            if (m_skippedNumbers.size() < size_t(NoteLimit))
                m_skippedNumbers.push_back(lineNo);
            ++m_skipped;
            continue;
        }

        CoordsPoint p;
        p.east = east;
        p.north = north;
        bool heightOk = true;
        if (heightCol < count)
            p.h = pieces.at(heightCol).toDouble(&heightOk);
        if (!heightOk || !std::isfinite(p.h)) {
            if (m_badHeightNumbers.size() < size_t(NoteLimit))
                m_badHeightNumbers.push_back(lineNo);
            ++m_badHeights;
        }
        if (idCol < count)
            p.id = pieces.at(idCol).toString();
        if (!otherCols.isEmpty()) {
            p.others.reserve(otherCols.size());
            for (int c : otherCols) {
                if (c < count)
                    p.others << pieces.at(c).toString();
            }
        }
        m_points.push_back(std::move(p));
    }
    file.close();
    if (progress)
        progress(total, total);
    return m_points.empty() ? BadData : Success;
}
