#pragma once

#include "reprojection/ReprojectionRequest.h"

#include <QString>
#include <QStringList>

#include <functional>

class QWidget;

namespace KivAlgo {
class Algorithm;
}
namespace KivFramework {
class IApplication;
class IDesktopFrame;
class IProgressIndicator;
}

/// What the dataset and batch reprojection commands do alike around a
/// running algorithm. The commands keep their own handlers (bound to the
/// algorithm's signals) and their own texts, translated in their own
/// context; the steps are here once.
class ReprojectionJob
{
public:
    /// Starts `request` through the one runner; `connect` binds the
    /// command's handlers, which own the algorithm from a successful start
    /// on. Without an algorithm, shows `missingText` in a warning whose
    /// parent is `warningParent` and whose title is that widget's title.
    static void Start(const ReprojectionRequest& request, QWidget* warningParent, const QString& missingText,
                      const std::function<void(KivAlgo::Algorithm*)>& connect);

    /// Progress below 100 % goes to the frame's indicator; 100 % is left to
    /// the completion. Always 1: the commands never stop a run this way.
    static int ShowProgress(KivFramework::IDesktopFrame* frame, double percent, const QString& text);

    /// The end of a run: an error other than the user's stop goes to
    /// `errored`; a success shows 100 % with `completeText`, ends the
    /// indicator and adds every result of the record (then `strOutputFile`
    /// when `withOutputFile`) to the current map. Deletes the algorithm
    /// exactly once, whichever way it ends; a record of another type
    /// (`boost::bad_any_cast`) goes up to the caller.
    static void Complete(void* algorithm, KivFramework::IDesktopFrame* frame, KivFramework::IApplication* application,
                         const QString& completeText, bool withOutputFile,
                         const std::function<void(int, const QString&)>& errored);

    /// A failed run: `message` in a warning titled `title` over the main
    /// window, then 0 % with `failedText` and the end of the indicator.
    static void ReportError(KivFramework::IDesktopFrame* frame, const QString& title, const QString& message,
                            const QString& failedText);

    /// A cancelled run: the indicator is reset and ended (in that order, or
    /// ended first when `endFirst`), the algorithm deleted; no message.
    static void Cancelled(void* algorithm, KivFramework::IDesktopFrame* frame, bool endFirst);

    /// Adds a default layer for each path that gives one to the current map,
    /// refreshing the map after each; paths without a layer are skipped.
    static void AddResultLayers(KivFramework::IApplication* application, const QStringList& paths);
};
