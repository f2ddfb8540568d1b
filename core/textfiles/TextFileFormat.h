#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

/// A text-file format as the file conversion uses it: taken apart from its
/// one-line record text
///
///     General.xml PointID Longitude Latitude altitude Title ","
///
/// (file name, field names in column order, title flag, separator in double
/// quotes). The conversion knows a format only through this text, so the
/// dialog, the command-line tool, the reader and the writer all parse it here.
class TextFileFormat
{
public:
    /// Field kinds; the value is the kind's code, its row in the format
    /// editor's field list.
    enum FieldKind { Unknown = -1, PointID = 0, Latitude = 1, Longitude = 2, Altitude = 3, Other = 4 };

    /// The kind of a field name: the English name written by the editor or
    /// the Chinese one older files carry. Anything else is Unknown.
    static FieldKind KindOf(const QString& name);
    /// The untranslated English name of a kind ("PointID" .. "other").
    static QString KindName(FieldKind kind);
    /// True for "Title" and its Chinese form; anything else means no title line.
    static bool IsTitleFlag(const QString& flag);

    /// The record text: `fileName`, `fieldList`, `titleFlag` and the separator
    /// in double quotes, joined by single blanks. A null `separator` leaves
    /// the last piece empty (a file without the attribute).
    static QString RecordText(const QString& fileName, const QString& fieldList, const QString& titleFlag,
                              const QString& separator);

    /// Takes a record text apart. The separator is the second character of the
    /// last blank-separated piece, "T" meaning a tab and "S" a blank; a blank
    /// separator itself does not survive the record and reads as none.
    static TextFileFormat FromRecord(const QString& record);

    /// Column position used for a kind the format does not have.
    static constexpr int NoColumn = 0x7fffffff;

    QString fileName;
    QStringList fields;   ///< field names in column order
    QString titleFlag;
    bool hasTitle = false;
    QString separator;    ///< one character, or empty when the record has none
    int pointIdColumn = NoColumn;
    int northColumn = NoColumn;   ///< the "Latitude" column (latitude or X)
    int eastColumn = NoColumn;    ///< the "Longitude" column (longitude or Y)
    int heightColumn = NoColumn;
    QVector<int> otherColumns;    ///< positions of the "other" fields, in order
    bool is3D = false;            ///< the format has a height column

    int ColumnCount() const { return fields.size(); }
};
