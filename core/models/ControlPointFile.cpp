#include "models/ControlPointFile.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTextCodec>
#include <QTextStream>

namespace {

const char kCodec[] = "GB18030";
const QString kPairMark = QStringLiteral(" -- ");

} // namespace

ControlPointFile::ControlPointFile(Kind kind) : m_kind(kind) {}

int ControlPointFile::CoordinateCount() const
{
    return m_kind == FourParameters ? 4 : 6;
}

int ControlPointFile::ResidualCount() const
{
    return m_kind == FourParameters ? 1 : 2;
}

bool ControlPointFile::IsCommaSeparated(const QString& path)
{
    // The ending counts from the first point of the name, so "a.b.txt" ends
    // in ".b.txt" and "a.b.csv" is not a comma-separated file.
    const QString name = QFileInfo(path).fileName();
    const int dot = name.indexOf(QLatin1Char('.'));
    return dot >= 0 && name.mid(dot).compare(QLatin1String(".csv"), Qt::CaseInsensitive) == 0;
}

QChar ControlPointFile::Separator(const QString& path)
{
    return IsCommaSeparated(path) ? QLatin1Char(',') : QLatin1Char('\t');
}

bool ControlPointFile::Read(const QString& path, const QString& headerText)
{
    m_points.clear();
    m_pair.clear();
    m_empty = true;

    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return false;
    QTextStream in(&file);
    in.setCodec(kCodec);

    const QChar sep = Separator(path);
    const int minParts = 1 + CoordinateCount();
    const int maxParts = minParts + ResidualCount();
    bool first = true;
    while (!in.atEnd()) {
        const QString line = in.readLine();
        m_empty = false;
        if (first) {
            first = false;
            if (m_kind == SevenParameters && line.contains(kPairMark)) {
                m_pair = line;
                continue;
            }
        }
        const QStringList parts = line.split(sep, Qt::SkipEmptyParts);
        if (parts.size() < minParts || parts.size() > maxParts)
            continue;
        if (parts.first() == headerText)
            continue;
        Point point;
        point.number = parts.first();
        point.cells = parts.mid(1, CoordinateCount());
        // Residuals count only when the line has all of them.
        for (int i = 0; i < ResidualCount(); ++i)
            point.cells << (parts.size() == maxParts ? parts.at(minParts + i) : QString());
        m_points << point;
    }
    return true;
}

bool ControlPointFile::Write(const QString& path, const QString& pair, const QString& resultText,
                             const QStringList& headers, const QList<QStringList>& rows, bool* opened) const
{
    QSaveFile file(path);
    const bool isOpen = file.open(QIODevice::WriteOnly | QIODevice::Text);
    if (opened)
        *opened = isOpen;
    if (!isOpen)
        return false;

    const QChar sep = Separator(path);
    QTextStream out(&file);
    out.setCodec(kCodec);
    if (m_kind == SevenParameters)
        out << pair << "\n\n";
    out << resultText << '\n';
    for (const QString& header : headers)
        out << header << sep;
    out << '\n';
    for (const QStringList& row : rows) {
        for (const QString& cell : row)
            out << cell << sep;
        out << '\n';
    }
    out.flush();
    if (out.status() != QTextStream::Ok) {
        file.cancelWriting();
        return false;
    }
    return file.commit();
}
