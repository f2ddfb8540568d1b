#pragma once

#include "CliCommand.h"

/// "coordstransform transform": converts lines "X Y [H]" from one coordinate
/// system to another through the conversion route the dialogs use.
class TransformCommand : public CliCommand
{
public:
    QString name() const override;
    QString summary() const override;
    QString help() const override;
    int run(const QStringList& args, QTextStream& out, QTextStream& err) override;
};
