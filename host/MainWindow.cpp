#include "MainWindow.h"

#include "KivCarto/Map.h"
#include "KivUI/EnvironmentSetting.h"
#include "LayerPanel.h"
#include "MapView.h"
#include "PluginManifest.h"
#include "ProgressIndicator.h"

#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QFileInfo>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QStatusBar>
#include <QToolBar>

MainWindow::MainWindow(QWidget* parent)
    : QMainWindow(parent),
      m_layers(new LayerPanel),
      m_mapView(new MapView),
      m_progress(new ProgressIndicator),
      m_map(new KivCarto::Map(tr("Map")))
{
    setObjectName(QStringLiteral("kivdeskMainWindow"));
    setWindowTitle(tr("kivdesk"));
    resize(1100, 700);

    setCentralWidget(m_mapView);
    auto* dock = new QDockWidget(tr("Layers"), this);
    dock->setObjectName(QStringLiteral("layerDock"));
    dock->setWidget(m_layers);
    addDockWidget(Qt::LeftDockWidgetArea, dock);
    statusBar()->addPermanentWidget(m_progress, 1);

    m_layers->setMap(m_map);
    m_mapView->setMap(m_map);
    m_map->Refreshed.connect([this](int, bool updateContents) {
        if (updateContents)
            m_layers->RefreshContents();
        m_mapView->update();
    });
    connect(m_layers, &LayerPanel::layerVisibilityChanged, m_mapView, qOverload<>(&QWidget::update));

    QMenu* file = menuBar()->addMenu(tr("&File"));
    file->setObjectName(QStringLiteral("menuFile"));
    QAction* quit = file->addAction(tr("E&xit"), this, &QWidget::close);
    quit->setShortcut(QKeySequence::Quit);
}

MainWindow::~MainWindow()
{
    m_actions.clear();
    m_infos.clear();
    m_commands.clear();
}

QString MainWindow::defaultManifestPath()
{
    return KivUI::EnvironmentSetting::Instance()->GetDataDir() + QStringLiteral("kivdesk/plugins.xml");
}

void MainWindow::loadPlugins(const QString& manifestPath)
{
    PluginManifest manifest;
    if (!manifest.load(manifestPath)) {
        m_problems << manifest.error();
        buildCommandUi();
        return;
    }
    for (const PluginManifestEntry& entry : manifest.plugins()) {
        auto loader = std::make_unique<PluginLoader>();
        const bool loaded = loader->load(entry.library);
        if (!loaded)
            m_problems << loader->error();
        for (LoadedCommand& c : loader->createCommands(entry.commands)) {
            if (c.command) {
                m_infos.insert(c.command.get(), c.info);
                c.command->OnCreate(static_cast<KivFramework::IApplication*>(this));
            } else if (loaded) {
                m_problems << tr("The plug-in %1 has no command %2.").arg(entry.library, c.info.name);
            }
            m_commands << c;
        }
        m_loaders.push_back(std::move(loader));
    }
    buildCommandUi();
}

void MainWindow::buildCommandUi()
{
    QToolBar* toolbar = addToolBar(tr("Coordinate Transformation"));
    toolbar->setObjectName(QStringLiteral("commandToolBar"));
    toolbar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    QHash<QString, QMenu*> menus;
    const QString dataDir = KivUI::EnvironmentSetting::Instance()->GetDataDir();
    for (const LoadedCommand& c : m_commands) {
        if (!c.command)
            continue;
        QMenu*& menu = menus[c.info.menu];
        if (!menu) {
            menu = menuBar()->addMenu(c.info.menu);
            connect(menu, &QMenu::aboutToShow, this, &MainWindow::updateCommandStates);
        }
        auto* action = new QAction(c.info.caption, this);
        action->setObjectName(c.info.name);
        action->setToolTip(c.info.toolTip);
        action->setStatusTip(c.info.toolTip);
        if (!c.info.icon.isEmpty() && QFileInfo::exists(dataDir + c.info.icon))
            action->setIcon(QIcon(dataDir + c.info.icon));
        KivUI::ICommand* command = c.command.get();
        connect(action, &QAction::triggered, this, [this, command] { runCommand(command); });
        menu->addAction(action);
        toolbar->addAction(action);
        m_actions << qMakePair(action, command);
    }
    updateCommandStates();

    if (!m_problems.isEmpty()) {
        statusBar()->showMessage(m_problems.first());
        // Not modal: the host must start whatever the manifest holds.
        auto* box = new QMessageBox(QMessageBox::Warning, tr("Plug-ins"), m_problems.join(QLatin1Char('\n')),
                                    QMessageBox::Ok, this);
        box->setAttribute(Qt::WA_DeleteOnClose);
        box->setModal(false);
        box->show();
    }
}

bool MainWindow::triggerCommand(const QString& name)
{
    for (const auto& pair : m_actions) {
        if (pair.first->objectName().compare(name, Qt::CaseInsensitive) == 0) {
            pair.first->trigger();
            return true;
        }
    }
    return false;
}

void MainWindow::updateCommandStates()
{
    for (const auto& pair : m_actions)
        pair.first->setEnabled(pair.second->IsEnable());
}

void MainWindow::runCommand(KivUI::ICommand* command)
{
    try {
        command->OnClick();
    } catch (const std::exception& e) {
        QMessageBox::warning(this, tr("Command failed"), QString::fromLocal8Bit(e.what()));
    } catch (...) {
        QMessageBox::warning(this, tr("Command failed"), tr("The command stopped with an unknown error."));
    }
    updateCommandStates();
}

KivCarto::IPmdContents* MainWindow::GetMapContents()
{
    return m_layers;
}

KivUtility::_ptr_t<KivCarto::Map> MainWindow::GetCurrentMap()
{
    return m_map;
}

KivFramework::IDesktopFrame* MainWindow::GetDesktopFrame()
{
    return this;
}

KivFramework::CommandInfo MainWindow::GetCommandInfo(const KivUI::ICommand* command) const
{
    return m_infos.value(command);
}

QWidget* MainWindow::GetMainWindow()
{
    return this;
}

KivFramework::IProgressIndicator* MainWindow::GetProgressIndicator()
{
    return m_progress;
}
