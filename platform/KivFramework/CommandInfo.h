#pragma once

#include <QString>

namespace KivFramework {

/// How the host's configuration presents one command.
struct CommandInfo
{
    QString name;      ///< the name the command was created by
    QString caption;
    QString toolTip;
    QString typeName;  ///< the host's kind of entry ("Button")
    QString icon;      ///< icon file, relative to the data folder
    QString menu;      ///< the menu that carries the command
};

} // namespace KivFramework
