#include "host/app/MainWindow.h"

#include <QAbstractItemView>
#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QDialog>
#include <QDockWidget>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QScreen>
#include <QSettings>
#include <QStatusBar>
#include <QTime>
#include <QUrl>

#include "host/app/CameraList.h"
#include "host/app/FrameImage.h"

namespace host {

namespace {

constexpr QSize kFirstSize(900, 640);
constexpr int kEditorWidth = 330; // about that of the plug-in's window with its frame
constexpr int kTitleHeight = 40;
constexpr int kMessageLines = 500;
constexpr int kRatePeriod = 1000; // milliseconds
constexpr int kMaxRegisterBytes = 1 << 20;

// Names of values in the settings.
const QString kGeometryKey = QStringLiteral("window/geometry");
const QString kStateKey = QStringLiteral("window/state");
const QString kColoursKey = QStringLiteral("window/dark");
const QString kLayoutKey = QStringLiteral("view/layout");
const QString kZoomKey = QStringLiteral("view/fullScale");
const QString kCameraKey = QStringLiteral("camera/key");
const QString kLengthKey = QStringLiteral("camera/lutBytes");

QAction* addChoice(QMenu* menu, QActionGroup* group, const QString& text, const QVariant& data,
                   const QKeySequence& shortcut = QKeySequence())
{
    QAction* action = menu->addAction(text);
    action->setCheckable(true);
    action->setData(data);
    action->setShortcut(shortcut);
    group->addAction(action);
    return action;
}

// While it lives, the program is busy and says so.
class WaitCursor
{
public:
    WaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QApplication::restoreOverrideCursor(); }
};

void checkChoice(QActionGroup* group, const QVariant& data)
{
    for (QAction* action : group->actions())
        action->setChecked(action->data() == data);
}

} // namespace

MainWindow::MainWindow(const PluginModule& module, bool chinese, QSettings* settings)
    : m_settings(settings), m_folders(settings), m_session(module, chinese), m_view(new FrameView(this))
{
    setWindowTitle(tr("Orlune host"));
    setAcceptDrops(true);
    setCentralWidget(m_view);
    buildPanels();
    buildMenus();
    connectSession();
    placeFirst();
    restoreSettings();

    connect(&m_rateTimer, &QTimer::timeout, this, &MainWindow::showRates);
    m_rateTimer.start(kRatePeriod);
    m_rateClock.start();
}

MainWindow::~MainWindow()
{
    m_session.disconnect(this);
    m_session.close(); // the plug-in's window is a child of this one
}

// ---- What the window is made of

void MainWindow::buildPanels()
{
    m_levels = new LevelsPanel;
    auto* levels = new QDockWidget(tr("Levels"), this);
    levels->setObjectName("levels");
    levels->setWidget(m_levels);
    addDockWidget(Qt::RightDockWidgetArea, levels);

    m_messages = new QPlainTextEdit;
    m_messages->setReadOnly(true);
    m_messages->setMaximumBlockCount(kMessageLines);
    m_messages->setFocusPolicy(Qt::ClickFocus);
    auto* messages = new QDockWidget(tr("Messages"), this);
    messages->setObjectName("messages");
    messages->setWidget(m_messages);
    addDockWidget(Qt::BottomDockWidgetArea, messages);
    resizeDocks({levels}, {220}, Qt::Horizontal);
    resizeDocks({messages}, {110}, Qt::Vertical);

    m_probe = new QLabel;
    m_rates = new QLabel;
    m_cameraName = new QLabel;
    statusBar()->addWidget(m_probe, 1);
    statusBar()->addPermanentWidget(m_rates);
    statusBar()->addPermanentWidget(m_cameraName);
    connect(m_view, &FrameView::probed, m_probe, &QLabel::setText);
}

void MainWindow::buildMenus()
{
    buildFileMenu();
    buildCameraMenu();
    buildViewMenu();
    m_faultsMenu = menuBar()->addMenu(tr("F&aults"));
    connect(m_faultsMenu, &QMenu::aboutToShow, this, &MainWindow::updateFaults);
    buildPluginMenu();
    qApp->installEventFilter(this);
}

