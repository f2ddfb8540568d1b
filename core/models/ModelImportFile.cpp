#include "models/ModelImportFile.h"

#include <QFile>
#include <QStringList>
#include <QTextCodec>
#include <QTextStream>

QList<QPair<QString, QString>> ModelImportFile::Read(const QString& path)
{
    QList<QPair<QString, QString>> pairs;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return pairs;

    QTextStream in(&file);
    in.setCodec(QTextCodec::codecForName("GB18030"));
    while (!in.atEnd()) {
        const QStringList parts = in.readLine().split(QLatin1Char('='), Qt::KeepEmptyParts);
        if (parts.size() == 2)
            pairs.append(qMakePair(parts.at(0), parts.at(1)));
    }
    return pairs;
}
