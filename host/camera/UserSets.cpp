#include "host/camera/UserSets.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QSaveFile>

namespace host {

static const QString kCamera = QStringLiteral("camera");
static const QString kStartSet = QStringLiteral("startSet");
static const QString kUserSet = QStringLiteral("userSet0");
static const QString kChecksum = QStringLiteral("sha256");

// Over everything but the checksum itself; QJsonObject keeps its keys sorted, so the text is always the same.
static QString checksum(QJsonObject state)
{
    state.remove(kChecksum);
    const QByteArray text = QJsonDocument(state).toJson(QJsonDocument::Compact);
    return QString::fromLatin1(QCryptographicHash::hash(text, QCryptographicHash::Sha256).toHex());
}

UserSets::UserSets(QByteArray factory, const QString& camera, const QString& stateFile)
    : m_factory(std::move(factory)), m_camera(camera), m_stateFile(stateFile), m_userSet(m_factory)
{
    const QString reason = load();
    if (!reason.isEmpty()) {
        m_problem =
            tr("The camera's state file %1 is ignored, and kept until the camera stores something: %2.")
                .arg(QDir::toNativeSeparators(m_stateFile), reason);
    }
}

QJsonObject UserSets::toJson(const QByteArray& userSet, int startSet) const
{
    QJsonObject state{
        {kCamera, m_camera}, {kStartSet, startSet}, {kUserSet, QString::fromLatin1(userSet.toBase64())}};
    state[kChecksum] = checksum(state);
    return state;
}

QString UserSets::load()
{
    QFile file(m_stateFile);
    if (m_stateFile.isEmpty() || !file.exists()) {
        return {};
    }
    if (!file.open(QIODevice::ReadOnly)) {
        return file.errorString();
    }
    constexpr qint64 kLongestFile = 16 << 20;
    const QJsonObject state = QJsonDocument::fromJson(file.read(kLongestFile)).object();
    if (state.isEmpty() || state[kChecksum].toString() != checksum(state)) {
        return tr("it is damaged");
    }
    if (state[kCamera].toString() != m_camera) {
        return tr("it belongs to another camera, %1").arg(state[kCamera].toString());
    }
    const QByteArray userSet = QByteArray::fromBase64(state[kUserSet].toString().toLatin1());
    const int startSet = state[kStartSet].toInt(-1);
    if (userSet.size() != m_factory.size() || startSet < 0 || startSet >= kCount) {
        return tr("it is damaged");
    }
    m_userSet = userSet;
    m_startSet = startSet;
    return {};
}

QString UserSets::store(const QByteArray& userSet, int startSet)
{
    if (!m_stateFile.isEmpty()) {
        QSaveFile file(m_stateFile);
        const bool stored = file.open(QIODevice::WriteOnly) &&
                            file.write(QJsonDocument(toJson(userSet, startSet)).toJson()) >= 0 &&
                            file.commit();
        if (!stored) {
            return tr("The camera's state cannot be stored in %1: %2.")
                .arg(QDir::toNativeSeparators(m_stateFile), file.errorString());
        }
    }
    m_userSet = userSet;
    m_startSet = startSet;
    return {};
}

} // namespace host
