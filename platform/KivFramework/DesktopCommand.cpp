#include "KivFramework/DesktopCommand.h"

#include "KivFramework/IApplication.h"

namespace KivFramework {

DesktopCommand::DesktopCommand() = default;

DesktopCommand::DesktopCommand(const DesktopCommand& other)
    : KivUtility::CRef(), BaseCommand(other), m_pDesktopFrame(other.m_pDesktopFrame)
{
}

DesktopCommand& DesktopCommand::operator=(const DesktopCommand& other)
{
    BaseCommand::operator=(other);
    m_pDesktopFrame = other.m_pDesktopFrame;
    return *this;
}

DesktopCommand::~DesktopCommand() = default;

void DesktopCommand::OnCreate(void* hook)
{
    BaseCommand::OnCreate(hook);
    m_pDesktopFrame = m_pApplication ? m_pApplication->GetDesktopFrame() : nullptr;
}

} // namespace KivFramework
