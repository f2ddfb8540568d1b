#pragma once

#include <QString>

#include <memory>

class QIODevice;

/// One result file written by a command, written so that no user file is
/// ever lost or left half-written:
///
/// - "-" is standard output, written as the run goes;
/// - an existing file that is not a regular file (a named pipe, a device)
///   and anything below /dev or /proc (/dev/stdout, /proc/self/fd/1) is
///   written directly: replacing it would destroy the node or write into a
///   file nobody reads;
/// - a regular file, or a new one, is written under a temporary name beside
///   it and renamed over it only by `Commit`, so a failed run keeps its old
///   content.
///
/// Every write is checked: `Commit` fails when any write, the final flush or
/// the rename failed, and its message names the output and the reason.
class OutputFile
{
public:
    explicit OutputFile(const QString& path);
    /// Cancels an uncommitted temporary file.
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    /// "standard output" for "-", else the path as given.
    QString Name() const;
    /// True when the output will be replaced atomically (a regular or new file).
    bool IsReplacedAtomically() const;

    /// Opens the output; false with a message naming it in `error`.
    bool Open(QString* error);
    /// The open device; null before `Open` succeeded.
    QIODevice* Device() const;
    /// Finishes the output: flushes, checks and (for a regular file) renames
    /// the temporary file over the old one. False with a message in `error`;
    /// a regular file then keeps its old content.
    bool Commit(QString* error);
    /// Abandons the output: a regular file keeps its old content.
    void Cancel();

    /// The message for a failed write on the open device.
    QString WriteError() const;

    /// True when `a` and `b` name one existing regular file (same device and
    /// inode), whatever their spelling or links; "-" stands for standard
    /// input (as `a`) and standard output (as `b`).
    static bool SameFile(const QString& a, const QString& b);

private:
    struct Private;
    std::unique_ptr<Private> d;
};
