// coordstransform: converts coordinates from the command line. Everything is
// in the CoordsTransformCli library; main only hands over the arguments and
// returns the status as the exit code.

#include "CliRegistry.h"

#include <QCoreApplication>
#include <QTextCodec>
#include <QTextStream>

#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("coordstransform"));
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));

    QTextStream out(stdout);
    QTextStream err(stderr);
    const int status = CliRegistry::instance().run(QCoreApplication::arguments().mid(1), out, err);
    out.flush();
    err.flush();
    return status >= 0 && status <= 255 ? status : CliUsageError;
}
