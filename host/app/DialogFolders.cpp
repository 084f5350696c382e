#include "host/app/DialogFolders.h"

#include <QApplication>
#include <QEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>

namespace host {

namespace {

const QString kPicturesKey = QStringLiteral("folders/pictures");
const QString kTablesKey = QStringLiteral("folders/tables");

// Home, where the system's folder for it is missing.
QString ownFolder(QStandardPaths::StandardLocation location)
{
    const QString folder = QStandardPaths::writableLocation(location);
    return QFileInfo(folder).isDir() ? folder : QDir::homePath();
}

} // namespace

DialogFolders::DialogFolders(QSettings* settings) : m_settings(settings)
{
    qApp->installEventFilter(this);
}

QString DialogFolders::pictures() const
{
    const QString folder = remembered(kPicturesKey);
    return folder.isEmpty() ? ownFolder(QStandardPaths::PicturesLocation) : folder;
}

void DialogFolders::rememberPictures(const QString& folder)
{
    remember(kPicturesKey, folder);
}

QString DialogFolders::tables() const
{
    const QString folder = remembered(kTablesKey);
    return folder.isEmpty() ? ownFolder(QStandardPaths::DocumentsLocation) : folder;
}

QString DialogFolders::remembered(const QString& key) const
{
    const QString folder = m_settings ? m_settings->value(key).toString() : QString();
    return QFileInfo(folder).isDir() ? folder : QString();
}

void DialogFolders::remember(const QString& key, const QString& folder)
{
    if (m_settings)
        m_settings->setValue(key, folder);
}

bool DialogFolders::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::Show)
        return false;
    auto* dialog = qobject_cast<QFileDialog*>(watched);
    const bool isPlugins = dialog && !dialog->parent();
    if (!isPlugins || dialog->acceptMode() != QFileDialog::AcceptSave ||
        QFileInfo(dialog->directory().path()).isWritable())
        return false;
    dialog->setDirectory(tables());
    connect(dialog, &QFileDialog::fileSelected, this,
            [this](const QString& file) { remember(kTablesKey, QFileInfo(file).path()); });
    return false;
}

} // namespace host
