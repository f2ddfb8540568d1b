#pragma once

#include "models/ModelStore.h"

#include <QString>
#include <QStringList>

class QTextStream;

/// The changes the command line makes to the model store: "models add",
/// "remove", "rename", "export", "import" and "calc4|calc7 --save". They go
/// through the store's one locked update and make the checks of the save and
/// entry dialogs, in their order and with their messages.
class ModelStoreEdit
{
public:
    /// `command` names the command in messages ("models add").
    ModelStoreEdit(const QString& command, QTextStream& out, QTextStream& err);

    /// Runs "models ACTION ARGS..."; returns a `CliStatus`.
    int Run(const QString& action, const QStringList& args);

    /// Saves a computed model as the save dialogs do: a taken name is replaced
    /// only when `replace` is set. Returns a `CliStatus`.
    int SaveComputed(ModelStore::Kind kind, const TransformModel& model, bool replace);

    /// The actions Run knows, for help and completion.
    static QStringList Actions();

private:
    int Add(const QStringList& args, bool fromFile);
    int Remove(const QStringList& args);
    int Rename(const QStringList& args);
    int Export(const QStringList& args);
    /// Reports `result`; returns the status it stands for.
    int Report(ModelStore::WriteResult result, ModelStore::Kind kind, const QString& name);
    /// The kind of the model named `name`: --kind when given, else the one
    /// kind that holds it. False after a message otherwise.
    bool KindOf(const QString& kindText, const QString& name, ModelStore::Kind* kind);
    /// Parses [--kind 4|7] and `count` arguments, the first a model name,
    /// and finds the model's kind; false after a message (`usage` for a
    /// wrong count).
    bool NamedModel(const QStringList& args, int count, const QString& usage, QStringList* positional,
                    ModelStore::Kind* kind);
    int Fail(const QString& message, int status);

    QString m_prefix;
    QTextStream& m_out;
    QTextStream& m_err;
};
