// The rules between plug-in object and frames, with a plug-in that writes down what happens to it. Accesses
// and their stops of the stream are in the transcripts.
#include <QtTest>

#include "host/StubPlugin.h"
#include "host/app/Session.h"
#include "host/camera/SimulatedCamera.h"

class tst_Session : public QObject
{
    Q_OBJECT

    void open(bool chinese = false)
    {
        if (!m_session) {
            m_session = std::make_unique<host::Session>(m_module, chinese);
            connect(m_session.get(), &host::Session::pluginStarted, this,
                    [this](int code, const QString& text) {
                        m_started = {code, text};
                    });
        }
        host::SimulatedCameraOptions options;
        options.pixelFormat = "Mono8";
        options.frames = "ramp";
        options.width = 256;
        options.height = 2;
        options.frameRate = 1000;
        QString error;
        m_session->open(host::makeSimulatedCamera(options, &error), &m_window);
        QCOMPARE(error, QString());
    }
    QString takeCalls() { return std::exchange(StubPlugin::log().calls, {}).join(' '); }

    const host::PluginModule m_module{[]() -> IPlugin* { return new StubPlugin; },
                                      [](IPlugin* plugin) { delete plugin; }};
    QWidget m_window;
    std::unique_ptr<host::Session> m_session;
    QPair<int, QString> m_started;

private slots:
    void objectLivesFromOpenToClose()
    {
        open();
        QVERIFY(m_session->camera()->isStreaming());
        m_session->sendToPlugin(MSG_SHOW_DIALOG);
        open(); // another camera has an object of its own
        m_session->close();
        m_session->sendToPlugin(MSG_SHOW_DIALOG);
        QCOMPARE(takeCalls(), QString("create init message 1 uninit destroy create init uninit destroy"));
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
        const auto frame = m_session->firstFrame(std::chrono::seconds(5)); // beside the frame before
        QVERIFY(frame && frame->mapped && !m_session->camera()->isStreaming());
        QCOMPARE(int(frame->before.pixels[3]), 3);
        QCOMPARE(int(frame->after.pixels[3]), 252);
        m_session->close();
        QCOMPARE(int(StubPlugin::log().framesOutOfTime), 0);
    }

    // And the camera runs; the reason is read in the plug-in's language.
    void failedPluginIsTakenDown()
    {
        QTextCodec* const locale = QTextCodec::codecForLocale(); // file names go through it
        for (const bool chinese : {false, true}) {
            m_session.reset();
            StubPlugin::log().initResult = 0;
            open(chinese);
            takeCalls();
            StubPlugin::log().initResult = -2;
            m_session->restartPlugin();
            QCOMPARE(m_started, qMakePair(-2, QString::fromUtf8(chinese ? "内" : "café")));
            QCOMPARE(takeCalls(), QString("uninit destroy create init uninit destroy"));
            const auto frame = m_session->firstFrame(std::chrono::seconds(5));
            QVERIFY(frame && !frame->mapped);
        }
        QCOMPARE(QTextCodec::codecForLocale(), locale);
    }
};

QTEST_MAIN(tst_Session)
#include "tst_Session.moc"
