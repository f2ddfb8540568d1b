// The main function of every test executable: prepares an isolated
// environment (offscreen display, a configuration folder of its own, the
// UTF-8 locale codec that the host sets) and runs every registered test class.

#include "support/TestData.h"
#include "support/TestRegistry.h"

#include <QApplication>
#include <QDir>
#include <QTest>
#include <QTextCodec>

#include <memory>

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");

    // Only the class names given with -class run; other arguments go to QTest.
    QStringList only;
    QList<QByteArray> passOn;
    for (int i = 0; i < argc; ++i) {
        if (qstrcmp(argv[i], "-class") == 0 && i + 1 < argc) {
            only << QString::fromLocal8Bit(argv[++i]);
            continue;
        }
        passOn << QByteArray(argv[i]);
    }

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("kivtest"));
    // Settings persist under XDG_CONFIG_HOME; keep them in the process's own
    // temporary folder.
    const QString config = KivTest::tempRoot() + QStringLiteral("/config");
    QDir().mkpath(config);
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(config));
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    KivTest::resetData();

    QStringList args;
    for (const QByteArray& a : passOn)
        args << QString::fromLocal8Bit(a);

    int failures = 0;
    for (const KivTest::TestClassEntry& entry : KivTest::registeredClasses()) {
        if (!only.isEmpty() && !only.contains(QString::fromLatin1(entry.name)))
            continue;
        std::unique_ptr<QObject> test(entry.create());
        failures += QTest::qExec(test.get(), args);
    }
    // Let short-lived widget animations (a line edit's clear button fading)
    // finish and delete themselves, so the leak checker sees only real leaks.
    QTest::qWait(300);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return failures == 0 ? 0 : 1;
}
