// Where file dialogs begin: in the person's own folders, where the last one was chosen.
#ifndef ORLUNE_HOST_APP_DIALOGFOLDERS_H
#define ORLUNE_HOST_APP_DIALOGFOLDERS_H

#include <QObject>

class QSettings;

namespace host {

// While it lives, a save dialog of the plug-in that opens in a folder where nothing can be written, as an
// installed application's is, begins in tables() instead.
class DialogFolders : public QObject
{
    Q_OBJECT

public:
    // settings keeps the folders from one start to the next; null: they are the person's own ones.
    explicit DialogFolders(QSettings* settings);

    QString pictures() const;
    void rememberPictures(const QString& folder);
    QString tables() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QString remembered(const QString& key) const; // empty if it is no folder any more
    void remember(const QString& key, const QString& folder);

    QSettings* m_settings;
};

} // namespace host

#endif
