#pragma once

#include <QList>
#include <QString>
#include <QStringList>

/// The control-point text files of the calculation dialogs, and of the
/// calc4/calc7 command-line tools that read them.
///
/// Layout (GB18030, line feeds, tab separated; comma separated when the file
/// name's ending from its first "." is ".csv", whatever the case):
///
///     [source name -- target name]          seven-parameter files only,
///     [(empty line)]                        followed by one empty line
///     result text (several lines)
///     Checked<sep>SourceX<sep>...<sep>      the table headers
///     1<sep>x<sep>y<sep>...<sep>            one line per used point
///
/// Every header and cell is followed by the separator. Reading keeps only the
/// lines that split (empty parts dropped) into as many parts as a table row
/// can have: the point number, the coordinates and optionally the residuals
/// (5 or 6 parts for four parameters, 7 to 9 for seven); the header line,
/// whose first part is "Checked", and everything else is skipped.
class ControlPointFile
{
public:
    enum Kind { FourParameters, SevenParameters };

    /// One point as read: its number in the file (not used for anything but
    /// display) and the texts of the table columns after the check column,
    /// coordinates first, then the residuals (empty when the line had none).
    struct Point
    {
        QString number;
        QStringList cells;
    };

    explicit ControlPointFile(Kind kind);

    Kind GetKind() const { return m_kind; }
    /// Coordinates per point: 4 (source X, Y, target X, Y) or 6 (with heights).
    int CoordinateCount() const;
    /// Residual columns after the coordinates: 1 or 2 (plane and height).
    int ResidualCount() const;

    /// True when the file is comma separated: the ending of its name from the
    /// first "." is ".csv", ignoring case ("points.CSV" yes, "a.b.csv" no).
    static bool IsCommaSeparated(const QString& path);
    static QChar Separator(const QString& path);

    /// Reads `path`. False only when it cannot be opened; a file without any
    /// point line reads as true with no points.
    bool Read(const QString& path, const QString& headerText = QStringLiteral("Checked"));
    /// The points read, in file order.
    const QList<Point>& Points() const { return m_points; }
    /// Seven-parameter files: the first line when it names the reference pair
    /// (it contains " -- "), otherwise empty.
    QString ReferencePair() const { return m_pair; }
    /// True when the file was empty.
    bool WasEmpty() const { return m_empty; }

    /// Writes a whole file; `rows` hold every table column including the point
    /// number. The file is replaced only once everything is written. `pair`
    /// is used by seven-parameter files only. False when the file cannot be
    /// opened (`opened` false) or cannot be completed.
    bool Write(const QString& path, const QString& pair, const QString& resultText,
               const QStringList& headers, const QList<QStringList>& rows, bool* opened = nullptr) const;

private:
    Kind m_kind;
    QList<Point> m_points;
    QString m_pair;
    bool m_empty = true;
};
