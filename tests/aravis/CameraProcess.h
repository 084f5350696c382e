// orlune-testcamera, started and ended by a test.
#ifndef ORLUNE_TESTS_ARAVIS_CAMERAPROCESS_H
#define ORLUNE_TESTS_ARAVIS_CAMERAPROCESS_H

#include <QtTest>

#include "OwnNetwork.h"

// Starts a camera with these options.
#define START_OR_SKIP(process, ...)                                                                          \
    if (!(process).start({__VA_ARGS__}))                                                                     \
    QSKIP("no GigE Vision camera can be served on loopback: UDP port 3956 is taken")

class CameraProcess
{
public:
    enum Address { kAcquisitionMode = 0x12C, kLut = 0xA000, kLutEnable = 0xF010, kUserSetDefault = 0xF018 };

    ~CameraProcess() { end(); }

    // False when the port is taken.
    bool start(const QStringList& options = {})
    {
        end();
        m_process.start(ORLUNE_TESTCAMERA, QStringList{ORLUNE_TESTCAMERA_DESCRIPTION} + options);
        return line() == "ready";
    }
    // Gone without a word, as with a pulled cable.
    void kill()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    void end()
    {
        m_process.closeWriteChannel();
        if (!m_process.waitForFinished(2000))
            kill();
    }
    // The camera's memory, past all of the protocol.
    QByteArray memory(int address, int length)
    {
        m_process.write(QStringLiteral("%1 %2\n").arg(address).arg(length).toLatin1());
        return QByteArray::fromHex(line());
    }

private:
    QByteArray line()
    {
        while (!m_process.canReadLine() && m_process.waitForReadyRead(5000)) {
        }
        return m_process.readLine().trimmed();
    }

    QProcess m_process;
};

#endif
