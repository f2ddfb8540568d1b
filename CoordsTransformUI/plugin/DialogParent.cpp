#include "plugin/DialogParent.h"

#include "KivCarto/IPmdContents.h"
#include "KivFramework/IApplication.h"

#include <QWidget>

QWidget* DialogParent(KivFramework::IApplication* application)
{
    if (!application)
        return nullptr;
    return dynamic_cast<QWidget*>(application->GetMapContents());
}
