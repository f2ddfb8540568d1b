#include "textfiles/TextFileFormat.h"

namespace {

struct KindNames
{
    TextFileFormat::FieldKind kind;
    const char* english;
    const char* chinese;  // UTF-8
};

const KindNames kKinds[] = {
    {TextFileFormat::PointID, "PointID", "\xe7\x82\xb9\xe5\x8f\xb7"},        // 点号
    {TextFileFormat::Latitude, "Latitude", "\xe7\xba\xac\xe5\xba\xa6"},      // 纬度
    {TextFileFormat::Longitude, "Longitude", "\xe7\xbb\x8f\xe5\xba\xa6"},    // 经度
    {TextFileFormat::Altitude, "altitude", "\xe9\xab\x98\xe5\xba\xa6"},      // 高度
    {TextFileFormat::Other, "other", "\xe5\x85\xb6\xe4\xbb\x96"},            // 其他
};

const char kChineseTitle[] = "\xe6\x9c\x89\xe6\xa0\x87\xe9\xa2\x98";  // 有标题

} // namespace

TextFileFormat::FieldKind TextFileFormat::KindOf(const QString& name)
{
    for (const KindNames& k : kKinds) {
        if (name == QLatin1String(k.english) || name == QString::fromUtf8(k.chinese))
            return k.kind;
    }
    return Unknown;
}

QString TextFileFormat::KindName(FieldKind kind)
{
    for (const KindNames& k : kKinds) {
        if (k.kind == kind)
            return QString::fromLatin1(k.english);
    }
    return QString();
}

bool TextFileFormat::IsTitleFlag(const QString& flag)
{
    return flag == QLatin1String("Title") || flag == QString::fromUtf8(kChineseTitle);
}

QString TextFileFormat::RecordText(const QString& fileName, const QString& fieldList, const QString& titleFlag,
                                   const QString& separator)
{
    const QString quoted = separator.isNull() ? QString() : QStringLiteral("\"%1\"").arg(separator);
    return QStringLiteral("%1 %2 %3 %4").arg(fileName, fieldList, titleFlag, quoted);
}

TextFileFormat TextFileFormat::FromRecord(const QString& record)
{
    TextFileFormat f;
    QStringList pieces = record.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (pieces.isEmpty())
        return f;
    f.fileName = pieces.takeFirst();
    if (!pieces.isEmpty()) {
        const QString sep = pieces.takeLast().mid(1, 1);
        if (sep == QLatin1String("T"))
            f.separator = QStringLiteral("\t");
        else if (sep == QLatin1String("S"))
            f.separator = QStringLiteral(" ");
        else
            f.separator = sep;
    }
    if (!pieces.isEmpty())
        f.titleFlag = pieces.takeLast();
    f.hasTitle = IsTitleFlag(f.titleFlag);
    f.fields = pieces;

    for (int i = 0; i < f.fields.size(); ++i) {
        switch (KindOf(f.fields.at(i))) {
        case Longitude: f.eastColumn = i; break;
        case Latitude: f.northColumn = i; break;
        case Altitude: f.heightColumn = i; f.is3D = true; break;
        case PointID: f.pointIdColumn = i; break;
        case Other: f.otherColumns.append(i); break;
        case Unknown: break;
        }
    }
    return f;
}
