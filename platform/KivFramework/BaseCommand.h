#pragma once

#include "KivUI/ICommand.h"

namespace KivFramework {

class IApplication;

/// Base of the host's commands. Keeps the application object handed to
/// `OnCreate`; name, caption, tooltip and type name come from the host's
/// configuration of the command (empty before `OnCreate`).
///
/// Copies share the application object, nothing else.
class BaseCommand : public KivUI::ICommand
{
public:
    BaseCommand();
    BaseCommand(const BaseCommand& other);
    BaseCommand& operator=(const BaseCommand& other);
    ~BaseCommand() override;

    QString GetName() const override;
    QString GetCaption() const override;
    QString GetToolTip() const override;
    QString GetTypeName() const override;
    bool IsEnable() override;
    bool IsChecked() override;
    /// `hook` is the host's `IApplication*` (or null).
    void OnCreate(void* hook) override;
    void OnClick() override;

protected:
    /// The application object given to `OnCreate`; null before it.
    IApplication* m_pApplication = nullptr;
};

} // namespace KivFramework
