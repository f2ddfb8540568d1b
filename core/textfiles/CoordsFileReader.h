#pragma once

#include "textfiles/CoordsPoint.h"
#include "textfiles/TextFileFormat.h"

#include <QString>

#include <functional>
#include <vector>

/// Reads a coordinate text file laid out as a text-file format record says.
/// Shared by the file conversion dialog and the command-line tool.
///
/// Files are GBK; a file that is valid UTF-8 throughout (or starts with a
/// UTF-8 byte order mark) is read as UTF-8 instead, so that its non-ASCII
/// point names and "other" texts arrive intact.
///
/// A line whose column count differs from the format's (or that has fewer
/// than two columns, blank lines included) makes the whole file unusable; a
/// line whose north or east value is not a number is skipped.
class CoordsFileReader
{
public:
    enum Result {
        Success = 0,     ///< at least one point read
        BadData = 1,     ///< no format, a line that does not fit it, or no point at all
        CannotOpen = -1, ///< the file cannot be opened
        CodeNumber = 2   ///< Y values carry a zone number (not produced by this reader)
    };
    /// Called now and then with the bytes read so far and the file size.
    using Progress = std::function<void(qint64 done, qint64 total)>;

    /// Reads `path` with the format `record`; returns a `Result`. Whatever
    /// was read before is dropped first; on BadData no point is kept.
    int Read(const QString& path, const QString& record, const Progress& progress = Progress());
    void Clear();

    const std::vector<CoordsPoint>& Points() const { return m_points; }
    std::vector<CoordsPoint>& Points() { return m_points; }
    const TextFileFormat& Format() const { return m_format; }
    bool HasTitle() const { return m_hasTitle; }
    QString TitleLine() const { return m_titleLine; }
    /// The format has a height column.
    bool Is3D() const { return m_format.is3D; }

    /// The line (counted from 1, title included) that stopped the reading
    /// with BadData; 0 when no line did.
    qint64 StopLine() const { return m_stopLine; }
    /// Lines left out because their north or east value was not a number.
    qint64 SkippedLines() const { return m_skipped; }
    /// The numbers (from 1, title included) of the first skipped lines, at
    /// most `NoteLimit` of them, for messages.
    const std::vector<qint64>& SkippedLineNumbers() const { return m_skippedNumbers; }
    /// Points whose height field is not a finite number (kept as the dialog
    /// reads them: 0 for text), and the first `NoteLimit` of their line numbers.
    qint64 BadHeights() const { return m_badHeights; }
    const std::vector<qint64>& BadHeightLineNumbers() const { return m_badHeightNumbers; }

    enum { NoteLimit = 20 };

private:
    TextFileFormat m_format;
    std::vector<CoordsPoint> m_points;
    bool m_hasTitle = false;
    QString m_titleLine;
    qint64 m_stopLine = 0;
    qint64 m_skipped = 0;
    std::vector<qint64> m_skippedNumbers;
    qint64 m_badHeights = 0;
    std::vector<qint64> m_badHeightNumbers;
};
