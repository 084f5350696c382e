// The built viewer on a camera behind the GigE Vision protocol.
#include "CameraProcess.h"

class tst_ViewerOverGigE : public QObject
{
    Q_OBJECT

private slots:
    // The same events in the same order, and the same bytes in the register.
    void scriptIsAsOnTheSimulatedCamera()
    {
        START_OR_SKIP(m_process);
        write("session.txt", "show\nset objGammaSlider 220\ntype objLutRangeMaxEdit 3000\nregister one.bin\n"
                             "click objWriteLutButton\nset objContrastSlider -40\n"
                             "click objDeviceLutRadioButton\nget objGammaLineEdit\nget objContrastLineEdit\n"
                             "register two.bin\nstream off\nset objGammaSlider 90\nregister three.bin\n"
                             "plugin\nhide\n");
        QStringList transcripts;
        QVector<QByteArray> registers;
        for (const char* camera : {"lut", "aravis:127.0.0.1"}) {
            const Result result = run({ORLUNE_HOST, "--camera", camera, "--script", "session.txt"});
            QVERIFY2(result.exitCode == 0, qPrintable(result.error));
            transcripts += result.out;
            registers += take("one.bin") + take("two.bin") + take("three.bin");
        }
        QCOMPARE(registers[0].size(), 3 * 16424);
        QCOMPARE(registers[1], registers[0]);
        QCOMPARE(transcripts[1], transcripts[0]);
        QCOMPARE(m_process.memory(CameraProcess::kLut, 16424), registers[0].right(16424));
    }

    void lostCameraInAScript()
    {
        START_OR_SKIP(m_process);
        write("lost.txt",
              "show\nwait 400\nset objGammaSlider 150\nset objGammaSlider 160\nreconnect\nhide\n");
        QProcess viewer;
        viewer.setWorkingDirectory(m_folder.path());
        viewer.start(ORLUNE_HOST, {"--camera", "aravis:127.0.0.1", "--script", "lost.txt"});
        QByteArray out;
        while (!out.contains("> wait") && viewer.waitForReadyRead(10000))
            out += viewer.readAllStandardOutput();
        m_process.kill();
        QVERIFY(viewer.waitForFinished(40000));
        out += viewer.readAllStandardOutput();
        QCOMPARE(viewer.exitCode(), 0);
        QVERIFY2(out.contains("box \"Error\" \"[LUTValueAll] camera lost\""), out);
        QVERIFY2(out.contains("box \"Error\" \"[TLParamsLocked] camera lost\""), out);
        QVERIFY2(out.contains("camera lost \"The camera Aravis Fake T1 at 127.0.0.1 is lost"), out);
        QVERIFY2(out.contains("not reconnected: \""), out);
    }

    void noCamera()
    {
        START_OR_SKIP(m_process);
        m_process.end();
        write("quit.txt", "quit\n");
        const Result result = run({ORLUNE_HOST, "--camera", "aravis:127.0.0.1", "--script", "quit.txt"});
        QCOMPARE(result.exitCode, 1);
        QVERIFY2(result.error.contains("orlune-host: No camera answers at 127.0.0.1."),
                 qPrintable(result.error));
    }

    void list()
    {
        if (!kOwnNetwork)
            QSKIP("a search asks every network, and this system allows none of the test's own");
        m_process.end();
        const Result nothing = run({ORLUNE_HOST, "--list"});
        QVERIFY2(nothing.out.contains("lut-enable ") && nothing.out.contains("No real camera was found."),
                 qPrintable(nothing.out + nothing.error));
        START_OR_SKIP(m_process);
        const Result one = run({ORLUNE_HOST, "--list"});
        QVERIFY2(one.out.contains("aravis:127.0.0.1 ") && one.out.contains("Aravis Fake T1"),
                 qPrintable(one.out + one.error));
        QVERIFY(!one.out.contains("No real camera"));

        write("quit.txt", "quit\n");
        const Result unknown = run({ORLUNE_HOST, "--camera", "aravis:Nobody", "--script", "quit.txt"});
        QVERIFY2(unknown.error.contains("No camera of the name \"Nobody\""), qPrintable(unknown.error));
    }

private:
    struct Result
    {
        int exitCode;
        QString out;
        QString error;
    };
    Result run(const QStringList& command)
    {
        QProcess process;
        process.setWorkingDirectory(m_folder.path());
        process.start(command.first(), command.mid(1));
        if (!process.waitForFinished(40000))
            return {-1, {}, process.errorString()};
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }

    void write(const QString& name, const QByteArray& text)
    {
        QFile file(m_folder.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
    }

    QByteArray take(const QString& name)
    {
        QFile file(m_folder.filePath(name));
        const QByteArray bytes = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        file.remove();
        return bytes;
    }

    QTemporaryDir m_folder;
    CameraProcess m_process;
};

QTEST_GUILESS_MAIN(tst_ViewerOverGigE)
#include "tst_ViewerOverGigE.moc"
