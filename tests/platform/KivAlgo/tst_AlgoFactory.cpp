#include "support/TestRegistry.h"

#include "KivAlgo/AlgoFactory.h"

#include <QElapsedTimer>
#include <QTest>
#include <QThread>

#include <memory>

using namespace KivAlgo;

namespace {

const QString kLibrary = QStringLiteral("KivAlgoTestAlgorithms");

/// Records what reached the handlers and on which thread.
struct Observer
{
    int progressCalls = 0;
    double lastPercent = -1;
    int completed = 0;
    int canceled = 0;
    bool offThread = false;
    int answer = 1;
    bool deleteOnEnd = false;

    void connect(Algorithm* algorithm)
    {
        algorithm->SigProgressUpdated().connect([this](double percent, const QString&, void*) {
            ++progressCalls;
            lastPercent = percent;
            offThread |= QThread::currentThread() != qApp->thread();
            return answer;
        });
        algorithm->SigExecuteCompleted().connect([this](void* a) {
            ++completed;
            offThread |= QThread::currentThread() != qApp->thread();
            if (deleteOnEnd)
                delete static_cast<Algorithm*>(a);
        });
        algorithm->SigExecuteCanceled().connect([this](void* a) {
            ++canceled;
            offThread |= QThread::currentThread() != qApp->thread();
            if (deleteOnEnd)
                delete static_cast<Algorithm*>(a);
        });
    }
    bool ended() const { return completed + canceled > 0; }
};

} // namespace

class TestAlgoFactory : public QObject
{
    Q_OBJECT
private slots:
    void missingGivesNull_data();
    void missingGivesNull();
    void endsOnTheCallingThread_data();
    void endsOnTheCallingThread();
    void stopsWithinASecond_data();
    void stopsWithinASecond();
    void handlerMayDeleteTheAlgorithm();
    void deletingARunningAlgorithm();
};

void TestAlgoFactory::missingGivesNull_data()
{
    QTest::addColumn<QString>("library");
    QTest::addColumn<QString>("algorithm");
    QTest::newRow("missing library") << "NoSuchAlgorithms" << "Counter";
    QTest::newRow("unknown algorithm") << kLibrary << "NoSuchAlgorithm";
    QTest::newRow("empty names") << "" << "";
    QTest::newRow("path as library") << "../lib/KivAlgoTestAlgorithms" << "Counter";
    QTest::newRow("library without entry point") << "KivUtility" << "Counter";
}

void TestAlgoFactory::missingGivesNull()
{
    QFETCH(QString, library);
    QFETCH(QString, algorithm);
    std::unique_ptr<Algorithm> made(AlgoFactory::Instance()->CreateAlgorithm(library, algorithm));
    QVERIFY(!made);
    QVERIFY(!AlgoFactory::Instance()->Run(nullptr));
    QVERIFY(!AlgoFactory::Instance()->Cancel(nullptr));
}

void TestAlgoFactory::endsOnTheCallingThread_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("message");
    QTest::newRow("completes") << "Counter" << 0 << "";
    QTest::newRow("throws") << "Thrower" << -1 << "broken";
    QTest::newRow("reports") << "Failer" << 7 << "no good";
    QTest::newRow("wrong parameter type") << "Counter" << -1 << "*";
}