// What shows a thing or hides it works while the editor has the keys, too. What acts on files and cameras
// does not: Ctrl+S there would not save the table.
void MainWindow::useInEveryWindow(const QList<QAction*>& actions)
{
    for (QAction* action : actions)
        action->setShortcutContext(Qt::ApplicationShortcut);
}

void MainWindow::buildFileMenu()
{
    QMenu* menu = menuBar()->addMenu(tr("&File"));
    menu->addAction(tr("&Open picture..."), this, &MainWindow::askPicture, QKeySequence::Open);
    menu->addAction(tr("Open picture &folder..."), this, &MainWindow::askPictureFolder,
                    QKeySequence("Ctrl+Shift+O"));
    menu->addAction(tr("&Save shown frame..."), this, &MainWindow::saveShownFrame, QKeySequence::Save);
    menu->addSeparator();
    menu->addAction(tr("&Quit"), this, &MainWindow::close, QKeySequence("Ctrl+Q"));
}

void MainWindow::buildCameraMenu()
{
    QMenu* menu = menuBar()->addMenu(tr("&Camera"));
    m_cameraActions = new QActionGroup(this);
    int number = 0;
    for (const CameraEntry& entry : cameraEntries())
        addChoice(menu, m_cameraActions, entry.title, entry.key,
                  QKeySequence(QString("Ctrl+%1").arg(++number)));
    connect(m_cameraActions, &QActionGroup::triggered, this, [this](QAction* action) {
        CameraRequest request = m_request;
        request.camera = action->data().toString();
        openFromMenu(request);
    });
    m_realMenu = menu->addMenu(tr("&Real cameras"));
    showRealCameras({{}, {tr("Searching...")}});
    connect(m_realMenu, &QMenu::aboutToShow, this, &MainWindow::searchRealCameras);

    m_lengthMenu = menu->addMenu(tr("LUT &register length"));
    m_lengthActions = new QActionGroup(this);
    addChoice(m_lengthMenu, m_lengthActions, tr("The camera's own"), -1);
    addChoice(m_lengthMenu, m_lengthActions, tr("16424 bytes: table and settings"), 16424);
    addChoice(m_lengthMenu, m_lengthActions, tr("16384 bytes: table only"), 16384);
    addChoice(m_lengthMenu, m_lengthActions, tr("4136 bytes: 1024 entries"), 4136);
    addChoice(m_lengthMenu, m_lengthActions, tr("1064 bytes: 256 entries"), 1064);
    connect(m_lengthActions, &QActionGroup::triggered, this, [this](QAction* action) {
        CameraRequest request = m_request;
        request.lutBytes = action->data().toInt();
        openFromMenu(request);
    });
    m_lengthMenu->addSeparator();
    m_lengthMenu->addAction(tr("Other..."), this, &MainWindow::askRegisterLength);

    menu->addSeparator();
    m_streamAction = menu->addAction(tr("&Stream"));
    m_streamAction->setCheckable(true);
    m_streamAction->setShortcut(QKeySequence("Ctrl+R"));
    connect(m_streamAction, &QAction::triggered, this,
            [this](bool on) { on ? m_session.startStream() : m_session.stopStream(); });
    menu->addAction(tr("Re&connect"), this, [this] {
        const QString error = reconnect();
        if (!error.isEmpty())
            QMessageBox::warning(this, tr("Camera"), error);
    });
    m_lockAction = menu->addAction(tr("&Lock parameters"));
    m_lockAction->setCheckable(true);
    m_lockAction->setShortcut(QKeySequence("Ctrl+L"));
    connect(m_lockAction, &QAction::triggered, this, [this](bool on) {
        const QString error = m_session.camera() ? m_session.camera()->setLocked(on) : QString();
        if (error.isEmpty())
            return;
        m_lockAction->setChecked(!on);
        log(error);
    });
}

