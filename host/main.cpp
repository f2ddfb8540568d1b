// kivdesk: a small desktop GIS host that loads command plug-ins.

#include "MainWindow.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QTextCodec>
#include <QTimer>

#include <cstdio>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("kivdesk"));
    QApplication::setOrganizationName(QStringLiteral("kivdesk"));
    // Plug-ins decode their UTF-8 literals through the locale codec.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Desktop GIS host for the coordinate transformation plug-in."));
    parser.addHelpOption();
    QCommandLineOption listOption(QStringLiteral("list-commands"),
                                  QStringLiteral("Print each configured command and whether it was created; "
                                                 "exit 0 only when all were."));
    QCommandLineOption shotOption(QStringLiteral("screenshot"),
                                  QStringLiteral("Start, save a picture of the main window to <file>, exit."),
                                  QStringLiteral("file"));
    QCommandLineOption manifestOption(QStringLiteral("manifest"),
                                      QStringLiteral("Plug-in manifest to read instead of the data folder's."),
                                      QStringLiteral("file"));
    parser.addOption(listOption);
    parser.addOption(shotOption);
    parser.addOption(manifestOption);
    parser.process(app);

    MainWindow window;
    window.loadPlugins(parser.isSet(manifestOption) ? parser.value(manifestOption)
                                                    : MainWindow::defaultManifestPath());

    if (parser.isSet(listOption)) {
        bool all = !window.commands().isEmpty();
        for (const LoadedCommand& c : window.commands()) {
            std::printf("%s\t%s\n", qPrintable(c.info.name), c.command ? "created" : "NOT CREATED");
            all = all && c.command;
        }
        for (const QString& problem : window.problems())
            std::fprintf(stderr, "%s\n", qPrintable(problem));
        return all ? 0 : 1;
    }

    window.show();
    if (parser.isSet(shotOption)) {
        const QString file = parser.value(shotOption);
        int status = 1;
        QTimer::singleShot(300, &window, [&] {
            status = window.grab().save(file) ? 0 : 1;
            if (status != 0)
                std::fprintf(stderr, "cannot write %s\n", qPrintable(file));
            QApplication::quit();
        });
        app.exec();
        return status;
    }
    return app.exec();
}
