#include "MainWindow.h"

#include "KivCarto/Map.h"
#include "KivUI/EnvironmentSetting.h"
#include "LayerPanel.h"
#include "LayerSource.h"
#include "MapView.h"
#include "PluginManifest.h"
#include "ProgressIndicator.h"

#include "KivAlgo/AlgoFactory.h"

#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QVBoxLayout>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QStatusBar>
#include <QToolBar>

void MainWindow::showJobWarnings(const QString& job, const QString& warnings)
{
    statusBar()->showMessage(tr("%1 finished with warnings").arg(job), 15000);
    auto* box = new QMessageBox(QMessageBox::Warning, tr("%1: warnings").arg(job), warnings, QMessageBox::Ok, this);
    box->setObjectName(QStringLiteral("jobWarnings"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setModal(false);
    box->show();
}

MainWindow::MainWindow(QWidget* parent)
    : QMainWindow(parent),
      m_layers(new LayerPanel),
      m_mapView(new MapView),
      m_progress(new ProgressIndicator),
      m_coordinates(new QLabel),
      m_map(new KivCarto::Map(tr("Map")))
{
    setObjectName(QStringLiteral("kivdeskMainWindow"));
    setWindowTitle(tr("kivdesk"));
    resize(1280, 760);

    setCentralWidget(m_mapView);
    auto* dock = new QDockWidget(tr("Layers"), this);
    dock->setObjectName(QStringLiteral("layerDock"));
    auto* panelBox = new QWidget;
    auto* panelLayout = new QVBoxLayout(panelBox);
    panelLayout->setContentsMargins(0, 0, 0, 0);
    panelLayout->setSpacing(0);
    auto* panelTools = new QToolBar(panelBox);
    panelTools->setObjectName(QStringLiteral("layerToolBar"));
    panelTools->setToolButtonStyle(Qt::ToolButtonTextOnly);
    // Zoom to Layer is on the map toolbar, the panel's menu and a double click.
    panelTools->addActions({m_layers->moveUpAction(), m_layers->moveDownAction(), m_layers->removeAction()});
    panelLayout->addWidget(panelTools);
    panelLayout->addWidget(m_layers);
    dock->setWidget(panelBox);
    addDockWidget(Qt::LeftDockWidgetArea, dock);
    resizeDocks({dock}, {260}, Qt::Horizontal);
    m_coordinates->setObjectName(QStringLiteral("cursorCoordinates"));
    m_coordinates->setMinimumWidth(fontMetrics().horizontalAdvance(QLatin1Char('0')) * 60);
    statusBar()->addPermanentWidget(m_coordinates);
    statusBar()->addPermanentWidget(m_progress, 1);
    // The indicator's Cancel stops the jobs the plug-ins started: the host
    // does not know their algorithms, the algorithm factory does.
    m_cancelConnection = m_progress->CancelRequested.connect([] { KivAlgo::AlgoFactory::Instance()->CancelAll(); });
    // A job that succeeded may still have something to say (points converted
    // without a datum shift, features left out): the plug-in only adds the
    // results to the map, so the host shows it.
    m_runEndedConnection = KivAlgo::Algorithm::SigAnyRunEnded().connect(
        [this](const QString& name, int code, const QString& message) {
            if (code == 0 && !message.isEmpty())
                showJobWarnings(name, message);
        });

    m_layers->setMap(m_map);
    m_mapView->setMap(m_map);
    m_mapConnection = m_map->Refreshed.connect([this](int, bool updateContents) {
        if (updateContents)
            m_layers->RefreshContents();
        m_mapView->mapChanged();
    });
    connect(m_layers, &LayerPanel::layerVisibilityChanged, m_mapView, &MapView::mapChanged);
    connect(m_layers, &LayerPanel::layersRearranged, this, [this] { m_map->Refresh(0, false); });
    connect(m_layers, &LayerPanel::zoomToLayerRequested, m_mapView, &MapView::zoomToLayer);
    connect(m_mapView, &MapView::cursorMoved, this, &MainWindow::showCursorPosition);
    connect(m_mapView, &MapView::problemsFound, this, [this](const QStringList& problems) {
        statusBar()->showMessage(problems.join(QStringLiteral("; ")), 15000);
    });

    QMenu* file = menuBar()->addMenu(tr("&File"));
    file->setObjectName(QStringLiteral("menuFile"));
    QAction* add = file->addAction(tr("&Add Data..."), this, &MainWindow::addData);
    add->setObjectName(QStringLiteral("actionAddData"));
    add->setToolTip(tr("Add raster or vector files to the map"));
    file->addSeparator();
    QAction* zoomAll = new QAction(tr("Zoom to All"), this);
    zoomAll->setObjectName(QStringLiteral("actionZoomToAll"));
    zoomAll->setToolTip(tr("Show every visible layer whole"));
    connect(zoomAll, &QAction::triggered, m_mapView, &MapView::zoomToAll);
    QMenu* view = menuBar()->addMenu(tr("&View"));
    view->setObjectName(QStringLiteral("menuView"));
    view->addAction(zoomAll);
    view->addAction(m_layers->zoomToLayerAction());
    QToolBar* mapTools = addToolBar(tr("Map"));
    mapTools->setObjectName(QStringLiteral("mapToolBar"));
    mapTools->setToolButtonStyle(Qt::ToolButtonTextOnly);
    mapTools->addAction(add);
    mapTools->addAction(zoomAll);
    mapTools->addAction(m_layers->zoomToLayerAction());

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
    toolbar->setIconSize(QSize(16, 16));
    QHash<QString, QMenu*> menus;
    const QString dataDir = KivUI::EnvironmentSetting::Instance()->GetDataDir();
    int created = 0;
    for (const LoadedCommand& c : m_commands)
        created += c.command ? 1 : 0;
    // Captions are long: more than four commands take a second row, so that
    // all of them show at the window's default size.
    const int firstRow = created > 4 ? (created + 1) / 2 : created;
    int placed = 0;
    for (const LoadedCommand& c : m_commands) {
        if (!c.command)
            continue;
        if (placed++ == firstRow) {
            addToolBarBreak();
            toolbar = addToolBar(tr("Coordinate Transformation"));
            toolbar->setObjectName(QStringLiteral("commandToolBar2"));
            toolbar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
            toolbar->setIconSize(QSize(16, 16));
        }
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

bool MainWindow::addDataFile(const QString& path, QString* error)
{
    // Opening tells whether GDAL reads the file at all; the map view opens
    // it again for drawing.
    if (!LayerSource::open(path, error))
        return false;
    KivUtility::_ptr_t<KivCarto::Layer> layer(new KivCarto::Layer(QFileInfo(path).completeBaseName(), path));
    m_map->AddLayer(layer);
    m_map->Refresh(0, true);
    return true;
}

void MainWindow::addData()
{
    KivUI::EnvironmentSetting* settings = KivUI::EnvironmentSetting::Instance();
    const QStringList files = QFileDialog::getOpenFileNames(
        this, tr("Add Data"), settings->GetCurrentWorkDir(),
        tr("Rasters and vectors (*.tif *.tiff *.img *.vrt *.jpg *.png *.asc *.shp *.gpkg *.geojson *.json *.kml "
           "*.gml *.tab *.mif);;Rasters (*.tif *.tiff *.img *.vrt *.jpg *.png *.asc);;"
           "Vectors (*.shp *.gpkg *.geojson *.json *.kml *.gml *.tab *.mif);;All files (*)"));
    if (files.isEmpty())
        return;
    settings->SetCurrentWorkDir(QFileInfo(files.first()).absolutePath());
    QStringList problems;
    for (const QString& file : files) {
        QString error;
        if (!addDataFile(file, &error))
            problems << error;
    }
    if (!problems.isEmpty())
        QMessageBox::warning(this, tr("Add Data"), problems.join(QLatin1Char('\n')));
}

void MainWindow::showCursorPosition(const QPointF& point)
{
    QString text = tr("X: %1  Y: %2").arg(point.x(), 0, 'f', 3).arg(point.y(), 0, 'f', 3);
    double lon = 0;
    double lat = 0;
    if (m_mapView->toLonLat(point, &lon, &lat))
        text += tr("  Lon: %1  Lat: %2").arg(lon, 0, 'f', 6).arg(lat, 0, 'f', 6);
    m_coordinates->setText(text);
}
