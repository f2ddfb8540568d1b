#pragma once

#include <QString>
#include <QStringList>

/// The folder of text-file formats, <application folder>/../data/FileFormat,
/// one XML file per format:
///
///     <CoordsTransformFileType>
///        <Name0 bUseTitle="Title"/>
///        <Name FileName="General.xml"/>
///        <Name1 name="General format1" value="PointID Longitude Latitude altitude"/>
///        <Name2 name="General format2" separator=","/>
///     </CoordsTransformFileType>
///
/// Formats are listed in the folder's own order and loaded into record texts
/// (see `TextFileFormat`).
class FileFormatDirectory
{
public:
    /// The format folder, without a trailing separator. Created when missing.
    static QString Path();

    /// The format files of `dir`: plain files (no symbolic links, hidden ones
    /// included) whose suffix is exactly "xml", in the folder's order, as
    /// absolute paths.
    static QStringList ListFiles(const QString& dir = Path());

    /// The record text of one format file. False when the file cannot be
    /// read, is not well-formed XML or has no document element.
    static bool LoadRecord(const QString& file, QString* record);
    /// The record texts of `files`, in order. Loading stops at the first file
    /// that cannot be loaded: the ones before it are kept, it and the rest are
    /// left out.
    static QStringList LoadRecords(const QStringList& files);

    /// Writes the format file `fileName` (".xml" included) into `dir`, UTF-8,
    /// indented by 3 blanks, without an XML declaration. The file is replaced
    /// whole or not at all. False when it cannot be written.
    static bool Write(const QString& fileName, const QString& titleFlag, const QString& fieldList,
                      const QString& separator, const QString& dir = Path());

    /// True when `name` can be a format file name inside the folder: not empty,
    /// no path separators, no characters that file systems refuse
    /// (< > : " | ? * and control characters), not "." or "..".
    static bool IsValidName(const QString& name);
};
