#pragma once

#include "CliCommand.h"

/// "coordstransform crs INPUT": prints a coordinate system given by a code, a
/// .prj or WKT file, WKT text or a dataset file (its name, kind, pretty WKT
/// and ESRI WKT), the way the spatial reference dialog shows and exports it.
class CrsCommand : public CliCommand
{
public:
    QString name() const override;
    QString summary() const override;
    QString help() const override;
    int run(const QStringList& args, QTextStream& out, QTextStream& err) override;
};
