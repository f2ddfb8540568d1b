#include "CliRegistry.h"

#include <QTextStream>

#include <algorithm>
#include <exception>

CliRegistry& CliRegistry::instance()
{
    static CliRegistry registry;
    return registry;
}

void CliRegistry::add(std::unique_ptr<CliCommand> command)
{
    if (command)
        m_commands.push_back(std::move(command));
}

CliCommand* CliRegistry::find(const QString& name) const
{
    for (const auto& command : m_commands) {
        if (command->name() == name)
            return command.get();
    }
    return nullptr;
}

QList<CliCommand*> CliRegistry::commands() const
{
    QList<CliCommand*> list;
    for (const auto& command : m_commands)
        list << command.get();
    std::sort(list.begin(), list.end(),
              [](CliCommand* a, CliCommand* b) { return a->name() < b->name(); });
    return list;
}

QString CliRegistry::usage() const
{
    QString text;
    QTextStream s(&text);
    s << "Usage: coordstransform <command> [options] [arguments]\n"
         "\n"
         "Converts coordinates between coordinate systems and works with the stored\n"
         "four- and seven-parameter transformation models.\n"
         "\n"
         "Commands:\n";
    int width = 0;
    for (CliCommand* command : commands())
        width = std::max(width, int(command->name().size()));
    for (CliCommand* command : commands())
        s << "  " << command->name().leftJustified(width + 2) << command->summary() << '\n';
    s << "\n"
         "\"coordstransform <command> --help\" describes a command.\n"
         "\n"
         "Exit status: 0 success; 1 some input lines could not be converted (each is\n"
         "reported on standard error); 2 nothing was done (bad arguments, unknown\n"
         "command, coordinate system or model, unreadable file).\n";
    return text;
}

static bool isHelp(const QString& arg)
{
    return arg == QLatin1String("--help") || arg == QLatin1String("-h");
}

int CliRegistry::run(const QStringList& args, QTextStream& out, QTextStream& err) const
{
    try {
        if (args.isEmpty()) {
            err << usage();
            err.flush();
            return CliUsageError;
        }
        QString name = args.first();
        QStringList rest = args.mid(1);
        if (isHelp(name) || name == QLatin1String("help")) {
            if (rest.isEmpty()) {
                out << usage();
                out.flush();
                return CliOk;
            }
            name = rest.first();
            rest = QStringList{QStringLiteral("--help")};
        }
        CliCommand* command = find(name);
        if (!command) {
            err << "coordstransform: unknown command \"" << name << "\"\n"
                << "Commands:";
            for (CliCommand* c : commands())
                err << ' ' << c->name();
            err << "\nRun \"coordstransform --help\" for more.\n";
            err.flush();
            return CliUsageError;
        }
        if (std::any_of(rest.begin(), rest.end(), isHelp)) {
            out << command->help();
            out.flush();
            return CliOk;
        }
        const int status = command->run(rest, out, err);
        out.flush();
        err.flush();
        return status;
    } catch (const std::exception& e) {
        err << "coordstransform: " << e.what() << '\n';
    } catch (...) {
        err << "coordstransform: unexpected failure\n";
    }
    err.flush();
    return CliUsageError;
}
