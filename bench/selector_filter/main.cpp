// Times the reference picker as a user meets it: opening the dialog (the
// first time with the catalogue read from PROJ) and the list's answer to each
// keystroke of typical filters, layout included. The budget for a keystroke
// is 100 ms; the ratio printed is the slowest keystroke against it.

#include "KivAdapterUI/SpatialReferenceSelectorDlg.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

double elapsedMs(const QElapsedTimer& t)
{
    return t.nsecsElapsed() / 1e6;
}

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v.empty() ? 0.0 : v[v.size() / 2];
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // Recent systems must not come from the user's own settings.
    QTemporaryDir config;
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(config.path()));
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("bench_selector_filter"));

    using KivAdapterUI::SpatialReferenceSelectorDlg;
    QElapsedTimer t;
    t.start();
    {
        SpatialReferenceSelectorDlg first;
        first.show();
        QApplication::processEvents();
    }
    std::printf("first dialog, catalogue read from PROJ: %8.1f ms\n", elapsedMs(t));

    std::vector<double> opens;
    for (int i = 0; i < 9; ++i) {
        t.restart();
        SpatialReferenceSelectorDlg dlg;
        dlg.show();
        QApplication::processEvents();
        opens.push_back(elapsedMs(t));
    }
    std::printf("later dialogs (median of 9):             %8.1f ms\n", median(opens));

    SpatialReferenceSelectorDlg dlg;
    dlg.show();
    QApplication::processEvents();
    auto* filter = dlg.findChild<QLineEdit*>(QStringLiteral("lineEdit_Filter"));
    auto* count = dlg.findChild<QLabel*>(QStringLiteral("label_Count"));
    const QStringList typed = {QStringLiteral("beijing 1954 114e"), QStringLiteral("EPSG:4214"),
                               QStringLiteral("wgs 84 utm zone 50n"), QStringLiteral("esri:102100"),
                               QStringLiteral("a"), QStringLiteral("xian 1980 3 degree")};
    std::vector<double> keys;
    double worst = 0;
    for (const QString& text : typed) {
        std::vector<double> these;
        for (int n = 1; n <= text.size(); ++n) {
            t.restart();
            filter->setText(text.left(n));
            QApplication::processEvents();
            these.push_back(elapsedMs(t));
        }
        // Clearing brings back the whole list: the costliest change.
        t.restart();
        filter->clear();
        QApplication::processEvents();
        these.push_back(elapsedMs(t));
        const double slowest = *std::max_element(these.begin(), these.end());
        worst = std::max(worst, slowest);
        keys.insert(keys.end(), these.begin(), these.end());
        filter->setText(text);
        QApplication::processEvents();
        std::printf("filter %-22s %-14s median %5.1f ms, slowest %5.1f ms per keystroke\n",
                    qPrintable(QLatin1Char('"') + text + QLatin1Char('"')), qPrintable(count->text()),
                    median(these), slowest);
        filter->clear();
        QApplication::processEvents();
    }
    std::printf("keystrokes: %zu, median %.1f ms, slowest %.1f ms; slowest / 100 ms budget = %.2f\n",
                keys.size(), median(keys), worst, worst / 100.0);
    return worst <= 100.0 ? 0 : 1;
}
