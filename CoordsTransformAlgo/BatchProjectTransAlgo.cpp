#include "BatchProjectTransAlgo.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <thread>
#include <vector>

bool BatchProjectTransAlgo::Reproject(stCoordsTransformInfo& info)
{
    const RouteSettings route = RouteSettings::FromRecord(info);
    QString problem = route.Check();
    if (!problem.isEmpty()) {
        SetError(-1, problem);
        return false;
    }
    if (info.strOutputFolder.isEmpty() || !QFileInfo(info.strOutputFolder).isDir()) {
        SetError(-1, QStringLiteral("The output folder \"%1\" does not exist.").arg(info.strOutputFolder));
        return false;
    }

    QStringList failures;
    QList<Item> items;
    for (const QString& input : info.lstInputFiles) {
        QString error;
        const QList<Item> planned = ReprojectionPlan::Plan(input, QString(), info.strOutputFolder, info.strRasterFormat,
                                                           !RasterFormatNamed(), &error,
                                                           info.strExtra2);
        if (planned.isEmpty())
            failures << QStringLiteral("%1: %2").arg(input, error);
        items << planned;
    }

    // Progress: every item counts the same.
    const int count = std::max(1, int(items.size()));
    std::vector<double> fractions(items.size(), 0.0);
    std::mutex mutex;
    std::vector<QString> errors(items.size());
    std::vector<QString> notes(items.size());
    std::atomic<bool> stopped{false};
    const auto progressFor = [&](int index) {
        return [&, index](double fraction) {
            double sum = 0.0;
            {
                std::lock_guard<std::mutex> lock(mutex);
                fractions[index] = fraction;
                for (double f : fractions)
                    sum += f;
            }
            return ReportProgress(100.0 * sum / count, GetDisplayName());
        };
    };
    const auto runOne = [&](int index) {
        bool itemStopped = false;
        const QString error = RunItem(route, items[index], progressFor(index), &itemStopped, &notes[index]);
        if (itemStopped)
            stopped = true;
        else
            errors[index] = error;
    };

    // Rasters warp on every core already; vector layers take one core each.
    std::vector<int> vectors;
    for (int i = 0; i < items.size() && !stopped; ++i) {
        if (items[i].layer < 0)
            runOne(i);
        else
            vectors.push_back(i);
    }
    const int workers = std::max(1, std::min(int(vectors.size()), int(std::thread::hardware_concurrency())));
    std::atomic<size_t> next{0};
    std::vector<std::thread> pool;
    for (int w = 0; w < workers; ++w)
        pool.emplace_back([&] {
            for (size_t k = next++; k < vectors.size() && !stopped && !IsStopRequested(); k = next++)
                runOne(vectors[k]);
        });
    for (std::thread& t : pool)
        t.join();
    if (stopped || IsStopRequested())
        return false;

    QStringList warnings;
    for (int i = 0; i < items.size(); ++i) {
        if (!notes[i].isEmpty())
            warnings << notes[i];
        if (errors[i].isEmpty())
            info.lstOutputFiles << items[i].output;
        else
            failures << QStringLiteral("%1: %2").arg(items[i].input, errors[i]);
    }
    if (!failures.isEmpty()) {
        SetError(-1, (failures + warnings).join(QLatin1Char('\n')));
        return false;
    }
    SetError(0, warnings.join(QLatin1Char('\n')));
    return true;
}
