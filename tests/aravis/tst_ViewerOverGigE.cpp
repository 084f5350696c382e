// The built viewer on a camera behind the GigE Vision protocol.
#include "CameraProcess.h"
#include "host/TestFolder.h"

class tst_ViewerOverGigE : public QObject
{
    Q_OBJECT

    TestFolder::Run run(const QString& camera, const QByteArray& script, const QString& options = {}) const
    {
        m_folder.put("script.txt", script);
        return m_folder.run(ORLUNE_HOST, "--script script.txt --camera " + camera + ' ' + options);
    }

    const QString m_real = "aravis:127.0.0.1";
    const TestFolder m_folder;
    CameraProcess m_process;

private slots:
    // The same events in the same order, and the same bytes in the register.
    void scriptIsAsOnTheSimulatedCamera()
    {
        START_OR_SKIP(m_process);
        QVector<QByteArray> registers;
        QStringList transcripts;
        for (const QString& camera : {QString("lut"), m_real}) {
            const auto result =
                run(camera, "show\nset objGammaSlider 220\ntype objLutRangeMaxEdit 3000\nregister one.bin\n"
                            "click objWriteLutButton\nset objContrastSlider -40\n"
                            "click objDeviceLutRadioButton\nget objGammaLineEdit\nget objContrastLineEdit\n"
                            "register two.bin\nstream off\nset objGammaSlider 90\nregister three.bin\n"
                            "poke one.bin\nplugin\nhide\n");
            QVERIFY2(result.exitCode == 0, qPrintable(result.error));
            transcripts += result.out;
            registers += m_folder.get("one.bin") + m_folder.get("two.bin") + m_folder.get("three.bin");
        }
        QCOMPARE(registers[0].size(), 3 * 16424);
        QCOMPARE(registers[1], registers[0]);
        QCOMPARE(transcripts[1].split('\n'), transcripts[0].split('\n'));
        QCOMPARE(m_process.memory(CameraProcess::kLut, 16424), registers[0].left(16424));
    }

    void framesAreExact()
    {
        START_OR_SKIP(m_process);
        for (const bool wide : {false, true}) {
            QByteArray sent = wide ? "P5\n300 100\n4095\n" : "P5\n300 100\n255\n";
            for (int i = 0; i < 300 * 100; ++i) {
                const int x = i % 300, code = wide && x == 0 ? 4095 : x + 3 * (i / 300);
                if (wide)
                    sent += char(code >> 8);
                sent += char(code);
            }
            const QString format = wide ? "Mono12" : "Mono8";
            const auto result = run(m_real, "frame f.pgm\n", "--size 300x100 --pixel-format " + format);
            QVERIFY2(result.out.contains(format + " 300 x 100, not mapped"), qPrintable(result.error));
            QCOMPARE(m_folder.get("f.pgm"), sent);
        }
    }

    void lostCameraInAScript()
    {
        START_OR_SKIP(m_process);
        m_folder.put("lost.txt",
                     "show\nwait 400\nset objGammaSlider 150\nset objGammaSlider 160\nreconnect\nhide\n");
        QProcess viewer;
        viewer.setWorkingDirectory(m_folder.path());
        viewer.start(ORLUNE_HOST, {"--camera", m_real, "--script", "lost.txt"});
        QByteArray out;
        while (!out.contains("> wait") && viewer.waitForReadyRead(10000))
            out += viewer.readAllStandardOutput();
        m_process.kill();
        QVERIFY(viewer.waitForFinished(40000));
        out += viewer.readAllStandardOutput();
        QCOMPARE(viewer.exitCode(), 0);
        for (const char* line :
             {"box \"Error\" \"[LUTValueAll] camera lost\"", "box \"Error\" \"[TLParamsLocked] camera lost\"",
              "camera lost \"The camera Aravis Fake T1 at 127.0.0.1 is lost", "not reconnected: \""})
            QVERIFY2(out.contains(line), out);
        const auto later = run(m_real, "quit\n");
        QCOMPARE(later.exitCode, 1);
        QVERIFY2(later.error.contains("orlune-host: No camera answers at 127.0.0.1."),
                 qPrintable(later.error));
    }

    void list()
    {
        if (!kOwnNetwork)
            QSKIP("a search asks every network, and this system allows none of the test's own");
        m_process.end();
        const QString nothing = m_folder.run(ORLUNE_HOST, "--list").out;
        QVERIFY2(nothing.contains("lut-enable ") && nothing.contains("No real camera was found."),
                 qPrintable(nothing));
        START_OR_SKIP(m_process);
        const QString one = m_folder.run(ORLUNE_HOST, "--list").out;
        QVERIFY2(one.contains("aravis:127.0.0.1 ") && one.contains("Aravis Fake T1"), qPrintable(one));
        QVERIFY(!one.contains("No real camera"));
        const QString unknown = run("aravis:Nobody", "quit\n").error;
        QVERIFY2(unknown.contains("No camera of the name \"Nobody\""), qPrintable(unknown));
    }
};

QTEST_GUILESS_MAIN(tst_ViewerOverGigE)
#include "tst_ViewerOverGigE.moc"
