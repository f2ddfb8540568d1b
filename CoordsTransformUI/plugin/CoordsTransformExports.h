#pragma once

// The plain functions the plug-in library exports besides GetPluginModule,
// for a component that runs the reprojection dialogs itself: create a
// dialog, run it modally, and on acceptance read its record before deleting
// the dialog. Resolve them by these undecorated names.

#include "reprojection/stCoordsTransformInfo.h"

class QDialog;

extern "C" {
/// A new dataset reprojection dialog without a parent; the caller owns it.
QDialog* GetDataPrjTransDialog();
/// The record of a dataset reprojection dialog (owned by the dialog), or
/// null for a null dialog or one of another class.
stCoordsTransformInfo* GetPrjTransParams(QDialog* dialog);
/// A new batch reprojection dialog without a parent; the caller owns it.
QDialog* GetBatchDataPrjTransDialog();
/// The record of a batch reprojection dialog, or null.
stCoordsTransformInfo* GetBatchPrjTransParams(QDialog* dialog);
}
