#include "ModelsCommand.h"

#include "CliRegistry.h"
#include "CliSupport.h"
#include "ModelStoreEdit.h"

#include "models/ModelStore.h"

#include <QCommandLineParser>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>

static CliRegistrar<ModelsCommand> registrar;

QString ModelsCommand::name() const
{
    return QStringLiteral("models");
}

QString ModelsCommand::summary() const
{
    return QStringLiteral("list, add, remove, rename, export and import stored models");
}

QString ModelsCommand::help() const
{
    return QStringLiteral(
        "Usage: coordstransform models [--kind 4|7] [--json | --names]\n"
        "   or: coordstransform models add --kind 4|7 [--name NAME] --from CRS --to CRS --params VALUES\n"
        "   or: coordstransform models import --kind 4|7 [--name NAME] --from CRS --to CRS FILE\n"
        "   or: coordstransform models remove [--kind 4|7] NAME\n"
        "   or: coordstransform models rename [--kind 4|7] NAME NEW-NAME\n"
        "   or: coordstransform models export [--kind 4|7] NAME FILE\n"
        "\n"
        "Lists the models of the model store, one per line, tab-separated, after a\n"
        "heading line: kind (4 or 7), name, source, target, then the parameters as\n"
        "NAME=VALUE (four-parameter: DX DY in metres, T in degrees, K the scale;\n"
        "seven-parameter: DX DY DZ in metres, w k r in arc-seconds, m the scale\n"
        "change). Seven-parameter models come first, each kind in stored order.\n"
        "Any model can be used by name with \"coordstransform transform --model\".\n"
        "\n"
        "With --json the list is one JSON object: {\"models\": [{\"kind\": 7,\n"
        "\"name\": ..., \"source\": ..., \"target\": ..., \"parameters\": {\"DX\": ...,\n"
        "...}}], \"problems\": [...]}; --names prints only the names, one a line.\n"
        "\n"
        "add and import enter a model as the Set 4 Params and Set 7 Params dialogs\n"
        "do, with their checks and messages: a four-parameter model goes between\n"
        "projected systems, a seven-parameter one between two geographic systems (a\n"
        "projected side goes by its geographic system); the name defaults to\n"
        "SOURCE-to-TARGET and must be new; the stored target name is the model\n"
        "name, as the dialogs store it. --params gives DX,DY,T,K or\n"
        "DX,DY,DZ,w,k,r,m comma-separated; import reads them from a file of\n"
        "\"DX(m)=...\" lines (GB18030), such as a calculation's result export or\n"
        "\"models export\". remove and rename find the model by its exact name\n"
        "(--kind when both kinds hold it). export writes the model's result block\n"
        "(FILE - is standard output). Every change is made under the store's lock,\n"
        "so concurrent writers (kivdesk, scripts) never lose each other's models.\n"
        "\n"
        "Options:\n"
        "  --kind 4|7   list only the four- or the seven-parameter models\n"
        "  --json       list as JSON\n"
        "  --names      list only the model names\n");
}

int ModelsCommand::run(const QStringList& args, QTextStream& out, QTextStream& err)
{
    if (!args.isEmpty() && ModelStoreEdit::Actions().contains(args.first()))
        return ModelStoreEdit(name(), out, err).Run(args.first(), args.mid(1));
    QCommandLineParser parser;
    const QCommandLineOption kindOption(QStringLiteral("kind"), QString(), QStringLiteral("4|7"));
    const QCommandLineOption jsonOption(QStringLiteral("json"));
    const QCommandLineOption namesOption(QStringLiteral("names"));
    parser.addOptions({kindOption, jsonOption, namesOption});
    QString error;
    if (!CliSupport::parse(parser, args, &error)) {
        err << "coordstransform models: " << error << '\n';
        return CliUsageError;
    }
    if (!parser.positionalArguments().isEmpty()) {
        err << "coordstransform models: unexpected argument \"" << parser.positionalArguments().first() << "\"\n";
        return CliUsageError;
    }
    QList<ModelStore::Kind> kinds{ModelStore::Params7, ModelStore::Params4};
    if (parser.isSet(kindOption)) {
        const QString kind = parser.value(kindOption);
        if (kind == QLatin1String("4"))
            kinds = {ModelStore::Params4};
        else if (kind == QLatin1String("7"))
            kinds = {ModelStore::Params7};
        else {
            err << "coordstransform models: --kind takes 4 or 7, not \"" << kind << "\"\n";
            return CliUsageError;
        }
    }

    // The store's own number formats: 6 decimals, 12 for the scale.
    static const char* const names7[] = {"DX", "DY", "DZ", "w", "k", "r", "m"};
    static const char* const names4[] = {"DX", "DY", "T", "K"};
    const bool json = parser.isSet(jsonOption), namesOnly = parser.isSet(namesOption);
    QJsonArray jsonModels, jsonProblems;
    int status = CliOk;
    if (!json && !namesOnly)
        out << "kind\tname\tsource\ttarget\tparameters\n";
    for (ModelStore::Kind kind : kinds) {
        const bool seven = kind == ModelStore::Params7;
        const int count = seven ? 7 : 4;
        const ModelStore::Reading reading = ModelStore::Read(kind);
        if (!reading.error.isEmpty()) {
            // Once is enough: both kinds come from the same file.
            if (status == CliOk) {
                err << "coordstransform models: " << reading.error << '\n';
                jsonProblems << reading.error;
            }
            status = CliDataErrors;
            continue;
        }
        for (const QString& problem : reading.problems) {
            err << "coordstransform models: " << problem << "; the model cannot be used\n";
            jsonProblems << problem;
            status = CliDataErrors;
        }
        for (const TransformModel& model : reading.models) {
            if (namesOnly) {
                out << model.TransName << '\n';
                continue;
            }
            if (json) {
                QJsonObject parameters;
                for (int i = 0; i < count; ++i)
                    parameters.insert(QLatin1String(seven ? names7[i] : names4[i]), model.Params.value(i));
                jsonModels << QJsonObject{{QStringLiteral("kind"), int(kind)},
                                          {QStringLiteral("name"), model.TransName},
                                          {QStringLiteral("source"), model.SrcSpaRef},
                                          {QStringLiteral("target"), model.DesSpaRef},
                                          {QStringLiteral("parameters"), parameters}};
                continue;
            }
            out << int(kind) << '\t' << model.TransName << '\t' << model.SrcSpaRef << '\t' << model.DesSpaRef << '\t';
            for (int i = 0; i < count; ++i) {
                const bool scale = seven ? i == 6 : i == 3;
                if (i > 0)
                    out << ' ';
                out << (seven ? names7[i] : names4[i]) << '='
                    << QString::number(model.Params.value(i), 'f', scale ? 12 : 6);
            }
            out << '\n';
        }
    }
    if (json)
        out << QJsonDocument(QJsonObject{{QStringLiteral("models"), jsonModels},
                                         {QStringLiteral("problems"), jsonProblems}})
                   .toJson(QJsonDocument::Indented);
    return status;
}
