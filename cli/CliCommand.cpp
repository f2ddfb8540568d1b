#include "CliCommand.h"

#include <QFile>
#include <QPointer>

#include <cstdio>

namespace {
QPointer<QIODevice>& inputOverride()
{
    static QPointer<QIODevice> device;
    return device;
}
}

QIODevice* CliCommand::standardInput()
{
    if (QIODevice* device = inputOverride().data())
        return device;
    static QFile* in = [] {
        auto* file = new QFile;
        // Unbuffered: the commands read in large blocks of their own.
        file->open(stdin, QIODevice::ReadOnly | QIODevice::Unbuffered);
        return file;
    }();
    return in;
}

void CliCommand::setStandardInput(QIODevice* device)
{
    inputOverride() = device;
}
