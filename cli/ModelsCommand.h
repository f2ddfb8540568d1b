#pragma once

#include "CliCommand.h"

/// "coordstransform models": lists the stored transformation models.
class ModelsCommand : public CliCommand
{
public:
    QString name() const override;
    QString summary() const override;
    QString help() const override;
    int run(const QStringList& args, QTextStream& out, QTextStream& err) override;
};
