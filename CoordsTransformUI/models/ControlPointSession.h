#pragma once

#include "models/ControlPointFile.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

class ControlPointCalculation;
class ControlPointQuality;
class ControlPointTable;
namespace KivFramework {
class IApplication;
}
class QDialog;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableWidget;

/// What the two calculation dialogs share around their point table: the line
/// edits that feed it, the Edit mode that writes them back into a row, Remove,
/// the last result with its has-result flag and label, Save, Export and
/// Import. The dialogs keep their own input checks and computations. Texts are
/// translated in the context of the dialog's class.
///
/// Export and Import ask for the file starting in the host's working folder,
/// which then follows the chosen file, and go through `ControlPointFile`.
class ControlPointSession
{
public:
    struct Widgets
    {
        QTableWidget* table;
        QLabel* result;
        QPushButton* edit;
        QList<QPushButton*> lockedWhileEditing;
        QList<QLineEdit*> inputs;  ///< one per coordinate column, in column order
    };

    ControlPointSession(QDialog* dialog, ControlPointFile::Kind kind, const Widgets& widgets);
    ~ControlPointSession();
    ControlPointSession(const ControlPointSession&) = delete;
    ControlPointSession& operator=(const ControlPointSession&) = delete;

    ControlPointTable& Table() const { return *m_table; }
    /// The host whose map the quality report may add a layer to.
    void SetApplication(KivFramework::IApplication* application) { m_application = application; }

    /// Appends a checked point of the coordinate texts (residuals empty) and
    /// clears the line edits.
    void AddPoint(const QStringList& coordinates);
    void Remove();

    /// "Edit" locks the other buttons and shows the current row in the line
    /// edits; "Stop Edit" unlocks them and clears the edits.
    void ToggleEdit();
    /// While editing, moving to another row makes it the edited one.
    void CurrentRowChanged(int currentRow, int previousRow);
    /// While editing, a line edit's text goes straight into `column` of the
    /// edited row (a filled one).
    void WriteBack(int column, const QString& text);

    /// Shows a run: on success its result text and the residuals of the
    /// checked rows, keeping its result; otherwise "Calculate Error!", the
    /// residuals as they were and no result.
    void ShowRun(ControlPointCalculation& calculation, bool succeeded);
    /// Without a result asks to run first; otherwise `saveDialog` runs on the
    /// result and an accepted one is reported as saved.
    void Save(const std::function<int(const double*)>& saveDialog) const;
    /// Without a result asks to run first; otherwise shows the quality report
    /// of the last run, naming the two systems.
    void ShowQualityReport(const QString& source, const QString& target) const;

    /// Writes the checked points after the result text (and `pair` for seven
    /// parameters). A comma-separated export switches the process's local
    /// 8-bit codec to GB18030 for its duration; every export leaves it at UTF-8.
    void Export(const QString& pair) const;
    /// Appends the points of a chosen file; `pair` receives the reference pair
    /// line of a seven-parameter file (left alone when the file has none).
    void Import(QString* pair) const;

private:
    QString Tr(const char* text) const;
    QString AskFile(bool save) const;
    void ShowEditedRow();
    void ClearInputs();

    QDialog* m_dialog;
    ControlPointFile::Kind m_kind;
    Widgets m_widgets;
    std::unique_ptr<ControlPointTable> m_table;
    bool m_bEditing = false;
    bool m_bShowingRow = false;
    int m_nEditRow = -1;
    bool m_bHasResult = false;
    /// The last array from the library, released with free. Until the first
    /// run it is a zeroed block that holds nothing of use.
    double* m_pResult = nullptr;
    std::unique_ptr<ControlPointQuality> m_quality;
    KivFramework::IApplication* m_application = nullptr;
};
