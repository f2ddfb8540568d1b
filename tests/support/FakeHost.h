#pragma once

#include "KivCarto/IPmdContents.h"
#include "KivCarto/Map.h"
#include "KivFramework/IApplication.h"
#include "KivFramework/IDesktopFrame.h"
#include "KivFramework/IProgressIndicator.h"

#include <QHash>
#include <QStringList>
#include <QWidget>

#include <memory>

namespace KivTest {

/// A contents view that is a widget, as a real host's layer panel is.
class WidgetContents : public QWidget, public KivCarto::IPmdContents
{
public:
    void RefreshContents() override { ++refreshes; }
    int refreshes = 0;
};

/// A contents view that is not a widget.
class PlainContents : public KivCarto::IPmdContents
{
public:
    void RefreshContents() override {}
};

/// A progress indicator that records what it was told, one line per call:
/// "show 42.0 text", "end", "reset".
class RecordingProgress : public KivFramework::IProgressIndicator
{
public:
    void ShowProgress(double percent, const QString& text) override
    {
        calls << QStringLiteral("show %1 %2").arg(percent, 0, 'f', 1).arg(text);
    }
    void End() override { calls << QStringLiteral("end"); }
    void Reset() override { calls << QStringLiteral("reset"); }
    QStringList calls;
};

/// A host application object for tests: what commands ask of a host, with
/// each piece optional.
class FakeHost : public KivFramework::IApplication, public KivFramework::IDesktopFrame
{
public:
    enum ContentsKind { NoContents, WidgetView, NonWidgetView };

    explicit FakeHost(ContentsKind contents = WidgetView, bool withFrame = true);
    ~FakeHost() override;

    KivCarto::IPmdContents* GetMapContents() override;
    KivUtility::_ptr_t<KivCarto::Map> GetCurrentMap() override { return map; }
    KivFramework::IDesktopFrame* GetDesktopFrame() override { return withFrame ? this : nullptr; }
    KivFramework::CommandInfo GetCommandInfo(const KivUI::ICommand* command) const override
    {
        return infos.value(command);
    }
    QWidget* GetMainWindow() override { return &mainWindow; }
    KivFramework::IProgressIndicator* GetProgressIndicator() override { return &progress; }

    /// The host object as commands receive it in OnCreate.
    void* hook() { return static_cast<KivFramework::IApplication*>(this); }

    ContentsKind contentsKind;
    bool withFrame;
    WidgetContents widgetContents;
    PlainContents plainContents;
    QWidget mainWindow;
    RecordingProgress progress;
    KivUtility::_ptr_t<KivCarto::Map> map;
    QHash<const KivUI::ICommand*, KivFramework::CommandInfo> infos;
};

} // namespace KivTest
