#pragma once
// Kept for the command-line tests and the benchmark that include it here.
#include "support/FilesDialogSteps.h"
