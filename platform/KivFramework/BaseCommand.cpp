#include "KivFramework/BaseCommand.h"

#include "KivFramework/IApplication.h"

namespace KivFramework {

BaseCommand::BaseCommand() = default;

BaseCommand::BaseCommand(const BaseCommand& other)
    : KivUtility::CRef(), KivUI::ICommand(other), m_pApplication(other.m_pApplication)
{
}

BaseCommand& BaseCommand::operator=(const BaseCommand& other)
{
    m_pApplication = other.m_pApplication;
    return *this;
}

BaseCommand::~BaseCommand() = default;

QString BaseCommand::GetName() const
{
    return m_pApplication ? m_pApplication->GetCommandInfo(this).name : QString();
}

QString BaseCommand::GetCaption() const
{
    return m_pApplication ? m_pApplication->GetCommandInfo(this).caption : QString();
}

QString BaseCommand::GetToolTip() const
{
    return m_pApplication ? m_pApplication->GetCommandInfo(this).toolTip : QString();
}

QString BaseCommand::GetTypeName() const
{
    return m_pApplication ? m_pApplication->GetCommandInfo(this).typeName : QString();
}

bool BaseCommand::IsEnable()
{
    return m_pApplication != nullptr;
}

bool BaseCommand::IsChecked()
{
    return false;
}

void BaseCommand::OnCreate(void* hook)
{
    m_pApplication = static_cast<IApplication*>(hook);
}

void BaseCommand::OnClick()
{
}

} // namespace KivFramework