void MainWindow::buildViewMenu()
{
    QMenu* menu = menuBar()->addMenu(tr("&View"));
    using Layout = FrameView::Layout;
    m_layoutActions = new QActionGroup(this);
    addChoice(menu, m_layoutActions, tr("&After the mapping"), int(Layout::After), QKeySequence("1"));
    addChoice(menu, m_layoutActions, tr("&Before the mapping"), int(Layout::Before), QKeySequence("2"));
    addChoice(menu, m_layoutActions, tr("&Side by side"), int(Layout::SideBySide), QKeySequence("3"));
    addChoice(menu, m_layoutActions, tr("S&plit"), int(Layout::Split), QKeySequence("4"));
    checkChoice(m_layoutActions, int(m_view->pictureLayout()));
    connect(m_layoutActions, &QActionGroup::triggered, this,
            [this](QAction* action) { m_view->setPictureLayout(Layout(action->data().toInt())); });

    menu->addSeparator();
    using Zoom = FrameView::Zoom;
    m_zoomActions = new QActionGroup(this);
    addChoice(menu, m_zoomActions, tr("&Fit the window"), int(Zoom::Fit), QKeySequence("F"));
    addChoice(menu, m_zoomActions, tr("Full scale, &1:1"), int(Zoom::FullScale), QKeySequence("0"));
    checkChoice(m_zoomActions, int(m_view->zoom()));
    connect(m_zoomActions, &QActionGroup::triggered, this,
            [this](QAction* action) { m_view->setZoom(Zoom(action->data().toInt())); });
    useInEveryWindow(m_layoutActions->actions() + m_zoomActions->actions());

    menu->addSeparator();
    QMenu* palette = menu->addMenu(tr("Pa&lette"));
    m_colourActions = new QActionGroup(this);
    addChoice(palette, m_colourActions, tr("&Light"), int(Colours::Light));
    addChoice(palette, m_colourActions, tr("&Dark"), int(Colours::Dark));
    checkChoice(m_colourActions, int(m_colours));
    connect(m_colourActions, &QActionGroup::triggered, this,
            [this](QAction* action) { setColours(Colours(action->data().toInt())); });

    menu->addSeparator();
    for (QDockWidget* dock : findChildren<QDockWidget*>())
        menu->addAction(dock->toggleViewAction());
}

void MainWindow::buildPluginMenu()
{
    QMenu* menu = menuBar()->addMenu(tr("&Plug-in"));
    m_editorAction = menu->addAction(tr("Show &editor"));
    m_editorAction->setCheckable(true);
    m_editorAction->setShortcut(QKeySequence("F4"));
    useInEveryWindow({m_editorAction});
    connect(m_editorAction, &QAction::triggered, this, [this](bool on) {
        const bool minimised = m_session.editor() && m_session.editor()->isMinimized();
        m_editorAction->setChecked(on || minimised);
        on || minimised ? showEditor() : hideEditor();
    });
    menu->addAction(tr("&Restart"), this, [this] {
        m_session.restartPlugin();
        showEditor();
    });
}

// ---- Camera and plug-in

void MainWindow::connectSession()
{
    connect(&m_session, &Session::frameReady, this, &MainWindow::showLatestFrame);
    connect(&m_session, &Session::note, this, &MainWindow::log);
    connect(&m_session, &Session::cameraLost, this, [this](const QString& reason) {
        log(reason);
        m_view->clear(reason);
    });
    connect(&m_session, &Session::streamingChanged, m_streamAction, &QAction::setChecked);
    connect(&m_session, &Session::registerWritten, this,
            [this](int bytes) { log(tr("LUT register written, %1 bytes").arg(bytes)); });
    connect(&m_session, &Session::pluginMessage, this, [this](int type) {
        log(tr("Plug-in: %1, %2").arg(type).arg(messageName(type)));
        if (type == MSG_DIALOG_SHOWN || type == MSG_DIALOG_HIDDEN)
            m_editorAction->setChecked(type == MSG_DIALOG_SHOWN);
    });
    connect(&m_session, &Session::pluginStarted, this, [this](int code, const QString& text) {
        m_editorAction->setEnabled(code == 0);
        m_editorAction->setChecked(false);
        m_editorPlaced = false;
        m_pluginProblem =
            code == 0 ? QString() : tr("The plug-in did not start: %1 (%2)").arg(text).arg(code);
        if (code != 0)
            log(m_pluginProblem);
    });
}

