#include "ModelStoreEdit.h"

#include "CliCommand.h"
#include "CliSupport.h"

#include "io/OutputFile.h"
#include "models/ControlPointCalculation.h"
#include "models/ModelEntry.h"
#include "models/ModelImportFile.h"

#include <QCommandLineParser>
#include <QFileInfo>
#include <QTextCodec>
#include <QTextStream>

#include <vector>

namespace {

bool parseKind(const QString& text, ModelStore::Kind* kind)
{
    if (text == QLatin1String("4"))
        *kind = ModelStore::Params4;
    else if (text == QLatin1String("7"))
        *kind = ModelStore::Params7;
    else
        return false;
    return true;
}

/// The keys of a model import file, in parameter order (as the entry
/// dialogs' Import reads them).
QStringList importKeys(ModelStore::Kind kind)
{
    if (kind == ModelStore::Params4)
        return {QStringLiteral("DX(m)"), QStringLiteral("DY(m)"), QStringLiteral("T(゜)"), QStringLiteral("K")};
    return {QStringLiteral("DX(m)"), QStringLiteral("DY(m)"), QStringLiteral("DZ(m)"), QStringLiteral("ω(″)"),
            QStringLiteral("κ(″)"),  QStringLiteral("γ(″)"),  QStringLiteral("m")};
}

} // namespace

ModelStoreEdit::ModelStoreEdit(const QString& command, QTextStream& out, QTextStream& err)
    : m_prefix(QStringLiteral("coordstransform ") + command + QStringLiteral(": ")), m_out(out), m_err(err)
{
}

QStringList ModelStoreEdit::Actions()
{
    return {QStringLiteral("add"), QStringLiteral("remove"), QStringLiteral("rename"), QStringLiteral("export"),
            QStringLiteral("import")};
}

int ModelStoreEdit::Fail(const QString& message, int status)
{
    m_err << m_prefix << message << '\n';
    return status;
}

int ModelStoreEdit::Run(const QString& action, const QStringList& args)
{
    m_prefix = QStringLiteral("coordstransform models ") + action + QStringLiteral(": ");
    if (action == QLatin1String("add"))
        return Add(args, false);
    if (action == QLatin1String("import"))
        return Add(args, true);
    if (action == QLatin1String("remove"))
        return Remove(args);
    if (action == QLatin1String("rename"))
        return Rename(args);
    if (action == QLatin1String("export"))
        return Export(args);
    return Fail(QStringLiteral("unknown action \"%1\" (%2)").arg(action, Actions().join(QLatin1Char('|'))),
                CliUsageError);
}

