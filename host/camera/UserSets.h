// The user sets of the simulated camera: what its non-volatile memory keeps. Set 0 is the factory's, set 1 is
// the user's and holds the factory's state until it is saved for the first time. With a state file they
// survive the program; the file is JSON with a checksum, replaced as a whole or not at all.
//
// Thread: the GUI thread.
#ifndef ORLUNE_HOST_CAMERA_USERSETS_H
#define ORLUNE_HOST_CAMERA_USERSETS_H

#include <QByteArray>
#include <QCoreApplication>
#include <QJsonObject>
#include <QString>

namespace host {

class UserSets
{
    Q_DECLARE_TR_FUNCTIONS(UserSets)

public:
    static constexpr int kFactorySet = 0;
    static constexpr int kUserSet0 = 1;
    static constexpr int kCount = 2;

    // Each set has as many bytes as factory. Reads the state file, if there is one; an empty path means that
    // nothing outlives this object. camera marks whose state it is.
    UserSets(QByteArray factory, const QString& camera, const QString& stateFile);

    // One sentence when the state file could not be used; it then stays as it is until the next save.
    const QString& problem() const { return m_problem; }

    // The set that the camera starts with.
    int startSet() const { return m_startSet; }
    const QByteArray& bytes(int set) const { return set == kUserSet0 ? m_userSet : m_factory; }

    // Both give an empty text, or a sentence that says why nothing was stored and nothing changed.
    QString saveUserSet(const QByteArray& bytes) { return store(bytes, m_startSet); }
    QString setStartSet(int set) { return store(m_userSet, set); }

private:
    QString load();
    QString store(const QByteArray& userSet, int startSet);
    QJsonObject toJson(const QByteArray& userSet, int startSet) const;

    QByteArray m_factory;
    QString m_camera;
    QString m_stateFile;
    QByteArray m_userSet;
    int m_startSet = kFactorySet;
    QString m_problem;
};

} // namespace host

#endif
