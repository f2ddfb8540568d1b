#pragma once

#include "CliCommand.h"

/// "coordstransform calc7": the seven-parameter model of the control points in
/// a file exported by the seven-parameter calculation dialog, between two
/// given systems, printed as the dialog shows it.
class Calc7Command : public CliCommand
{
public:
    QString name() const override;
    QString summary() const override;
    QString help() const override;
    int run(const QStringList& args, QTextStream& out, QTextStream& err) override;
};
