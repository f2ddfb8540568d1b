#pragma once

#include "KivFramework/CommandInfo.h"
#include "KivUI/CMDPluginModule.h"
#include "KivUI/ICommand.h"
#include "KivUtility/_ptr_t.h"

#include <QLibrary>
#include <QList>
#include <QString>

#include <memory>

/// One command the host configured: what the manifest says of it and the
/// command object, null when the plug-in did not create it.
struct LoadedCommand
{
    KivFramework::CommandInfo info;
    KivUtility::_ptr_t<KivUI::ICommand> command;
};

/// Loads a plug-in library the way the host platform does: QLibrary, the
/// exported `GetPluginModule`, then `CreateCommand` for every configured name.
class PluginLoader
{
public:
    PluginLoader();
    ~PluginLoader();

    /// `library` is a name looked up in the program's lib folder
    /// (<exe>/../lib/lib<name>.so) or a path. Returns false and sets `error()`
    /// when the library or its entry point is missing.
    bool load(const QString& library);
    /// Creates the commands; those the module does not know stay null.
    QList<LoadedCommand> createCommands(const QList<KivFramework::CommandInfo>& infos);

    QString error() const { return m_error; }
    static QString libraryPath(const QString& library);

private:
    std::unique_ptr<QLibrary> m_library;
    KivUtility::_ptr_t<KivUI::CMDPluginModule> m_module;
    QString m_error;
};
