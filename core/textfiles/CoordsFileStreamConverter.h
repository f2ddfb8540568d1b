#pragma once

#include "textfiles/CoordsPoint.h"

#include <QString>

#include <functional>
#include <memory>
#include <vector>

class CoordinateConversion;
class QIODevice;

/// Converts a coordinate text file to another in one pass, chunk by chunk,
/// with memory that does not grow with the file: the command line's way to
/// do what the file conversion dialog does with its whole-file reader,
/// converter and writer, giving the same bytes and the same results.
///
/// The calling thread reads and decodes the file (GBK, or UTF-8 when the
/// whole file is valid UTF-8, as the dialog's reader decides) and writes the
/// results in order; parsing, the conversion route and formatting run on one
/// worker per `CoordinateConversion` given (objects of the route are not
/// shared between threads).
///
/// A line that does not fit the format stops the run with BadData, as does a
/// file without any point: whatever was written to the device by then must
/// be thrown away by the caller (write into a temporary file).
class CoordsFileStreamConverter
{
public:
    enum Result {
        Success = 0,     ///< the file was converted (some points may have failed)
        BadData = 1,     ///< no format, a line that does not fit it, or no point at all
        CannotOpen = -1, ///< the input cannot be opened
        ReadFailed = 3,  ///< the input could not be read to its end
        WriteFailed = 4  ///< the device refused bytes
    };
    using Progress = std::function<void(qint64 done, qint64 total)>;
    /// A check of each point read (before conversion); a non-empty answer is
    /// counted as a note. Called from the workers, at the same time.
    using PointCheck = std::function<QString(const CoordsPoint& point)>;

    CoordsFileStreamConverter();
    ~CoordsFileStreamConverter();
    CoordsFileStreamConverter(const CoordsFileStreamConverter&) = delete;
    CoordsFileStreamConverter& operator=(const CoordsFileStreamConverter&) = delete;

    /// Lines handed to a worker at once (default 16384).
    void SetChunkLines(int lines);
    void SetPointCheck(const PointCheck& check);

    /// Opens the input; false when it cannot be opened.
    bool Open(const QString& inputPath);
    /// Reads the opened input with the format `record`, converts every point
    /// with `conversions` (one per worker, at least one; all alike) and
    /// writes the result to `device`, encoded as a file at `outputPath` is
    /// (see `CoordsFileWriter`). A null `device` only reads: the result says
    /// whether the file would be accepted. Returns a `Result`.
    int Run(const QString& record, const std::vector<const CoordinateConversion*>& conversions, QIODevice* device,
            const QString& outputPath, const Progress& progress = Progress());

    /// The line (from 1, title included) that stopped the run; 0 when none did.
    qint64 StopLine() const;
    qint64 SkippedLines() const;
    const std::vector<qint64>& SkippedLineNumbers() const;
    qint64 BadHeights() const;
    const std::vector<qint64>& BadHeightLineNumbers() const;
    /// Points read (lines with numeric coordinates).
    qint64 PointsRead() const;
    /// Points the route could not convert, left out of the output, and the
    /// first of them as read.
    qint64 FailedPoints() const;
    const CoordsPoint& FirstFailedPoint() const;
    /// Converted points that got no datum shift (PROJ's ballpark fallback).
    qint64 PointsWithoutDatumShift() const;
    /// Points the check had something to say about, and the first answer
    /// with its point.
    qint64 Notes() const;
    const CoordsPoint& FirstNotePoint() const;
    QString FirstNote() const;
    /// The error text of a failed read.
    QString ReadError() const;

    enum { NoteLimit = 20 };

private:
    struct Private;
    std::unique_ptr<Private> d;
};
