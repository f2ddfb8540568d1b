#pragma once

#include "CliCommand.h"

/// "coordstransform convert": converts a coordinate text file laid out in
/// one of the text-file formats, with the reader, conversion route and writer
/// of the file conversion dialog, so both give the same bytes.
class ConvertCommand : public CliCommand
{
public:
    QString name() const override;
    QString summary() const override;
    QString help() const override;
    int run(const QStringList& args, QTextStream& out, QTextStream& err) override;

private:
    int convert(const QStringList& args, QTextStream& out, QTextStream& err);
};
