#pragma once

#include "models/ControlPointFile.h"

#include <QString>

class ControlPointTable;
class QWidget;

/// The Export and Import buttons of the calculation dialogs: asks for the
/// file (starting in the host's working folder, which then follows the
/// chosen file), writes or reads it through `ControlPointFile` and reports to
/// the user. Texts are translated in the context of the dialog's class.
class ControlPointTransfer
{
public:
    ControlPointTransfer(QWidget* dialog, ControlPointTable* table, ControlPointFile::Kind kind);

    /// Writes the checked points after `resultText` (and, for seven
    /// parameters, the reference `pair`). A comma-separated export switches
    /// the process's local 8-bit codec to GB18030 for its duration; every
    /// export leaves it at UTF-8.
    void Export(const QString& pair, const QString& resultText);
    /// Appends the points of a chosen file to the table. `pair` receives the
    /// reference pair line of a seven-parameter file (left alone when the file
    /// has none). False when nothing was imported.
    bool Import(QString* pair = nullptr);

private:
    QString Tr(const char* text) const;
    QString AskFile(bool save) const;

    QWidget* m_dialog;
    ControlPointTable* m_table;
    ControlPointFile::Kind m_kind;
};