QString MainWindow::openCamera(CameraRequest request)
{
    if (request.camera.isEmpty())
        request.camera = cameraEntries().constFirst().key;
    if (!cameraEntry(request.camera)->choosesLength)
        request.lutBytes = -1;
    // It would find its other connection in its way.
    if (m_session.camera() && isRealCamera(request.camera) && request.camera == m_request.camera)
        return reconnect();
    const WaitCursor cursor;
    QString error;
    std::unique_ptr<Camera> camera = host::openCamera(request, &error);
    if (!camera)
        return error;
    m_request = request;
    m_cameraName->setText(camera->name());
    m_view->clear(tr("Waiting for the first frame"));
    m_session.open(std::move(camera), this);
    updateCameraMenus();
    m_faultsMenu->setEnabled(!m_session.camera()->faultNames().isEmpty());
    return {};
}

QString MainWindow::reconnect()
{
    const WaitCursor cursor;
    const QString error = m_session.reconnect();
    if (error.isEmpty())
        log(tr("Reconnected to %1").arg(m_session.camera()->name()));
    return error;
}

QString MainWindow::setScene(const QString& scene)
{
    const QString error = m_session.setScene(scene);
    if (error.isEmpty())
        m_request.frames = scene;
    return error;
}

void MainWindow::openFromMenu(const CameraRequest& request)
{
    const bool editorWasOpen = m_editorAction->isChecked();
    const QString error = openCamera(request);
    if (!error.isEmpty())
        QMessageBox::warning(this, tr("Camera"), error);
    else if (editorWasOpen)
        showEditor();
    updateCameraMenus();
}

void MainWindow::updateCameraMenus()
{
    checkChoice(m_cameraActions, m_request.camera);
    checkChoice(m_lengthActions, m_request.lutBytes);
    m_lengthMenu->setEnabled(cameraEntry(m_request.camera)->choosesLength);
    m_lockAction->setChecked(false);
}

// Anew each time that the menu opens: a fault may end by itself. "kind:node" goes into a menu of its kind.
void MainWindow::updateFaults()
{
    m_faultsMenu->clear();
    const QStringList active = m_session.camera()->activeFaults();
    QMap<QString, QMenu*> kinds;
    for (const QString& name : m_session.camera()->faultNames()) {
        const QString kind = name.contains(':') ? name.section(':', 0, 0) : QString();
        if (!kind.isEmpty() && !kinds.contains(kind))
            kinds[kind] = m_faultsMenu->addMenu(kind);
        QMenu* menu = kind.isEmpty() ? m_faultsMenu : kinds.value(kind);
        QAction* action = menu->addAction(kind.isEmpty() ? name : name.section(':', 1));
        action->setCheckable(true);
        action->setChecked(active.contains(name));
        connect(action, &QAction::triggered, this, [this, name](bool on) {
            const QString error = m_session.camera()->setFault(name, on);
            if (!error.isEmpty())
                log(error);
        });
    }
}

void MainWindow::askRegisterLength()
{
    bool chosen = false;
    const int bytes = QInputDialog::getInt(this, tr("LUT register"), tr("Length in bytes:"),
                                           qMax(0, m_request.lutBytes), 0, kMaxRegisterBytes, 4, &chosen);
    if (!chosen)
        return;
    CameraRequest request = m_request;
    request.lutBytes = bytes;
    openFromMenu(request);
}

void MainWindow::askAddress()
{
    CameraRequest request = m_request;
    const QString address =
        QInputDialog::getText(this, tr("Real camera"), tr("IP address, or name as --list prints it:"));
    if (address.isEmpty())
        return;
    request.camera = realCameraKey(address);
    openFromMenu(request);
}

