#pragma once

#include "textfiles/CoordsPoint.h"
#include "textfiles/TextFileFormat.h"

#include <QString>
#include <QVector>

/// Writes one point as a line of a text-file format: the format's fields in
/// order, separated by its separator, numbers with 6 decimals, point number
/// and "other" texts as read, ending in "\n". The file conversion dialog's
/// writer and the streaming conversion of the command line both format lines
/// here, so both give the same bytes.
class CoordsLineFormatter
{
public:
    explicit CoordsLineFormatter(const QString& record);

    /// Appends the line of `point` to `out`.
    void Append(QString& out, const CoordsPoint& point) const;

    /// Appends `value` as `QString::number(value, 'f', 6)` writes it; plain
    /// coordinates take a quicker way to the same digits.
    static void AppendFixed6(QString& out, double value);

private:
    QVector<TextFileFormat::FieldKind> m_kinds;
    QString m_separator;
};
