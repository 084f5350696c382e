// The rules between camera, plug-in object and frames, with a plug-in that writes down what happens to it.
#include <QtTest>

#include "host/StubPlugin.h"
#include "host/app/Session.h"
#include "host/camera/SimulatedCamera.h"

static StubPlugin* theStub = nullptr;

class tst_Session : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void objectLivesFromOpenToClose();
    void failedPluginIsTakenDownAndTheCameraRuns();
    void framesComeOnlyWhileThePluginRuns();
    void mappedFrameIsShownBesideTheFrameBefore();
    void accessStopsTheStreamForItsTime_data();
    void accessStopsTheStreamForItsTime();
    void textsAreReadInThePluginsLanguage();

private:
    void open(const QString& model = "no-lut");

    const host::PluginModule m_module{[]() -> IPlugin* { return theStub = new StubPlugin; },
                                      [](IPlugin* plugin) { delete plugin; }};
    std::unique_ptr<QWidget> m_window;
    std::unique_ptr<host::Session> m_session;
};

void tst_Session::init()
{
    m_window = std::make_unique<QWidget>();
    m_session = std::make_unique<host::Session>(m_module, false);
    StubPlugin::log().calls.clear();
    StubPlugin::log().initResult = 0;
}

void tst_Session::open(const QString& model)
{
    host::SimulatedCameraOptions options;
    options.model = model;
    options.pixelFormat = "Mono8";
    options.frames = "ramp";
    options.width = 256;
    options.height = 2;
    options.frameRate = 1000;
    QString error;
    std::unique_ptr<host::Camera> camera = host::makeSimulatedCamera(options, &error);
    QVERIFY2(camera, qPrintable(error));
    m_session->open(std::move(camera), m_window.get());
}

void tst_Session::objectLivesFromOpenToClose()
{
    open();
    QVERIFY(m_session->camera()->isStreaming());
    m_session->sendToPlugin(MSG_SHOW_DIALOG);
    open(); // another camera has an object of its own
    m_session->close();
    m_session->sendToPlugin(MSG_SHOW_DIALOG);
    const QStringList object = {"create", "init", "uninit", "destroy"};
    QStringList withMessage = object;
    withMessage.insert(2, "message 1");
    QCOMPARE(StubPlugin::log().calls, withMessage + object);
}

void tst_Session::failedPluginIsTakenDownAndTheCameraRuns()
{
    StubPlugin::log().initResult = -4;
    QSignalSpy started(m_session.get(), &host::Session::pluginStarted);
    open();
    QCOMPARE(started.at(0).at(0).toInt(), -4);
    QCOMPARE(StubPlugin::log().calls, QStringList({"create", "init", "uninit", "destroy"}));
    const auto frame = m_session->firstFrame(std::chrono::seconds(5));
    QVERIFY(frame);
    QVERIFY(!frame->mapped);
}

void tst_Session::framesComeOnlyWhileThePluginRuns()
{
    open();
    const int before = StubPlugin::log().frames;
    QTRY_VERIFY(StubPlugin::log().frames > before + 20);
    m_session->restartPlugin();
    const int frames = StubPlugin::log().frames;
    QTRY_VERIFY(StubPlugin::log().frames > frames + 20);
    m_session->close();
    QCOMPARE(int(StubPlugin::log().framesOutOfTime), 0);
}

void tst_Session::mappedFrameIsShownBesideTheFrameBefore()
{
    open();
    m_session->stopStream();
    const auto frame = m_session->firstFrame(std::chrono::seconds(5));
    QVERIFY(frame);
    QVERIFY(!m_session->camera()->isStreaming());
    QVERIFY(frame->mapped);
    QCOMPARE(int(frame->before.pixels[3]), 3);
    QCOMPARE(int(frame->after.pixels[3]), 252);
}

void tst_Session::accessStopsTheStreamForItsTime_data()
{
    QTest::addColumn<bool>("streaming");
    QTest::newRow("a running stream goes on") << true;
    QTest::newRow("a stopped stream stays so") << false;
}

void tst_Session::accessStopsTheStreamForItsTime()
{
    QFETCH(bool, streaming);
    open("lut");
    if (!streaming)
        m_session->stopStream();
    theStub->say(MSG_DEVICE_ACCESS_BEGIN);
    QVERIFY(!m_session->camera()->isStreaming());
    theStub->say(MSG_DEVICE_ACCESS_END);
    QCOMPARE(m_session->camera()->isStreaming(), streaming);
}

void tst_Session::textsAreReadInThePluginsLanguage()
{
    QTextCodec* const locale = QTextCodec::codecForLocale(); // file names go through it
    StubPlugin::log().initResult = -2;
    QSignalSpy english(m_session.get(), &host::Session::pluginStarted);
    open();
    QCOMPARE(english.at(0).at(1).toString(), QString::fromUtf8("café"));

    host::Session chineseSession(m_module, true);
    QSignalSpy chinese(&chineseSession, &host::Session::pluginStarted);
    QString error;
    chineseSession.open(host::makeSimulatedCamera({}, &error), m_window.get());
    QCOMPARE(chinese.at(0).at(1).toString(), QString::fromUtf8("内"));
    QCOMPARE(QTextCodec::codecForLocale(), locale);
}

QTEST_MAIN(tst_Session)
#include "tst_Session.moc"