int ModelStoreEdit::Add(const QStringList& args, bool fromFile)
{
    QCommandLineParser parser;
    const QCommandLineOption kindOpt(QStringLiteral("kind"), QString(), QStringLiteral("4|7"));
    const QCommandLineOption nameOpt(QStringLiteral("name"), QString(), QStringLiteral("NAME"));
    const QCommandLineOption fromOpt(QStringLiteral("from"), QString(), QStringLiteral("CRS"));
    const QCommandLineOption toOpt(QStringLiteral("to"), QString(), QStringLiteral("CRS"));
    const QCommandLineOption paramsOpt(QStringLiteral("params"), QString(), QStringLiteral("VALUES"));
    parser.addOptions({kindOpt, nameOpt, fromOpt, toOpt});
    if (!fromFile)
        parser.addOption(paramsOpt);
    QString error;
    if (!CliSupport::parse(parser, args, &error))
        return Fail(error, CliUsageError);
    ModelStore::Kind kind = ModelStore::Params7;
    if (!parseKind(parser.value(kindOpt), &kind))
        return Fail(QStringLiteral("give --kind 4 or --kind 7"), CliUsageError);
    const int count = kind == ModelStore::Params4 ? 4 : 7;
    if (parser.positionalArguments().size() != (fromFile ? 1 : 0))
        return Fail(fromFile ? QStringLiteral("give one model file") : QStringLiteral("unexpected argument \"%1\"")
                                                                            .arg(parser.positionalArguments().value(0)),
                    CliUsageError);

    // The systems as the "select" buttons take them.
    KivUtility::_ptr_t<KivGeometry::SpatialReference> systems[2];
    QString names[2];
    const QCommandLineOption* sides[2] = {&fromOpt, &toOpt};
    for (int i = 0; i < 2; ++i) {
        if (!parser.isSet(*sides[i]))
            continue;
        systems[i] = CliSupport::loadSpatialReference(parser.value(*sides[i]), &error);
        if (!systems[i])
            return Fail(error, CliUsageError);
        if (kind == ModelStore::Params4) {
            if (systems[i]->GetType() != KivGeometry::SRT_Projected)
                return Fail(QString::fromUtf8(ModelEntry::kNotProjected), CliUsageError);
            names[i] = systems[i]->GetName();
        } else {
            names[i] = ModelEntry::SevenParameterSideName(systems[i].get());
        }
    }
    const QString name = parser.isSet(nameOpt) ? parser.value(nameOpt) : ModelEntry::ProposedName(names[0], names[1]);

    QStringList texts;
    if (fromFile) {
        const QString path = parser.positionalArguments().first();
        const auto pairs = ModelImportFile::Read(path);
        if (pairs.isEmpty() && !QFileInfo(path).isReadable())
            return Fail(QStringLiteral("cannot read \"%1\"").arg(path), CliUsageError);
        for (const QString& key : importKeys(kind)) {
            QString value;
            for (const auto& pair : pairs) {
                if (pair.first == key)
                    value = pair.second;
            }
            texts << value;
        }
    } else {
        texts = parser.value(paramsOpt).split(QLatin1Char(','));
        if (!parser.isSet(paramsOpt))
            texts = QStringList();
        while (texts.size() < count)
            texts << QString();
        if (texts.size() > count)
            return Fail(QStringLiteral("--params takes %1 comma-separated values, not %2").arg(count).arg(texts.size()),
                        CliUsageError);
    }

    if (const char* missing = ModelEntry::MissingName(names[0], names[1], name))
        return Fail(QString::fromUtf8(missing), CliUsageError);
    if (const char* missing = ModelEntry::MissingParameter(texts))
        return Fail(QString::fromUtf8(missing), CliUsageError);
    // Unlike a dialog field, a script's typo is not quietly stored as 0.
    for (int i = 0; i < count; ++i) {
        QList<double> value;
        if (!CliSupport::parseNumberList(texts.at(i), 1, &value))
            return Fail(QStringLiteral("parameter %1 \"%2\" is not a number").arg(importKeys(kind).at(i), texts.at(i)),
                        CliUsageError);
    }
    if (kind == ModelStore::Params7 && systems[0]->IsSameGeoCS(systems[1]))
        return Fail(QString::fromUtf8(ModelEntry::kSameSpheroid), CliUsageError);

    const TransformModel model = ModelEntry::Entered(names[0], name, texts);
    const int status = Report(ModelStore::Add(kind, model), kind, name);
    if (status == CliOk)
        m_out << (kind == ModelStore::Params4 ? " 4 parameters  is saved successfully !\n"
                                              : " 7 parameters  is saved successfully !\n");
    return status;
}

int ModelStoreEdit::SaveComputed(ModelStore::Kind kind, const TransformModel& model, bool replace)
{
    if (const char* missing = ModelEntry::MissingName(model.SrcSpaRef, model.DesSpaRef, model.TransName))
        return Fail(QString::fromUtf8(missing), CliUsageError);
    bool asked = false;
    const ModelStore::WriteResult result = ModelStore::Add(kind, model, [&] {
        asked = true;
        return replace;
    });
    if (result == ModelStore::NameTaken && asked)
        return Fail(QStringLiteral("The TransModelName has been taken,Wherher to replace it or not? "
                                   "(give --replace to replace \"%1\")").arg(model.TransName),
                    CliUsageError);
    const int status = Report(result, kind, model.TransName);
    if (status == CliOk)
        m_err << m_prefix << "save result success!\n";
    return status;
}

bool ModelStoreEdit::KindOf(const QString& kindText, const QString& name, ModelStore::Kind* kind)
{
    if (!kindText.isEmpty()) {
        if (parseKind(kindText, kind))
            return true;
        Fail(QStringLiteral("--kind takes 4 or 7, not \"%1\"").arg(kindText), CliUsageError);
        return false;
    }
    const bool four = ModelStore::Find(ModelStore::Params4, name, nullptr, ModelStore::WriterPath());
    const bool seven = ModelStore::Find(ModelStore::Params7, name, nullptr, ModelStore::WriterPath());
    if (four && seven) {
        Fail(QStringLiteral("both a four- and a seven-parameter model are named \"%1\": give --kind").arg(name),
             CliUsageError);
        return false;
    }
    *kind = four ? ModelStore::Params4 : ModelStore::Params7;
    return true;
}

