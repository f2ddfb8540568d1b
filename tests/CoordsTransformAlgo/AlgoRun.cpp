#include "AlgoRun.h"

#include <QElapsedTimer>
#include <QTest>

AlgoRun AlgoRun::run(const QString& algorithm, const stCoordsTransformInfo& info, int answer, bool cancel)
{
    AlgoRun result;
    KivAlgo::Algorithm* algo = KivAlgo::AlgoFactory::Instance()->CreateAlgorithm(QStringLiteral("CoordsTransformAlgo"),
                                                                                algorithm);
    if (!algo) {
        result.code = -999;
        return result;
    }
    algo->SetParameters(boost::any(info));
    algo->SetDisplayName(QStringLiteral("Reproject"));
    QElapsedTimer timer;
    bool askedToStop = false;
    algo->SigProgressUpdated().connect([&](double, const QString&, void* a) {
        if (!askedToStop) {
            askedToStop = true;
            timer.start();
            if (cancel)
                KivAlgo::AlgoFactory::Instance()->Cancel(static_cast<KivAlgo::Algorithm*>(a));
        }
        return answer;
    });
    bool ended = false;
    algo->SigExecuteCompleted().connect([&](void*) {
        ++result.completed;
        algo->GetError(result.code, result.message);
        try {
            result.info = boost::any_cast<stCoordsTransformInfo>(algo->GetParameters());
        } catch (...) {
        }
        ended = true;
    });
    algo->SigExecuteCanceled().connect([&](void*) {
        ++result.canceled;
        ended = true;
    });
    KivAlgo::AlgoFactory::Instance()->Run(algo);
    QElapsedTimer waited;
    waited.start();
    while (!ended && waited.elapsed() < 240000)
        QTest::qWait(5);
    if (!ended)
        result.code = -998;
    result.millisecondsToEnd = askedToStop ? timer.elapsed() : 0;
    delete algo;
    return result;
}