// Its result comes into the menu when it is there, opened or not.
void MainWindow::searchRealCameras()
{
    if (m_search.valid() && m_search.wait_for(std::chrono::seconds(0)) != std::future_status::ready)
        return;
    m_search = std::async(std::launch::async, [this] {
        const FoundCameras found = findRealCameras();
        QMetaObject::invokeMethod(
            this, [this, found] { showRealCameras(found); }, Qt::QueuedConnection);
    });
}

void MainWindow::showRealCameras(const FoundCameras& found)
{
    m_realMenu->clear();
    for (const CameraEntry& entry : found.entries)
        addChoice(m_realMenu, m_cameraActions, entry.title, entry.key);
    for (const QString& problem : found.problems)
        m_realMenu->addAction(problem)->setEnabled(false);
    m_realMenu->addSeparator();
    m_realMenu->addAction(tr("Open by &address..."), this, &MainWindow::askAddress);
    checkChoice(m_cameraActions, m_request.camera);
}

void MainWindow::showEditor()
{
    if (!m_pluginProblem.isEmpty())
        QMessageBox::warning(this, tr("Plug-in"), m_pluginProblem);
    placeEditor();
    m_session.sendToPlugin(MSG_SHOW_DIALOG);
}

void MainWindow::hideEditor()
{
    m_session.sendToPlugin(MSG_HIDE_DIALOG);
}

// In the middle of the screen together with the editor, as far as there is room for both.
void MainWindow::placeFirst()
{
    const QRect room = QGuiApplication::primaryScreen()->availableGeometry();
    const QSize both = QSize(kFirstSize.width() + kEditorWidth, kFirstSize.height());
    resize(m_settings ? kFirstSize.boundedTo(room.size() - QSize(kEditorWidth, kTitleHeight)) : kFirstSize);
    move(room.left() + qMax(0, (room.width() - both.width()) / 2),
         room.top() + qMax(0, (room.height() - both.height()) / 2));
}

// Beside this window, where the screen has room for it; where the user has moved it to, later.
void MainWindow::placeEditor()
{
    QDialog* editor = m_session.editor();
    if (!editor || m_editorPlaced)
        return;
    m_editorPlaced = true;
    const QRect room = screen()->availableGeometry();
    const QRect viewer = frameGeometry();
    int x = viewer.right() + 1;
    if (x + editor->width() > room.right() + 1)
        x = viewer.left() - editor->width();
    if (x < room.left())
        x = room.right() + 1 - editor->width();
    const int y = qMax(room.top(), qMin(viewer.top(), room.bottom() + 1 - editor->height()));
    editor->move(x, y);
}

// ---- Frames

void MainWindow::showLatestFrame()
{
    const std::shared_ptr<const ShownFrame> frame = m_session.mailbox().take();
    if (!frame)
        return;
    m_mappingNanos = frame->mappingNanos;
    m_levels->setFrame(*frame);
    m_view->setFrame(frame);
}

void MainWindow::showRates()
{
    const quint64 frames = m_session.mailbox().count();
    const double rate =
        1000.0 * double(frames - m_ratedFrames) / double(qMax<qint64>(1, m_rateClock.restart()));
    m_ratedFrames = frames;
    QString text = tr("%1 frames/s   frame path %2 ms")
                       .arg(rate, 0, 'f', 1)
                       .arg(double(m_mappingNanos) / 1e6, 0, 'f', 2);
    const quint64 lost = m_session.camera() ? m_session.camera()->lostFrames() : 0;
    if (lost > 0)
        text += tr("   %1 lost").arg(lost);
    m_rates->setText(text);
}

void MainWindow::askPicture()
{
    const QString path = QFileDialog::getOpenFileName(this, tr("Open picture"), m_folders.pictures(),
                                                      tr("Pictures (*.png *.tif *.tiff *.pgm)"));
    if (path.isEmpty())
        return;
    m_folders.rememberPictures(QFileInfo(path).path());
    openPictures(path);
}