void TestAlgoFactory::endsOnTheCallingThread()
{
    QFETCH(QString, name);
    QFETCH(int, code);
    QFETCH(QString, message);
    std::unique_ptr<Algorithm> algorithm(AlgoFactory::Instance()->CreateAlgorithm(kLibrary, name));
    QVERIFY(algorithm);
    algorithm->SetDisplayName(QStringLiteral("Count"));
    QCOMPARE(algorithm->GetDisplayName(), QStringLiteral("Count"));
    algorithm->SetParameters(code == 0 ? boost::any(200) : boost::any(QStringLiteral("not a number")));
    Observer observer;
    observer.connect(algorithm.get());
    QVERIFY(AlgoFactory::Instance()->Run(algorithm.get()));
    QVERIFY(!AlgoFactory::Instance()->Run(algorithm.get()));  // already running
    QTRY_VERIFY_WITH_TIMEOUT(observer.ended(), 10000);
    QCOMPARE(observer.completed, 1);
    QVERIFY(!observer.offThread);
    int gotCode = 1;
    QString gotMessage = QStringLiteral("x");
    algorithm->GetError(gotCode, gotMessage);
    QCOMPARE(gotCode, code);
    QVERIFY2(message == "*" ? !gotMessage.isEmpty() : gotMessage == message, qPrintable(gotMessage));
    if (code == 0) {
        QVERIFY(observer.progressCalls > 0);
        QCOMPARE(boost::any_cast<int>(algorithm->GetParameters()), 400);
    }
    QVERIFY(!algorithm->IsRunning());
    QVERIFY(!AlgoFactory::Instance()->Cancel(algorithm.get()));
}

void TestAlgoFactory::stopsWithinASecond_data()
{
    QTest::addColumn<bool>("cancel");  // else the progress handler answers 0
    QTest::newRow("progress answer 0: a completion with the stop code") << false;
    QTest::newRow("Cancel: a cancellation") << true;
}

void TestAlgoFactory::stopsWithinASecond()
{
    QFETCH(bool, cancel);
    std::unique_ptr<Algorithm> algorithm(AlgoFactory::Instance()->CreateAlgorithm(kLibrary, QStringLiteral("Counter")));
    QVERIFY(algorithm);
    algorithm->SetParameters(boost::any(1000000));
    Observer observer;
    observer.answer = cancel ? 1 : 0;
    observer.connect(algorithm.get());
    QElapsedTimer timer;
    timer.start();
    QVERIFY(AlgoFactory::Instance()->Run(algorithm.get()));
    if (cancel) {
        QTRY_VERIFY_WITH_TIMEOUT(observer.progressCalls > 0, 5000);
        timer.restart();
        QVERIFY(AlgoFactory::Instance()->Cancel(algorithm.get()));
    }
    QTRY_VERIFY_WITH_TIMEOUT(observer.ended(), 5000);
    QVERIFY(timer.elapsed() < 1000);
    QCOMPARE(observer.completed, int(!cancel));
    QCOMPARE(observer.canceled, int(cancel));
    if (!cancel)
        QCOMPARE(observer.progressCalls, 1);
    int code = 1;
    QString message;
    algorithm->GetError(code, message);
    QCOMPARE(code, cancel ? 0 : kStoppedByHandler);
    if (!cancel)
        QCOMPARE(boost::any_cast<int>(algorithm->GetParameters()), 1000000);  // no results
}

void TestAlgoFactory::handlerMayDeleteTheAlgorithm()
{
    for (int cancel = 0; cancel < 2; ++cancel) {
        Algorithm* algorithm = AlgoFactory::Instance()->CreateAlgorithm(kLibrary, QStringLiteral("Counter"));
        algorithm->SetParameters(boost::any(cancel ? 1000000 : 5));
        Observer observer;
        observer.deleteOnEnd = true;
        observer.connect(algorithm);
        QVERIFY(AlgoFactory::Instance()->Run(algorithm));
        if (cancel)
            AlgoFactory::Instance()->Cancel(algorithm);
        QTRY_VERIFY_WITH_TIMEOUT(observer.ended(), 5000);
        QCOMPARE(observer.canceled, cancel);
    }
}

void TestAlgoFactory::deletingARunningAlgorithm()
{
    Observer observer;
    {
        std::unique_ptr<Algorithm> algorithm(AlgoFactory::Instance()->CreateAlgorithm(kLibrary, QStringLiteral("Counter")));
        algorithm->SetParameters(boost::any(1000000));
        observer.connect(algorithm.get());
        QVERIFY(AlgoFactory::Instance()->Run(algorithm.get()));
    }
    // Nothing queued for the deleted algorithm may arrive.
    QTest::qWait(50);
    QVERIFY(!observer.ended());
}

KIV_TEST_CLASS(TestAlgoFactory)
#include "tst_AlgoFactory.moc"
