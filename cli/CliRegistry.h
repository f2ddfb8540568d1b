#pragma once

#include "CliCommand.h"

#include <QList>

#include <memory>
#include <vector>

class QTextStream;

/// The sub-commands of coordstransform, filled by the static registrars of
/// the command classes when the library is loaded, and the dispatcher that
/// `main` (and the tests) call.
class CliRegistry
{
public:
    static CliRegistry& instance();

    void add(std::unique_ptr<CliCommand> command);
    /// The command called `name`, or null.
    CliCommand* find(const QString& name) const;
    /// Every command, sorted by name.
    QList<CliCommand*> commands() const;

    /// Runs a whole command line (without the program name):
    /// "--help" / "-h" / "help" list the commands, "<cmd> --help" and
    /// "help <cmd>" print a command's help, "<cmd> args..." runs it.
    /// An unknown command is reported on `err` with status `CliUsageError`.
    /// Returns a `CliStatus`; never throws.
    int run(const QStringList& args, QTextStream& out, QTextStream& err) const;

    /// The text of "coordstransform --help".
    QString usage() const;

private:
    CliRegistry() = default;
    std::vector<std::unique_ptr<CliCommand>> m_commands;
};

/// Put `static CliRegistrar<MyCommand> registrar;` in MyCommand.cpp.
template <class Command>
struct CliRegistrar
{
    CliRegistrar() { CliRegistry::instance().add(std::make_unique<Command>()); }
};
