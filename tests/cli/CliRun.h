#pragma once

#include "CliCommand.h"
#include "CliRegistry.h"

#include <QBuffer>
#include <QTextStream>

/// Runs a coordstransform command line in-process, with `input` as standard
/// input; collects the status and both output streams.
struct CliRun
{
    int status = -1;
    QString out;
    QString err;

    explicit CliRun(const QStringList& args, const QByteArray& input = QByteArray())
    {
        QBuffer in;
        in.setData(input);
        in.open(QIODevice::ReadOnly);
        CliCommand::setStandardInput(&in);
        QTextStream outStream(&out), errStream(&err);
        status = CliRegistry::instance().run(args, outStream, errStream);
        outStream.flush();
        errStream.flush();
        CliCommand::setStandardInput(nullptr);
    }

    QStringList outLines() const { return out.split(QLatin1Char('\n'), Qt::SkipEmptyParts); }
};
