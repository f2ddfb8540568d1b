#include "ModelsCommand.h"

#include "CliRegistry.h"
#include "CliSupport.h"

#include "models/ModelStore.h"

#include <QCommandLineParser>
#include <QTextStream>

static CliRegistrar<ModelsCommand> registrar;

QString ModelsCommand::name() const
{
    return QStringLiteral("models");
}

QString ModelsCommand::summary() const
{
    return QStringLiteral("list the stored four- and seven-parameter models");
}

QString ModelsCommand::help() const
{
    return QStringLiteral(
        "Usage: coordstransform models [--kind 4|7]\n"
        "\n"
        "Lists the models of the model store, one per line, tab-separated, after a\n"
        "heading line: kind (4 or 7), name, source, target, then the parameters as\n"
        "NAME=VALUE (four-parameter: DX DY in metres, T in degrees, K the scale;\n"
        "seven-parameter: DX DY DZ in metres, w k r in arc-seconds, m the scale\n"
        "change). Seven-parameter models come first, each kind in stored order.\n"
        "Any model can be used by name with \"coordstransform transform --model\".\n"
        "\n"
        "Options:\n"
        "  --kind 4|7   list only the four- or the seven-parameter models\n");
}

int ModelsCommand::run(const QStringList& args, QTextStream& out, QTextStream& err)
{
    QCommandLineParser parser;
    const QCommandLineOption kindOption(QStringLiteral("kind"), QString(), QStringLiteral("4|7"));
    parser.addOption(kindOption);
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
    int status = CliOk;
    out << "kind\tname\tsource\ttarget\tparameters\n";
    for (ModelStore::Kind kind : kinds) {
        const bool seven = kind == ModelStore::Params7;
        const int count = seven ? 7 : 4;
        const ModelStore::Reading reading = ModelStore::Read(kind);
        if (!reading.error.isEmpty()) {
            // Once is enough: both kinds come from the same file.
            if (status == CliOk)
                err << "coordstransform models: " << reading.error << '\n';
            status = CliDataErrors;
            continue;
        }
        for (const QString& problem : reading.problems) {
            err << "coordstransform models: " << problem << "; the model cannot be used\n";
            status = CliDataErrors;
        }
        for (const TransformModel& model : reading.models) {
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
    return status;
}
