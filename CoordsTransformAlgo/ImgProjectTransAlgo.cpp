#include "ImgProjectTransAlgo.h"

#include "RasterReprojector.h"

#include <QDir>
#include <QFileInfo>

bool ImgProjectTransAlgo::Reproject(stCoordsTransformInfo& info)
{
    const RouteSettings route = RouteSettings::FromRecord(info);
    const QString problem = route.Check();
    if (!problem.isEmpty()) {
        SetError(-1, problem);
        return false;
    }
    QString output = info.strOutputFile;
    if (output.isEmpty() && !info.strOutputFolder.isEmpty())
        output = QDir(info.strOutputFolder).filePath(QFileInfo(info.strInputFile).fileName());
    if (info.strInputFile.isEmpty() || output.isEmpty()) {
        SetError(-1, QStringLiteral("The input or the output file is missing."));
        return false;
    }
    Item item;
    item.input = info.strInputFile;
    item.output = output;
    item.format = info.strRasterFormat;
    bool stopped = false;
    QString note;
    const QString error = RunItem(route, item, Portion(0.0, 1.0, GetDisplayName()), &stopped, &note);
    if (stopped)
        return false;
    if (!error.isEmpty()) {
        SetError(-1, error);
        return false;
    }
    info.lstOutputFiles << output;
    SetError(0, note);
    return true;
}
