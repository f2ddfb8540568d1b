#include "textfiles/CoordsFileWriter.h"

#include "textfiles/CoordsLineFormatter.h"

#include <QSaveFile>
#include <QTextCodec>
#include <QTextStream>

bool CoordsFileWriter::UsesGB18030(const QString& path)
{
    const int dot = path.indexOf(QLatin1Char('.'));
    return dot >= 0 && path.midRef(dot).compare(QLatin1String(".csv"), Qt::CaseInsensitive) == 0;
}

bool CoordsFileWriter::Write(const QString& path, const QString& record, bool hasTitle, const QString& titleLine,
                             const std::vector<CoordsPoint>& points, const Progress& progress)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text))
        return false;
    const bool written = WriteTo(&file, path, record, hasTitle, titleLine, points, progress);
    if (!written) {
        file.cancelWriting();
        return false;
    }
    return file.commit();
}

bool CoordsFileWriter::WriteTo(QIODevice* file, const QString& path, const QString& record, bool hasTitle,
                               const QString& titleLine, const std::vector<CoordsPoint>& points,
                               const Progress& progress)
{
    if (UsesGB18030(path))
        QTextCodec::setCodecForLocale(QTextCodec::codecForName("GB18030"));

    QTextStream out(file);
    out.setCodec(QTextCodec::codecForLocale());
    if (hasTitle)
        out << titleLine << "\n";

    const CoordsLineFormatter formatter(record);
    const qint64 total = static_cast<qint64>(points.size());
    QString line;
    qint64 done = 0;
    for (const CoordsPoint& p : points) {
        line.clear();
        formatter.Append(line, p);
        out << line;
        if ((++done & 0x3fff) == 0) {
            if (out.status() != QTextStream::Ok)
                break; // a full disk: no point in formatting the rest
            if (progress)
                progress(done, total);
        }
    }
    out.flush();
    const bool ok = out.status() == QTextStream::Ok;
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    if (progress)
        progress(total, total);
    return ok;
}