void MainWindow::askPictureFolder()
{
    const QString path =
        QFileDialog::getExistingDirectory(this, tr("Open picture folder"), m_folders.pictures());
    if (path.isEmpty())
        return;
    m_folders.rememberPictures(path);
    openPictures(path);
}

void MainWindow::openPictures(const QString& path)
{
    const QString error = setScene(path);
    if (!error.isEmpty())
        QMessageBox::warning(this, tr("Pictures"), error);
}

void MainWindow::saveShownFrame()
{
    const ShownFrame* shown = m_view->frame();
    if (!shown || !shown->format)
        return;
    const ShownFrame copy = *shown; // the dialog lets new frames in
    QFileDialog dialog(this, tr("Save frame"), m_folders.pictures(),
                       tr("Pictures (*.png *.bmp *.jpg *.pgm)"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix("png");
    dialog.selectFile("frame.png");
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QString path = dialog.selectedFiles().constFirst();
    m_folders.rememberPictures(QFileInfo(path).path());
    const bool before = m_view->pictureLayout() == FrameView::Layout::Before;
    const QString error = saveFrame(before ? copy.before : copy.after, *copy.format, path);
    if (!error.isEmpty())
        QMessageBox::warning(this, tr("Save frame"), error);
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event)
{
    const QList<QUrl> urls = event->mimeData()->urls();
    if (urls.size() == 1 && urls.constFirst().isLocalFile())
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event)
{
    openPictures(event->mimeData()->urls().constFirst().toLocalFile());
    event->acceptProposedAction();
}

// A list is searched by typing: such a key is the list's, as it is a line edit's.
bool MainWindow::eventFilter(QObject* watched, QEvent* event)
{
    const bool isList = qobject_cast<QComboBox*>(watched) || qobject_cast<QAbstractItemView*>(watched);
    if (isList && event->type() == QEvent::ShortcutOverride) {
        const auto* key = static_cast<QKeyEvent*>(event);
        const bool types = !key->text().isEmpty() && key->text().at(0).isPrint();
        if (types && !(key->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)))
            event->accept();
    }
    return QMainWindow::eventFilter(watched, event);
}

void MainWindow::log(const QString& sentence)
{
    m_messages->appendPlainText(QTime::currentTime().toString("HH:mm:ss  ") + sentence);
}

// ---- What is kept

void MainWindow::setColours(Colours colours)
{
    m_colours = colours;
    applyColours(colours);
    checkChoice(m_colourActions, int(colours));
}

void MainWindow::restoreSettings()
{
    if (!m_settings)
        return;
    restoreGeometry(m_settings->value(kGeometryKey).toByteArray());
    restoreState(m_settings->value(kStateKey).toByteArray());
    setColours(m_settings->value(kColoursKey).toBool() ? Colours::Dark : Colours::Light);
    const int layout = m_settings->value(kLayoutKey).toInt();
    if (layout >= 0 && layout < m_layoutActions->actions().size())
        m_layoutActions->actions().at(layout)->trigger();
    m_zoomActions->actions().at(m_settings->value(kZoomKey).toBool() ? 1 : 0)->trigger();
    const QString camera = m_settings->value(kCameraKey).toString();
    if (cameraEntry(camera)) {
        m_request.camera = camera;
        m_request.lutBytes = m_settings->value(kLengthKey, -1).toInt();
    }
}

void MainWindow::saveSettings()
{
    if (!m_settings)
        return;
    m_settings->setValue(kGeometryKey, saveGeometry());
    m_settings->setValue(kStateKey, saveState());
    m_settings->setValue(kColoursKey, m_colours == Colours::Dark);
    m_settings->setValue(kLayoutKey, int(m_view->pictureLayout()));
    m_settings->setValue(kZoomKey, m_view->zoom() == FrameView::Zoom::FullScale);
    m_settings->setValue(kCameraKey, m_request.camera);
    m_settings->setValue(kLengthKey, m_request.lutBytes);
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    saveSettings();
    hideEditor();
    QMainWindow::closeEvent(event);
}

} // namespace host
