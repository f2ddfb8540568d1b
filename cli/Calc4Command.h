#pragma once

#include "CliCommand.h"

/// "coordstransform calc4": the four-parameter model of the control points in
/// a file exported by the four-parameter calculation dialog, printed as the
/// dialog shows it.
class Calc4Command : public CliCommand
{
public:
    QString name() const override;
    QString summary() const override;
    QString help() const override;
    int run(const QStringList& args, QTextStream& out, QTextStream& err) override;
};
