// Drives the file conversion dialog offscreen on one file, as a user would:
// format, input file (read, preview filled), systems, model, output file,
// Transform (convert, write). Prints the times of the two steps and the
// process's peak memory.
//
//     bench_convert_dialog INPUT OUTPUT FROM TO DX,DY,DZ,W,K,R,M
//
// The data folder beside the program is rebuilt from the shipped one, with
// the given seven-parameter model stored as "bench".

#include "support/FilesDialogSteps.h"
#include "textfiles/FileDataProjTransDlg.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTextCodec>

#include <cstdio>

namespace {

long peakKiB()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').first().toLong();
    }
    return -1;
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    const QStringList args = app.arguments();
    if (args.size() != 6) {
        std::fprintf(stderr, "usage: bench_convert_dialog INPUT OUTPUT FROM TO DX,DY,DZ,W,K,R,M\n");
        return 2;
    }
    const QString input = args.at(1), output = args.at(2);
    const QStringList p = args.at(5).split(QLatin1Char(','));
    if (p.size() != 7) {
        std::fprintf(stderr, "the model needs seven values\n");
        return 2;
    }

    using namespace DialogSteps;
    KivTest::resetData();
    KivTest::writeFile(storePath(),
                       QStringLiteral("<CoordTransform><Params4/><Params7><GeoTransformsModel TransName=\"bench\" "
                                      "DX=\"%1\" DY=\"%2\" DZ=\"%3\" w=\"%4\" k=\"%5\" r=\"%6\" m=\"%7\"/>"
                                      "</Params7></CoordTransform>")
                           .arg(p.at(0), p.at(1), p.at(2), p.at(3), p.at(4), p.at(5), p.at(6))
                           .toUtf8());

    FileDataProjTransDlg dlg;
    dlg.show();
    chooseFormat(dlg, QStringLiteral("General.xml"));

    KivTest::ModalDriver driver(600000);
    QElapsedTimer timer;
    timer.start();
    pickInput(dlg, driver, input);
    app.processEvents();
    dlg.grab();  // the preview as it would be painted
    const qint64 readMs = timer.elapsed();
    auto* table = dlg.findChild<QTableWidget*>(QStringLiteral("tableWidget"));
    const int rows = table->rowCount();

    pickSystems(dlg, driver, args.at(3), args.at(4));
    chooseModel(dlg, QStringLiteral("bench"));
    edit(dlg, "lineEdit_Output")->setText(output);
    QFile::remove(output);

    timer.restart();
    click(dlg, "pushButton_Transform");
    app.processEvents();
    dlg.grab();
    const qint64 transformMs = timer.elapsed();

    if (!driver.verify()) {
        std::fprintf(stderr, "%s\n", qPrintable(driver.report()));
        return 1;
    }
    if (!QFile::exists(output)) {
        std::fprintf(stderr, "no output written\n");
        return 1;
    }
    std::printf("dialog rows in preview     %d\n", rows);
    std::printf("dialog read + preview      %.2f s\n", readMs / 1000.0);
    std::printf("dialog convert + write     %.2f s\n", transformMs / 1000.0);
    std::printf("dialog total               %.2f s\n", (readMs + transformMs) / 1000.0);
    std::printf("dialog peak memory         %.0f MB\n", peakKiB() / 1024.0);
    return 0;
}
