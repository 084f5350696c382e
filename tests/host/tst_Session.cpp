// The rules between camera, plug-in object and frames, with a plug-in that writes down what happens to it.
#include <QtTest>

#include "host/StubPlugin.h"
#include "host/app/Session.h"
#include "host/camera/SimulatedCamera.h"

static StubPlugin* theStub = nullptr;

class tst_Session : public QObject
{
    Q_OBJECT

    void open(const QString& model = "no-lut", bool chinese = false)
    {
        if (!m_session) {
            m_session = std::make_unique<host::Session>(m_module, chinese);
            connect(m_session.get(), &host::Session::pluginStarted, this,
                    [this](int code, const QString& text) {
                        m_started = {code, text};
                    });
        }
        host::SimulatedCameraOptions options;
        options.model = model;
        options.pixelFormat = "Mono8";
        options.frames = "ramp";
        options.width = 256;
        options.height = 2;
        options.frameRate = 1000;
        QString error;
        m_session->open(host::makeSimulatedCamera(options, &error), m_window.get());
        QCOMPARE(error, QString());
    }
    auto firstFrame() { return m_session->firstFrame(std::chrono::seconds(5)); }

    const host::PluginModule m_module{[]() -> IPlugin* { return theStub = new StubPlugin; },
                                      [](IPlugin* plugin) { delete plugin; }};
    std::unique_ptr<QWidget> m_window;
    std::unique_ptr<host::Session> m_session;
    QPair<int, QString> m_started;

private slots:
    void init()
    {
        m_session.reset();
        m_window = std::make_unique<QWidget>();
        StubPlugin::log().calls.clear();
        StubPlugin::log().initResult = 0;
    }

    void objectLivesFromOpenToClose()
    {
        open();
        QVERIFY(m_session->camera()->isStreaming());
        m_session->sendToPlugin(MSG_SHOW_DIALOG);
        open(); // another camera has an object of its own
        m_session->close();
        m_session->sendToPlugin(MSG_SHOW_DIALOG);
        QCOMPARE(StubPlugin::log().calls.join(' '), QString("create init message 1 uninit destroy "
                                                            "create init uninit destroy"));
    }

    void failedPluginIsTakenDownAndTheCameraRuns()
    {
        StubPlugin::log().initResult = -4;
        open();
        QCOMPARE(m_started.first, -4);
        QCOMPARE(StubPlugin::log().calls.join(' '), QString("create init uninit destroy"));
        const auto frame = firstFrame();
        QVERIFY(frame && !frame->mapped);
    }

    void framesComeOnlyWhileThePluginRuns()
    {
        open();
        for (const bool restart : {false, true}) {
            if (restart)
                m_session->restartPlugin();
            const int frames = StubPlugin::log().frames;
            QTRY_VERIFY(StubPlugin::log().frames > frames + 20);
        }
        m_session->stopStream();
        const auto frame = firstFrame(); // beside the frame before
        QVERIFY(frame && frame->mapped && !m_session->camera()->isStreaming());
        QCOMPARE(int(frame->before.pixels[3]), 3);
        QCOMPARE(int(frame->after.pixels[3]), 252);
        m_session->close();
        QCOMPARE(int(StubPlugin::log().framesOutOfTime), 0);
    }

    // A stopped stream stays so.
    void accessStopsTheStreamForItsTime()
    {
        open("lut");
        const auto locked = [this] {
            auto* node = m_session->camera()->remoteNodeMap()->GetNode("TLParamsLocked");
            return dynamic_cast<GenApi_3_0::IInteger*>(node)->GetValue() != 0;
        };
        for (const bool streaming : {true, false}) {
            if (!streaming)
                m_session->stopStream();
            QCOMPARE(locked(), streaming);
            theStub->say(MSG_DEVICE_ACCESS_BEGIN);
            QVERIFY(!locked());
            theStub->say(MSG_DEVICE_ACCESS_END);
            QCOMPARE(locked(), streaming);
        }
    }

    void textsAreReadInThePluginsLanguage()
    {
        QTextCodec* const locale = QTextCodec::codecForLocale(); // file names go through it
        StubPlugin::log().initResult = -2;
        for (const bool chinese : {false, true}) {
            m_session.reset();
            open("no-lut", chinese);
            QCOMPARE(m_started.second, QString::fromUtf8(chinese ? "内" : "café"));
        }
        QCOMPARE(QTextCodec::codecForLocale(), locale);
    }
};

QTEST_MAIN(tst_Session)
#include "tst_Session.moc"
