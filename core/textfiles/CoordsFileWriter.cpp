#include "textfiles/CoordsFileWriter.h"

bool CoordsFileWriter::UsesGB18030(const QString& path)
{
    const int dot = path.indexOf(QLatin1Char('.'));
    return dot >= 0 && path.midRef(dot).compare(QLatin1String(".csv"), Qt::CaseInsensitive) == 0;
}
