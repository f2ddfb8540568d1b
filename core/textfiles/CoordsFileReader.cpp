#include "textfiles/CoordsFileReader.h"

#include "textfiles/CoordsLineParser.h"

#include <QFile>
#include <QTextStream>

namespace {

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
    CoordsLineParser parser(m_format);

    qint64 lineNo = 0;
    if (m_format.hasTitle) {
        m_hasTitle = true;
        m_titleLine = in.readLine();
        ++lineNo;
    }

    const qint64 total = file.size();
    QString line;
    CoordsPoint p;
    while (in.readLineInto(&line)) {
        ++lineNo;
        if (progress && (lineNo & 0x3fff) == 0)
            progress(file.pos(), total);

        bool badHeight = false;
        const CoordsLineParser::Outcome outcome = parser.Parse(line, 0, line.size(), &p, &badHeight);
        if (outcome == CoordsLineParser::Stop) {
            m_stopLine = lineNo;
            m_points.clear();
            m_points.shrink_to_fit();
            return BadData;
        }
        if (outcome == CoordsLineParser::Skipped) {
            if (m_skippedNumbers.size() < size_t(NoteLimit))
                m_skippedNumbers.push_back(lineNo);
            ++m_skipped;
            continue;
        }
        if (badHeight) {
            if (m_badHeightNumbers.size() < size_t(NoteLimit))
                m_badHeightNumbers.push_back(lineNo);
            ++m_badHeights;
        }
        m_points.push_back(std::move(p));
    }
    file.close();
    if (progress)
        progress(total, total);
    return m_points.empty() ? BadData : Success;
}
