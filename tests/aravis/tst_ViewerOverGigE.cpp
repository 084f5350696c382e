// The built viewer on a camera behind the GigE Vision protocol.
#include "CameraProcess.h"
#include "host/ViewerFolder.h"

class tst_ViewerOverGigE : public QObject
{
    Q_OBJECT

    ViewerFolder::Run run(const QString& camera, const QByteArray& script, const QString& options = {}) const
    {
        m_folder.put("script.txt", script);
        return m_folder.run("--script script.txt --camera " + camera + ' ' + options);
    }

    const QString m_real = "aravis:127.0.0.1";
    const ViewerFolder m_folder;
    CameraProcess m_process;

private slots:
    // The same events in the same order, and after each step the same bytes in the register.
    void scriptIsAsOnTheSimulatedCamera()
    {
        const QByteArray steps[] = {"type objGammaLineEdit 230",
                                    "type objLutRangeMaxEdit 3000",
                                    "set objContrastSlider -7",
                                    "click objWriteLutButton",
                                    "click objInitLutRadioButton",
                                    "set objStandardComboBox srgb",
                                    "click objDeviceLutRadioButton",
                                    "type objBrightnessLineEdit 20",
                                    "click objDefaultRadioButton",
                                    "stream off",
                                    "type objContrastLineEdit -40",
                                    "poke first.bin",
                                    "plugin",
                                    "click objDeviceLutRadioButton"};
        QByteArray script = "show\ntype objGammaLineEdit 190\nregister first.bin\n";
        for (const QByteArray& step : steps)
            script += step + "\nregister last.bin\nget objGammaLineEdit\nget objLutRangeMaxEdit\n";
        for (const QString bytes : {"16424", "16384", "4136"}) {
            for (const QString model : {"lut", "lut-enable"}) {
                const bool enable = model == "lut-enable";
                START_OR_SKIP(m_process, "lut=" + bytes, QString("enable=%1").arg(int(enable)));
                const auto wanted = run(model, script, "--lut-bytes " + bytes);
                const QByteArray table = m_folder.get("last.bin");
                const auto result = run(m_real, script);
                QVERIFY2(result.exitCode == 0, qPrintable(result.error));
                QCOMPARE(result.out.split('\n'), wanted.out.split('\n'));
                QCOMPARE(m_process.memory(CameraProcess::kLut, bytes.toInt()), table);
                QCOMPARE(m_process.memory(CameraProcess::kLutEnable, 4).back(), char(enable));
                QCOMPARE(m_process.memory(CameraProcess::kUserSetDefault, 4).back(), '\1');
            }
        }
    }

    // The plug-in maps those of the camera without LUT, with the identity.
    void framesAreExact()
    {
        for (const bool wide : {false, true}) {
            START_OR_SKIP(m_process, wide ? "lut=16424" : "lut=0");
            QByteArray sent = wide ? "P5\n300 100\n4095\n" : "P5\n300 100\n255\n";
            for (int i = 0; i < 300 * 100; ++i) {
                const int x = i % 300, code = wide && x == 0 ? 4095 : x + 3 * (i / 300);
                if (wide)
                    sent += char(code >> 8);
                sent += char(code);
            }
            const QString format = wide ? "Mono12" : "Mono8";
            const auto result = run(m_real, "frame f.pgm\n", "--size 300x100 --pixel-format " + format);
            QVERIFY2(result.out.contains(format + " 300 x 100, " + (wide ? "not mapped" : "mapped")),
                     qPrintable(result.out + result.error));
            QCOMPARE(m_folder.get("f.pgm"), sent);
        }
    }

    void cameraGoesAndComesBack()
    {
        START_OR_SKIP(m_process);
        QByteArray script = "show\nget OrluneDlg\nset objContrastSlider 20\n";
        for (int gamma = 101; gamma <= 400; ++gamma)
            script += "set objGammaSlider " + QByteArray::number(gamma) + '\n';
        m_folder.put("script.txt", script + "get objGammaSlider\nreconnect\nwait 6000\nreconnect\n"
                                            "set objGammaSlider 250\nregister back.bin\nhide\n");
        QProcess viewer;
        viewer.setWorkingDirectory(m_folder.path());
        viewer.start(ORLUNE_HOST, {"--camera", m_real, "--script", "script.txt"});
        QByteArray out;
        const auto readUntil = [&](const char* line) {
            while (!out.contains(line) && viewer.waitForReadyRead(20000))
                out += viewer.readAllStandardOutput();
        };
        readUntil("Slider 110\n");
        m_process.kill(); // most likely in a write
        readUntil("> wait");
        QVERIFY(m_process.start());
        QVERIFY(viewer.waitForFinished(40000));
        out += viewer.readAllStandardOutput();
        QCOMPARE(viewer.exitCode(), 0);
        const int gone = out.mid(out.lastIndexOf("> set ", out.indexOf("box")) + 21, 3).toInt();
        const QByteArray kept = "  objGammaSlider " + QByteArray::number(gone - 1) + " enabled visible\n";
        // Only one access waits for the transport, and the editor shows what the camera has got.
        for (const QByteArray& line : {QByteArray("\"Orlune  Aravis Fake T1 at 127.0.0.1\""), kept,
                                       QByteArray("> set objGammaSlider 400\n  box \"Error\" "
                                                  "\"[TLParamsLocked] camera lost\""),
                                       QByteArray("camera lost \"The camera Aravis Fake T1 at 127.0.0.1 is"),
                                       QByteArray("not reconnected: \""), QByteArray("  reconnected\n")})
            QVERIFY2(out.contains(line), line + out);
        QVERIFY2(out.count("timeout") <= 1, out);
        // The camera has the whole state that the window shows: gamma, brightness, contrast.
        const QByteArray table = m_folder.get("back.bin");
        QCOMPARE(table.mid(16388, 12), QByteArray("\xfa\0\0\0\0\0\0\0\x14\0\0\0", 12));
        QCOMPARE(m_process.memory(CameraProcess::kLut, 16424), table);

        m_process.end();
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
        const QString nothing = m_folder.run("--list").out;
        QVERIFY2(nothing.contains("lut-enable ") && nothing.contains("No real camera was found."),
                 qPrintable(nothing));
        START_OR_SKIP(m_process);
        const QString one = m_folder.run("--list").out;
        QVERIFY2(one.contains("aravis:127.0.0.1 ") && one.contains("Aravis Fake T1"), qPrintable(one));
        QVERIFY(!one.contains("No real camera"));
        const QString unknown = run("aravis:Nobody", "quit\n").error;
        QVERIFY2(unknown.contains("No camera of the name \"Nobody\""), qPrintable(unknown));
    }
};

QTEST_GUILESS_MAIN(tst_ViewerOverGigE)
#include "tst_ViewerOverGigE.moc"
