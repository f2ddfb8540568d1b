#pragma once

#include <QList>
#include <QPair>
#include <QString>

/// The parameter files the manual entry dialogs import: "KEY=value" lines in
/// GB18030 (an exported result block is such a file). Kept apart from the
/// dialogs so that hostile files can be fed to it without one.
class ModelImportFile
{
public:
    /// The lines that split at "=" into exactly two parts, as (key, value) in
    /// file order; other lines are left out. Empty when the file cannot be
    /// opened.
    static QList<QPair<QString, QString>> Read(const QString& path);
};
