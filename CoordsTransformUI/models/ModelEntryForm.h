#pragma once

#include "models/ModelWriter.h"

#include <QList>
#include <QString>

class QDialog;
class QLineEdit;

/// The fields of the manual entry dialogs: source, target and model name, and
/// the parameter fields, which a text file of "KEY=value" lines can fill (an
/// exported result block is such a file). The model goes into the store under
/// a new name only; its target name is the model name, not the target field.
class ModelEntryForm
{
public:
    /// A parameter field and the key that fills it on import, as UTF-8 bytes
    /// read through the local 8-bit codec (the Greek and degree keys).
    struct Field
    {
        QLineEdit* edit;
        const char* key;
    };

    ModelEntryForm(QDialog* dialog, ModelStore::Kind kind, QLineEdit* source, QLineEdit* target, QLineEdit* name,
                   const QList<Field>& fields);

    /// Source + "-to-" + target into the name field.
    void ProposeName();
    /// Asks for a file and fills the fields of the keys it holds; lines that
    /// do not split at "=" into exactly two parts and other keys are skipped.
    void Import();
    /// Source, target, name, then every parameter field must be filled; the
    /// first empty one is reported.
    bool Check() const;
    /// Writes the model (text that is not a number stores 0); on success
    /// shows `savedMessage` and accepts the dialog.
    void Save(const QString& savedMessage);

private:
    QStringList Texts() const;

    QDialog* m_dialog;
    ModelStore::Kind m_kind;
    QLineEdit* m_source;
    QLineEdit* m_target;
    QLineEdit* m_name;
    QList<Field> m_fields;
    ModelWriter m_writer;
};
