#pragma once

#include <QString>
#include <QStringList>

class QIODevice;
class QTextStream;

/// Exit statuses of the tool; `main` returns what `run` returns.
enum CliStatus {
    CliOk = 0,         ///< everything done
    CliDataErrors = 1, ///< done, but some input lines or points were skipped
    CliUsageError = 2, ///< nothing done: bad arguments, unknown system, model or command, unreadable file
};

/// One sub-command of coordstransform ("transform", "models", ...).
///
/// A sub-command is a class in its own file pair that registers itself from
/// its .cpp with a static `CliRegistrar<ItsClass>`; the registry does the
/// rest (help listing, "--help", dispatch). `run` never sees "--help".
class CliCommand
{
public:
    virtual ~CliCommand() = default;

    /// The word that selects the command on the command line.
    virtual QString name() const = 0;
    /// One line for the command list of "coordstransform --help".
    virtual QString summary() const = 0;
    /// The full text of "coordstransform <name> --help": usage and options.
    virtual QString help() const = 0;
    /// Runs with the arguments after the command name; returns a `CliStatus`.
    /// Results go to `out`, messages to `err`. Must not throw.
    virtual int run(const QStringList& args, QTextStream& out, QTextStream& err) = 0;

    /// Where commands read "standard input" from: the process's stdin unless a
    /// test has put another device in its place. Never null.
    static QIODevice* standardInput();
    /// Replaces standard input (null restores the real one). The device stays
    /// owned by the caller and must be open for reading.
    static void setStandardInput(QIODevice* device);
};
