#pragma once

#include "CliCommand.h"

/// "coordstransform reproject": reprojects raster and vector datasets through
/// the algorithm library the dialogs use (KivAlgo, "CoordsTransformAlgo").
class ReprojectCommand : public CliCommand
{
public:
    QString name() const override;
    QString summary() const override;
    QString help() const override;
    int run(const QStringList& args, QTextStream& out, QTextStream& err) override;

    /// Ask a running reprojection to stop, as Ctrl-C does. For tests.
    static void requestStop();
};
