// Table files under the window's commands. The readers fill the curve view's images and leave settings and
// picture to the source that called them.
#include "editor/OrluneDlg.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QFileInfo>

#include "lut/LutFiles.h"
#include "lut/PlainString.h"
#include "lut/ResultCodes.h"

using namespace orlune;

QString OrluneDlg::FileDialogDirectory() const
{
    return QCoreApplication::applicationDirPath() + QLatin1String("/resource/lqplugins/LookUpTable/Lut12/");
}

QString OrluneDlg::AskForFile(const QString& filter) const
{
    const FileNamesAsBefore encoding;
    return QFileDialog::getOpenFileName(nullptr, tr("Open File"), FileDialogDirectory(), filter);
}

QString OrluneDlg::AskForSaveFile() const
{
    const FileNamesAsBefore encoding;
    return QFileDialog::getSaveFileName(nullptr, tr("Save Lut"), FileDialogDirectory(),
                                        tr("Lut file (*.lut);;csv file (*.csv)"));
}

int OrluneDlg::ReadLutFile(const QString& path)
{
    return orlune::ReadLutFile(path, *GetLut(), *GetBaseLut());
}

int OrluneDlg::ReadBaseLutFile(const QString& path)
{
    return orlune::ReadBaseLutFile(path, *GetBaseLut());
}

int OrluneDlg::ReadCsvFile(const QString& path)
{
    return orlune::ReadCsvFile(path, *GetLut(), *GetBaseLut());
}

int OrluneDlg::WriteLutFile(const QString& path)
{
    return orlune::WriteLutFile(path, *GetLut(), ParamsValid);
}

int OrluneDlg::WriteCsvFile(const QString& path)
{
    return orlune::WriteCsvFile(path, *GetLut());
}

// The format follows the chosen name alone, and the name is taken to the letter: a dot in the base name or an
// upper-case suffix is refused before a file is touched.
void OrluneDlg::on_objSaveLutButton_clicked()
{
    const Operation running(*this);
    const QString path = AskForSaveFile();
    if (path.isEmpty())
        return;
    const QString suffix = QFileInfo(path).completeSuffix();
    int code = kBadFileName;
    if (suffix == QLatin1String("csv"))
        code = WriteCsvFile(path);
    else if (suffix == QLatin1String("lut"))
        code = WriteLutFile(path);
    if (code != kSuccess)
        ShowError(code);
}
