#include "PluginLoader.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

PluginLoader::PluginLoader() = default;

PluginLoader::~PluginLoader()
{
    // Commands and module must be gone before their code is unloaded; the
    // library stays loaded for the life of the process, as hosts do.
    m_module.reset();
    if (m_library)
        m_library->setLoadHints(QLibrary::PreventUnloadHint);
}

QString PluginLoader::libraryPath(const QString& library)
{
    if (library.contains(QLatin1Char('/')))
        return library;
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../lib/lib")
                           + library + QStringLiteral(".so"));
}

bool PluginLoader::load(const QString& library)
{
    const QString path = libraryPath(library);
    m_library = std::make_unique<QLibrary>(path);
    if (!m_library->load()) {
        m_error = QCoreApplication::translate("PluginLoader", "The plug-in library %1 cannot be loaded: %2")
                      .arg(path, m_library->errorString());
        return false;
    }
    auto entry = reinterpret_cast<KivUI::GetPluginModuleFunction>(m_library->resolve("GetPluginModule"));
    if (!entry) {
        m_error = QCoreApplication::translate("PluginLoader", "The plug-in library %1 has no GetPluginModule entry point.")
                      .arg(path);
        return false;
    }
    m_module = entry();
    if (!m_module) {
        m_error = QCoreApplication::translate("PluginLoader", "The plug-in library %1 gave no module.").arg(path);
        return false;
    }
    return true;
}

QList<LoadedCommand> PluginLoader::createCommands(const QList<KivFramework::CommandInfo>& infos)
{
    QList<LoadedCommand> result;
    for (const KivFramework::CommandInfo& info : infos) {
        LoadedCommand loaded;
        loaded.info = info;
        if (m_module)
            loaded.command = m_module->CreateCommand(info.name, QString());
        result << loaded;
    }
    return result;
}
