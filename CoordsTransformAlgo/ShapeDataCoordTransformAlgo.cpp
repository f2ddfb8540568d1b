#include "ShapeDataCoordTransformAlgo.h"

bool ShapeDataCoordTransformAlgo::Reproject(stCoordsTransformInfo& info)
{
    const RouteSettings route = RouteSettings::FromRecord(info);
    QString problem = route.Check();
    if (!problem.isEmpty()) {
        SetError(-1, problem);
        return false;
    }
    if (info.strInputFile.isEmpty() || (info.strOutputFile.isEmpty() && info.strOutputFolder.isEmpty())) {
        SetError(-1, QStringLiteral("The input or the output file is missing."));
        return false;
    }
    const QList<Item> items = ReprojectionPlan::Plan(info.strInputFile, info.strOutputFile, info.strOutputFolder,
                                   info.strRasterFormat, false, &problem, info.strExtra2);
    if (items.isEmpty()) {
        SetError(-1, problem);
        return false;
    }
    QStringList failures, notes;
    for (int i = 0; i < items.size(); ++i) {
        bool stopped = false;
        const double share = 1.0 / items.size();
        QString note;
        const QString error = RunItem(route, items[i], Portion(i * share, share, GetDisplayName()), &stopped, &note);
        if (stopped)
            return false;
        if (!note.isEmpty())
            notes << note;
        if (error.isEmpty())
            info.lstOutputFiles << items[i].output;
        else
            failures << error;
    }
    if (!failures.isEmpty()) {
        SetError(-1, (failures + notes).join(QLatin1Char('\n')));
        return false;
    }
    SetError(0, notes.join(QLatin1Char('\n')));
    return true;
}
