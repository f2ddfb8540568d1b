#pragma once

#include "models/ModelStore.h"

#include <QString>

class QDialog;

/// What the four dialogs that add a model to the store (the two save dialogs
/// and the two manual entry dialogs) say around `ModelStore::Add`: warnings
/// about empty names, the answer to a taken name and the report of a store
/// that cannot be read. Texts are translated in the context of the dialog's
/// class.
class ModelWriter
{
public:
    /// The save dialogs offer to replace a model of the same name; the manual
    /// entry dialogs never replace and refuse the name instead.
    enum TakenName { AskToReplace, RefuseTaken };

    /// `warningTitle` titles the empty-field warnings; `reportUnreadable`
    /// says "save result failed!" when the store cannot be opened (all but
    /// the four-parameter save dialog do).
    ModelWriter(QDialog* dialog, ModelStore::Kind kind, TakenName taken, bool reportUnreadable,
                const QString& warningTitle);

    /// False, after warning with `message`, when `text` is empty.
    bool Require(const QString& text, const char* message) const;
    /// Source, target and model name, checked in this order.
    bool RequireNames(const QString& source, const QString& target, const QString& name) const;
    /// Adds `model` to the store; true when it was written. Otherwise the
    /// dialog stays open: a malformed or container-less store, a refused
    /// replacement and a failed write pass in silence.
    bool Write(const TransformModel& model) const;

private:
    QString Tr(const char* text) const;
    bool AskReplace() const;

    QDialog* m_dialog;
    ModelStore::Kind m_kind;
    TakenName m_taken;
    bool m_reportUnreadable;
    QString m_warningTitle;
};
