#include "spatialref/PointCoordsTransformDlg.h"

PointCoordsTransformDlg::PointCoordsTransformDlg(QWidget* parent) : QDialog(parent)
{
    setWindowTitle(tr("Point Coordinate Conversion"));
}

PointCoordsTransformDlg::~PointCoordsTransformDlg() = default;
