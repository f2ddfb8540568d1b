#include "PluginManifest.h"

#include <QCoreApplication>
#include <QDomDocument>
#include <QFile>

bool PluginManifest::load(const QString& path)
{
    m_plugins.clear();
    m_error.clear();

    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        m_error = QObject::tr("Cannot read the plug-in manifest %1: %2").arg(path, file.errorString());
        return false;
    }
    QDomDocument doc;
    QString message;
    int line = 0;
    int column = 0;
    if (!doc.setContent(&file, &message, &line, &column)) {
        m_error = QObject::tr("The plug-in manifest %1 is not valid XML (line %2, column %3): %4")
                      .arg(path).arg(line).arg(column).arg(message);
        return false;
    }

    const QDomElement root = doc.documentElement();
    for (QDomElement p = root.firstChildElement(QStringLiteral("Plugin")); !p.isNull();
         p = p.nextSiblingElement(QStringLiteral("Plugin"))) {
        PluginManifestEntry entry;
        entry.library = p.attribute(QStringLiteral("library"));
        if (entry.library.isEmpty()) {
            m_error = QObject::tr("The plug-in manifest %1 has a plug-in without a library (line %2).")
                          .arg(path).arg(p.lineNumber());
            m_plugins.clear();
            return false;
        }
        // The manifest's texts are English; the translations list them under "PluginManifest".
        const auto translated = [](const QString& text) {
            return QCoreApplication::translate("PluginManifest", text.toUtf8().constData());
        };
        const QString defaultMenu = translated(p.attribute(QStringLiteral("menu"), QObject::tr("Plug-ins")));
        for (QDomElement c = p.firstChildElement(QStringLiteral("Command")); !c.isNull();
             c = c.nextSiblingElement(QStringLiteral("Command"))) {
            KivFramework::CommandInfo info;
            info.name = c.attribute(QStringLiteral("name"));
            if (info.name.isEmpty())
                continue;
            info.caption = translated(c.attribute(QStringLiteral("caption"), info.name));
            info.toolTip = translated(c.attribute(QStringLiteral("tooltip")));
            info.typeName = c.attribute(QStringLiteral("type"), QStringLiteral("Button"));
            info.icon = c.attribute(QStringLiteral("icon"));
            info.menu = c.hasAttribute(QStringLiteral("menu")) ? translated(c.attribute(QStringLiteral("menu")))
                                                               : defaultMenu;
            entry.commands << info;
        }
        m_plugins << entry;
    }
    return true;
}
