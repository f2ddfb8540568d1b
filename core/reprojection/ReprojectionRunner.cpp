#include "reprojection/ReprojectionRunner.h"

#include "reprojection/ReprojectionAlgorithmChoice.h"
#include "reprojection/ReprojectionFeedback.h"

#include "KivAlgo/AlgoFactory.h"
#include "KivDataSource/DatasetFactory.h"

#include <QEventLoop>
#include <QTimer>

#include <memory>

namespace {

KivAlgo::Algorithm* create(const ReprojectionRequest& request)
{
    KivAlgo::Algorithm* algorithm = KivAlgo::AlgoFactory::Instance()->CreateAlgorithm(
        ReprojectionAlgorithmChoice::Library(), ReprojectionRunner::AlgorithmOf(request));
    if (algorithm) {
        algorithm->SetParameters(boost::any(request.info));
        algorithm->SetDisplayName(request.displayName);
    }
    return algorithm;
}

QString notLoaded()
{
    return QStringLiteral("the algorithm library \"%1\" cannot be loaded from %2")
        .arg(ReprojectionAlgorithmChoice::Library(), ReprojectionRunner::LibraryFolders());
}

} // namespace

QString ReprojectionRunner::AlgorithmOf(const ReprojectionRequest& request)
{
    switch (request.choice) {
    case ReprojectionRequest::BySuffix:
        return ReprojectionAlgorithmChoice::BySuffix(request.info.strInputFile);
    case ReprojectionRequest::Batch:
        return ReprojectionAlgorithmChoice::Batch();
    case ReprojectionRequest::ByKind:
        break;
    }
    int kind = request.datasetKind;
    if (kind == 0) {
        const auto dataset = KivDataSource::DatasetFactory::Instance()->OpenDataset(request.info.strInputFile, 0,
                                                                                    QString());
        kind = dataset ? dataset->GetKind() : 0;
    }
    return ReprojectionAlgorithmChoice::ByKind(kind);
}

ReprojectionRunner::Outcome ReprojectionRunner::Run(const ReprojectionRequest& request,
                                                    ReprojectionFeedback& feedback, QStringList* errors)
{
    errors->clear();
    const KivDataSource::DatasetFactory::RunCache describeOnce;
    KivAlgo::AlgoFactory* factory = KivAlgo::AlgoFactory::Instance();
    const std::unique_ptr<KivAlgo::Algorithm> algorithm(create(request));
    if (!algorithm) {
        *errors << notLoaded();
        return NotLoaded;
    }
    QEventLoop loop;
    bool canceled = false;
    algorithm->SigProgressUpdated().connect([&feedback](double percent, const QString& text, void*) {
        feedback.Progress(percent, text);
        return 1;
    });
    algorithm->SigExecuteCompleted().connect([&loop](void*) { loop.quit(); });
    algorithm->SigExecuteCanceled().connect([&](void*) {
        canceled = true;
        loop.quit();
    });
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&] {
        if (feedback.StopRequested())
            factory->Cancel(algorithm.get());
    });
    watch.start(50);
    if (!factory->Run(algorithm.get())) {
        *errors << QStringLiteral("the reprojection could not be started");
        return NotStarted;
    }
    loop.exec();
    watch.stop();
    if (canceled)
        return Stopped;

    int code = 0;
    QString message;
    algorithm->GetError(code, message);
    const QStringList lines = message.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    try {
        for (const QString& path : boost::any_cast<stCoordsTransformInfo>(algorithm->GetParameters()).lstOutputFiles)
            feedback.Output(path);
    } catch (const boost::bad_any_cast&) {
    }
    if (code != 0) {
        *errors = lines;
        if (errors->isEmpty())
            *errors << QStringLiteral("the reprojection failed");
        return Failed;
    }
    for (const QString& line : lines)
        feedback.Warning(line);
    return Done;
}

ReprojectionRunner::Outcome ReprojectionRunner::Start(const ReprojectionRequest& request,
                                                      const std::function<void(KivAlgo::Algorithm*)>& connect)
{
    std::unique_ptr<KivAlgo::Algorithm> algorithm(create(request));
    if (!algorithm)
        return NotLoaded;
    connect(algorithm.get());
    // One that never starts is deleted here.
    if (!KivAlgo::AlgoFactory::Instance()->Run(algorithm.get()))
        return NotStarted;
    algorithm.release();
    return Done;
}

QString ReprojectionRunner::LibraryFolders()
{
    return KivAlgo::AlgoFactory::Instance()->LibraryFolders().join(QStringLiteral(", "));
}
