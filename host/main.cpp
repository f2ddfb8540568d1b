// kivdesk: a small desktop GIS host that loads command plug-ins.

#include "HelpMenu.h"
#include "KivApplication.h"
#include "MainWindow.h"
#include "MapView.h"
#include "ScriptedClicks.h"
#include "Translations.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QMenuBar>
#include <QTextCodec>
#include <QTimer>
#include <QToolBar>

#include <cstdio>
#include <cstring>

int main(int argc, char** argv)
{
    // --help and --version only print, so they must work where no display is
    // (a script, a terminal over ssh): the offscreen platform needs none.
    for (int i = 1; i < argc; ++i) {
        for (const char* option : {"-h", "--help", "--help-all", "-v", "--version"}) {
            if (std::strcmp(argv[i], option) == 0 && qEnvironmentVariableIsEmpty("DISPLAY")
                && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
                qputenv("QT_QPA_PLATFORM", "offscreen");
        }
    }

    KivApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("kivdesk"));
    QApplication::setOrganizationName(QStringLiteral("kivdesk"));
    QApplication::setApplicationVersion(QStringLiteral(KIV_VERSION));
    // Plug-ins decode their UTF-8 literals through the locale codec.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Desktop GIS host for the coordinate transformation plug-in."));
    parser.addHelpOption();
    parser.addVersionOption();
    QCommandLineOption listOption(QStringLiteral("list-commands"),
                                  QStringLiteral("Print each configured command and whether it was created; "
                                                 "exit 0 only when all were."));
    QCommandLineOption shotOption(QStringLiteral("screenshot"),
                                  QStringLiteral("Start, save a picture of the main window to <file>, exit."),
                                  QStringLiteral("file"));
    QCommandLineOption manifestOption(QStringLiteral("manifest"),
                                      QStringLiteral("Plug-in manifest to read instead of the data folder's."),
                                      QStringLiteral("file"));
    QCommandLineOption commandOption(QStringLiteral("command"),
                                     QStringLiteral("Run the command <name> once the window is up (with --screenshot, "
                                                    "the picture shows the dialog it opens)."),
                                     QStringLiteral("name"));
    QCommandLineOption langOption(QStringLiteral("lang"),
                                  QStringLiteral("Use the language <name> (en, zh_CN) instead of the configured one."),
                                  QStringLiteral("name"));
    QCommandLineOption clickOption(QStringLiteral("click"),
                                   QStringLiteral("After --command, click the button or action <name> of the dialog "
                                                  "in front (repeatable, in order)."),
                                   QStringLiteral("name"));
    parser.addOption(langOption);
    parser.addOption(clickOption);
    QCommandLineOption addOption(QStringLiteral("add"),
                                 QStringLiteral("Add the raster or vector <file> to the map at start (repeatable)."),
                                 QStringLiteral("file"));
    parser.addOption(addOption);
    parser.addOption(listOption);
    parser.addOption(commandOption);
    parser.addOption(shotOption);
    parser.addOption(manifestOption);
    parser.process(app);
    Translations::install(Translations::choose(parser.value(langOption)));

    MainWindow window;
    window.loadPlugins(parser.isSet(manifestOption) ? parser.value(manifestOption)
                                                    : MainWindow::defaultManifestPath());
    window.menuBar()->addMenu(new HelpMenu(&window));
    Translations::shortenToolbar(window.findChild<QToolBar*>(QStringLiteral("commandToolBar")));

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
    bool added = true;
    for (const QString& file : parser.values(addOption)) {
        QString error;
        if (!window.addDataFile(file, &error)) {
            std::fprintf(stderr, "%s\n", qPrintable(error));
            added = false;
        }
    }
    if (parser.isSet(addOption))
        window.mapView()->zoomToAll();
    const QString commandName = parser.value(commandOption);
    if (!commandName.isEmpty()) {
        QTimer::singleShot(100, &window, [&window, commandName] {
            if (!window.triggerCommand(commandName))
                std::fprintf(stderr, "no command %s\n", qPrintable(commandName));
        });
    }
    const QStringList clicks = parser.values(clickOption);
    ScriptedClicks::schedule(&window, clicks, 300);
    if (parser.isSet(shotOption)) {
        const QString file = parser.value(shotOption);
        int status = 1;
        // Runs inside a command's modal dialog too, and then pictures the dialog.
        QTimer::singleShot(600 + ScriptedClicks::kStepMs * clicks.size(), &window, [&] {
            QWidget* shown = QApplication::activeModalWidget();
            status = (shown ? shown : &window)->grab().save(file) ? 0 : 1;
            if (status != 0)
                std::fprintf(stderr, "cannot write %s\n", qPrintable(file));
            if (shown)
                shown->close();
            QApplication::quit();
        });
        app.exec();
        return added ? status : 1;
    }
    return app.exec();
}
