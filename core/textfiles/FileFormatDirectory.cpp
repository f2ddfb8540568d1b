#include "textfiles/FileFormatDirectory.h"

#include "textfiles/TextFileFormat.h"

#include <QCoreApplication>
#include <QDir>
#include <QDomDocument>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTextStream>
#include <QXmlStreamWriter>

QString FileFormatDirectory::Path()
{
    const QString dir =
        QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/..") + QStringLiteral("/data/FileFormat"));
    if (!QFileInfo::exists(dir))
        QDir().mkpath(dir);
    return dir;
}

QStringList FileFormatDirectory::ListFiles(const QString& dir)
{
    QStringList files;
    const QFileInfoList entries =
        QDir(dir).entryInfoList(QDir::Files | QDir::NoSymLinks | QDir::Hidden, QDir::Unsorted);
    for (const QFileInfo& info : entries) {
        if (info.suffix() == QLatin1String("xml"))
            files << info.absoluteFilePath();
    }
    return files;
}

bool FileFormatDirectory::LoadRecord(const QString& file, QString* record)
{
    QFile f(file);
    if (!f.open(QIODevice::ReadOnly | QIODevice::Text))
        return false;
    const QByteArray content = f.readAll();
    f.close();

    QDomDocument doc;
    if (!doc.setContent(content))
        return false;
    const QDomElement root = doc.documentElement();
    if (root.isNull())
        return false;

    QString fieldList, separator, title, fileName;
    for (QDomElement e = root.firstChildElement(); !e.isNull(); e = e.nextSiblingElement()) {
        if (e.hasAttribute(QStringLiteral("value")))
            fieldList = e.attribute(QStringLiteral("value"));
        if (e.hasAttribute(QStringLiteral("separator"))) {
            separator = e.attribute(QStringLiteral("separator"));
            if (separator.isNull())
                separator = QStringLiteral("");  // present but empty: still quoted in the record
        }
        if (e.hasAttribute(QStringLiteral("bUseTitle")))
            title = e.attribute(QStringLiteral("bUseTitle"));
        if (e.hasAttribute(QStringLiteral("FileName")))
            fileName = e.attribute(QStringLiteral("FileName"));
    }
    if (record)
        *record = TextFileFormat::RecordText(fileName, fieldList, title, separator);
    return true;
}

QStringList FileFormatDirectory::LoadRecords(const QStringList& files)
{
    QStringList records;
    for (const QString& file : files) {
        QString record;
        if (!LoadRecord(file, &record))
            break;
        records << record;
    }
    return records;
}

bool FileFormatDirectory::Write(const QString& fileName, const QString& titleFlag, const QString& fieldList,
                                const QString& separator, const QString& dir)
{
    if (!IsValidName(fileName))
        return false;

    QString xml;
    QXmlStreamWriter w(&xml);
    w.setAutoFormatting(true);
    w.setAutoFormattingIndent(3);
    w.writeStartElement(QStringLiteral("CoordsTransformFileType"));
    w.writeEmptyElement(QStringLiteral("Name0"));
    w.writeAttribute(QStringLiteral("bUseTitle"), titleFlag);
    w.writeEmptyElement(QStringLiteral("Name"));
    w.writeAttribute(QStringLiteral("FileName"), fileName);
    w.writeEmptyElement(QStringLiteral("Name1"));
    w.writeAttribute(QStringLiteral("name"), QCoreApplication::translate("FileFormatUI", "General format1"));
    w.writeAttribute(QStringLiteral("value"), fieldList);
    w.writeEmptyElement(QStringLiteral("Name2"));
    w.writeAttribute(QStringLiteral("name"), QCoreApplication::translate("FileFormatUI", "General format2"));
    w.writeAttribute(QStringLiteral("separator"), separator);
    w.writeEndElement();
    // Auto-formatting starts with a line break when there is no declaration.
    if (xml.startsWith(QLatin1Char('\n')))
        xml.remove(0, 1);
    xml += QLatin1Char('\n');

    // Through a temporary file: a format file cut short would stop the loading
    // of every format listed after it.
    QSaveFile file(QDir(dir).filePath(fileName));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    QTextStream out(&file);
    out.setCodec("UTF-8");
    out << xml;
    out.flush();
    if (out.status() != QTextStream::Ok) {
        file.cancelWriting();
        return false;
    }
    return file.commit();
}

bool FileFormatDirectory::IsValidName(const QString& name)
{
    if (name.isEmpty() || name == QLatin1String(".") || name == QLatin1String(".."))
        return false;
    for (const QChar c : name) {
        if (c.unicode() < 0x20 || c.unicode() == 0x7f)
            return false;
        switch (c.unicode()) {
        case '/': case '\\': case '<': case '>': case ':': case '"': case '|': case '?': case '*':
            return false;
        default:
            break;
        }
    }
    return true;
}
