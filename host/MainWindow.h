#pragma once

#include "KivCarto/Map.h"
#include "KivFramework/IApplication.h"
#include "KivFramework/IDesktopFrame.h"
#include "PluginLoader.h"

#include <QHash>
#include <QMainWindow>

#include <memory>
#include <vector>

class LayerPanel;
class MapView;
class ProgressIndicator;
class QAction;
class QLabel;

/// The desktop host's main window. It is the application object and the
/// desktop frame that commands receive: it loads the plug-ins named in the
/// manifest, shows their commands in menus and a toolbar, and offers the
/// layer panel, the map and the progress indicator to them.
class MainWindow : public QMainWindow, public KivFramework::IApplication, public KivFramework::IDesktopFrame
{
    Q_OBJECT
public:
    explicit MainWindow(QWidget* parent = nullptr);
    ~MainWindow() override;

    /// Reads the manifest and loads its plug-ins. Problems are collected in
    /// `problems()`; the window works without the plug-ins they concern.
    void loadPlugins(const QString& manifestPath);
    static QString defaultManifestPath();

    QList<LoadedCommand> commands() const { return m_commands; }
    /// Runs the configured command of that name as if its menu entry was
    /// picked; false when there is none.
    bool triggerCommand(const QString& name);
    QStringList problems() const { return m_problems; }

    // KivFramework::IApplication
    KivCarto::IPmdContents* GetMapContents() override;
    KivUtility::_ptr_t<KivCarto::Map> GetCurrentMap() override;
    KivFramework::IDesktopFrame* GetDesktopFrame() override;
    KivFramework::CommandInfo GetCommandInfo(const KivUI::ICommand* command) const override;

    // KivFramework::IDesktopFrame
    QWidget* GetMainWindow() override;
    KivFramework::IProgressIndicator* GetProgressIndicator() override;

    ProgressIndicator* progressIndicator() const { return m_progress; }
    LayerPanel* layerPanel() const { return m_layers; }
    MapView* mapView() const { return m_mapView; }

    /// Adds the dataset at `path` on top of the current map. False, with
    /// `error` naming the file, when GDAL cannot read it.
    bool addDataFile(const QString& path, QString* error);
    /// File > Add Data: asks for files and adds them, reporting those that
    /// cannot be read.
    void addData();

private:
    void buildCommandUi();
    void runCommand(KivUI::ICommand* command);
    void updateCommandStates();
    void showCursorPosition(const QPointF& point);
    void showJobWarnings(const QString& job, const QString& warnings);

    LayerPanel* m_layers;
    MapView* m_mapView;
    ProgressIndicator* m_progress;
    QLabel* m_coordinates;
    KivUtility::_ptr_t<KivCarto::Map> m_map;
    // Declared after the map: plug-ins may keep the map beyond the window.
    boost::signals2::scoped_connection m_mapConnection;
    boost::signals2::scoped_connection m_cancelConnection;
    boost::signals2::scoped_connection m_runEndedConnection;
    std::vector<std::unique_ptr<PluginLoader>> m_loaders;
    QList<LoadedCommand> m_commands;
    QHash<const KivUI::ICommand*, KivFramework::CommandInfo> m_infos;
    QList<QPair<QAction*, KivUI::ICommand*>> m_actions;
    QStringList m_problems;
};
