#pragma once

#include "KivFramework/CommandInfo.h"

#include <QList>
#include <QString>

/// The host's configuration of one plug-in: its library and the commands it
/// offers, read from an XML manifest in the data folder:
///
///     <Plugins>
///       <Plugin library="CoordsTransformUI" menu="Coordinate Transformation">
///         <Command name="CoordsTransform_4params" caption="..." tooltip="..."
///                  icon="kivdesk/icons/calc4.png" type="Button" menu="..."/>
///       </Plugin>
///     </Plugins>
///
/// A command without a menu attribute goes into its plug-in's menu.
struct PluginManifestEntry
{
    QString library;  ///< library name (without "lib" and ".so") or a path
    QList<KivFramework::CommandInfo> commands;
};

class PluginManifest
{
public:
    /// Reads `path`; on failure `error()` says why and no plug-in is listed.
    bool load(const QString& path);

    QList<PluginManifestEntry> plugins() const { return m_plugins; }
    QString error() const { return m_error; }

private:
    QList<PluginManifestEntry> m_plugins;
    QString m_error;
};
