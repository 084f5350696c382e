// The viewer's window: the live picture, its levels, the messages of the plug-in, and the menus.
#ifndef ORLUNE_HOST_APP_MAINWINDOW_H
#define ORLUNE_HOST_APP_MAINWINDOW_H

#include <future>

#include <QElapsedTimer>
#include <QMainWindow>
#include <QTimer>

#include "host/app/Appearance.h"
#include "host/app/CameraList.h"
#include "host/app/CommandLine.h"
#include "host/app/DialogFolders.h"
#include "host/app/FrameView.h"
#include "host/app/LevelsPanel.h"
#include "host/app/Session.h"

class QActionGroup;
class QLabel;
class QPlainTextEdit;
class QSettings;

namespace host {

class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    // settings keeps the window's state from one start to the next; null: nothing is read or written.
    MainWindow(const PluginModule& module, bool chinese, QSettings* settings);
    ~MainWindow() override;

    // Replaces the camera, with a new plug-in object; the real camera that is open already is reconnected.
    // Empty, or one sentence that says why the old one stays.
    QString openCamera(CameraRequest request);
    // Opens the connection to the camera anew; the plug-in goes on as it is. Empty, or one sentence that says
    // why the camera is lost.
    QString reconnect();
    // Lets the camera look at something else, as --frames takes it. Empty, or one sentence that says why not.
    QString setScene(const QString& scene);

    const CameraRequest& cameraRequest() const { return m_request; }

    Session& session() { return m_session; }

    void showEditor(); // or a box that says why there is none
    void hideEditor();

    void log(const QString& sentence); // a line of the Messages panel

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildMenus();
    static void useInEveryWindow(const QList<QAction*>& actions);
    void buildFileMenu();
    void buildCameraMenu();
    void buildViewMenu();
    void buildPluginMenu();
    void buildPanels();
    void connectSession();
    void updateCameraMenus();
    void updateFaults();

    void openFromMenu(const CameraRequest& request);
    void openPictures(const QString& path);
    void askPicture();
    void askPictureFolder();
    void saveShownFrame();
    void askRegisterLength();
    void askAddress();
    void searchRealCameras();
    void showRealCameras(const FoundCameras& found);

    void showLatestFrame();
    void showRates();
    void placeFirst();
    void placeEditor();

    void setColours(Colours colours);
    void restoreSettings();
    void saveSettings();

    QSettings* m_settings;
    DialogFolders m_folders;
    CameraRequest m_request;
    Session m_session;

    FrameView* m_view;
    LevelsPanel* m_levels;
    QPlainTextEdit* m_messages;
    QLabel* m_probe;
    QLabel* m_rates;
    QLabel* m_cameraName;

    QActionGroup* m_cameraActions;
    QActionGroup* m_lengthActions;
    QMenu* m_realMenu;
    QMenu* m_lengthMenu;
    QActionGroup* m_layoutActions;
    QActionGroup* m_zoomActions;
    QActionGroup* m_colourActions;
    QMenu* m_faultsMenu;
    QAction* m_streamAction;
    QAction* m_lockAction;
    QAction* m_editorAction;

    QString m_pluginProblem; // why no plug-in runs; empty while one does
    Colours m_colours = Colours::Light;
    QTimer m_rateTimer;
    QElapsedTimer m_rateClock;
    quint64 m_ratedFrames = 0;
    qint64 m_mappingNanos = 0; // of the last frame shown
    bool m_editorPlaced = false;
    std::future<void> m_search; // for real cameras; its end waits for the search's
};

} // namespace host

#endif
