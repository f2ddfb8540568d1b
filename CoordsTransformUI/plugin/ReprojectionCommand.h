#pragma once

#include "reprojection/ReprojectionRequest.h"

#include "KivFramework/DesktopCommand.h"

#include <QString>

class QWidget;

/// The dataset and the batch reprojection commands: each opens its dialog
/// and, when it is accepted, runs the reprojection through the host's
/// algorithm library, with progress on the host's indicator and the results
/// added to the current map. They differ only in their dialog, algorithm and
/// texts, which the subclass gives. The command must outlive the job, since
/// the algorithm's handlers are bound to it.
class ReprojectionCommand : public KivFramework::DesktopCommand
{
public:
    /// Always true: the command never greys itself out.
    bool IsEnable() override;
    void OnClick() override;

    /// What tells one command from the other. Texts are translated in the
    /// command's own context (its class name).
    struct Kind
    {
        const char* context;
        const char* displayName;  ///< the algorithm's display name
        const char* completeText; ///< the indicator's text at the end
        const char* failedText;   ///< the indicator's text after a failure
        const char* errorTitle;   ///< the title of a failure's message
        bool listThenOutput;      ///< also add `strOutputFile` after the list
        bool endBeforeReset;      ///< the order of ending and resetting on cancel
    };

protected:
    explicit ReprojectionCommand(const Kind& kind) : m_kind(&kind) {}

    /// Runs the command's dialog; on acceptance fills the request's record
    /// and its choice of algorithm and the parent of a missing-library
    /// warning, and returns true.
    virtual bool RunDialog(ReprojectionRequest* request, QWidget** warningParent) = 0;

    QString Text(const char* source) const;

private:
    int OnProgressUpdated(double percent, const QString& text, void* algorithm);
    void OnExecuteCompleted(void* algorithm);
    void OnExecuteCanceled(void* algorithm);
    void OnExecuteErrored(int code, const QString& message);

    const Kind* m_kind;
};