bool ModelStoreEdit::NamedModel(const QStringList& args, int count, const QString& usage, QStringList* positional,
                                ModelStore::Kind* kind)
{
    QCommandLineParser parser;
    const QCommandLineOption kindOpt(QStringLiteral("kind"), QString(), QStringLiteral("4|7"));
    parser.addOption(kindOpt);
    QString error;
    if (!CliSupport::parse(parser, args, &error) || parser.positionalArguments().size() != count) {
        Fail(error.isEmpty() ? usage : error, CliUsageError);
        return false;
    }
    *positional = parser.positionalArguments();
    return KindOf(parser.value(kindOpt), positional->first(), kind);
}

int ModelStoreEdit::Remove(const QStringList& args)
{
    QStringList names;
    ModelStore::Kind kind = ModelStore::Params7;
    if (!NamedModel(args, 1, QStringLiteral("give one model name"), &names, &kind))
        return CliUsageError;
    return Report(ModelStore::Remove(kind, names.first()), kind, names.first());
}

int ModelStoreEdit::Rename(const QStringList& args)
{
    QStringList names;
    ModelStore::Kind kind = ModelStore::Params7;
    if (!NamedModel(args, 2, QStringLiteral("give the model's name and its new name"), &names, &kind))
        return CliUsageError;
    const QString from = names.at(0), to = names.at(1);
    if (to.isEmpty())
        return Fail(QString::fromUtf8(ModelEntry::kNoName), CliUsageError);
    const ModelStore::WriteResult result = ModelStore::Rename(kind, from, to);
    return Report(result, kind, result == ModelStore::NameTaken ? to : from);
}

int ModelStoreEdit::Export(const QStringList& args)
{
    QStringList arguments;
    ModelStore::Kind kind = ModelStore::Params7;
    if (!NamedModel(args, 2, QStringLiteral("give a model name and a file (- for standard output)"), &arguments, &kind))
        return CliUsageError;
    const QString name = arguments.at(0);
    QString error;
    TransformModel model;
    if (ModelStore::FindUsable(kind, name, &model, &error) <= 0)
        return Fail(error.isEmpty() ? QStringLiteral("no %1-parameter model is named \"%2\"").arg(int(kind)).arg(name)
                                    : error,
                    CliUsageError);
    const std::vector<double> values(model.Params.begin(), model.Params.end());
    const QString block = kind == ModelStore::Params4 ? ControlPointCalculation::FormatResult4(values.data())
                                                      : ControlPointCalculation::FormatResult7(values.data());
    // The file the entry dialogs import: GB18030, "KEY=value" lines.
    OutputFile output(arguments.at(1));
    const QByteArray bytes = QTextCodec::codecForName("GB18030")->fromUnicode(block);
    if (!output.Open(&error))
        return Fail(error, CliUsageError);
    if (output.Device()->write(bytes) != bytes.size()) {
        const QString why = output.WriteError();
        output.Cancel();
        return Fail(why, CliUsageError);
    }
    if (!output.Commit(&error))
        return Fail(error, CliUsageError);
    return CliOk;
}

int ModelStoreEdit::Report(ModelStore::WriteResult result, ModelStore::Kind kind, const QString& name)
{
    const QString path = ModelStore::WriterPath();
    switch (result) {
    case ModelStore::Written:
        return CliOk;
    case ModelStore::NameTaken:
        return Fail(QString::fromUtf8(ModelEntry::kNameTaken) + QStringLiteral("(\"%1\")").arg(name), CliUsageError);
    case ModelStore::NotFound:
        return Fail(QStringLiteral("no %1-parameter model is named \"%2\"").arg(int(kind)).arg(name), CliUsageError);
    case ModelStore::CannotOpen:
        return Fail(QStringLiteral("save result failed! The model store \"%1\" cannot be read").arg(path), CliUsageError);
    case ModelStore::Malformed:
        return Fail(QStringLiteral("the model store \"%1\" is not well-formed XML; nothing written").arg(path),
                    CliUsageError);
    case ModelStore::NoContainer:
        return Fail(QStringLiteral("the model store \"%1\" has no Params%2 element; nothing written")
                        .arg(path).arg(int(kind)),
                    CliUsageError);
    case ModelStore::Busy:
        return Fail(QStringLiteral("the model store \"%1\" stays locked by another program; nothing written").arg(path),
                    CliUsageError);
    case ModelStore::WriteFailed:
        break;
    }
    return Fail(QStringLiteral("save result failed! The model store \"%1\" cannot be written; it is unchanged").arg(path),
                CliUsageError);
}
