// The five sources of a table, and the settings that come with it. Whatever goes wrong while a source is
// taken up, the dialog ends on the Default source.
#include "editor/OrluneDlg.h"

#include <QComboBox>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QRadioButton>
#include <QSignalBlocker>

#include "editor/Plotter.h"
#include "lut/PlainString.h"
#include "lut/ResultCodes.h"
#include "lut/StandardCatalogue.h"

using namespace orlune;

namespace {

// A name too long for its place is whole in the tool tip.
void ShowFileName(QLabel& label, const QString& path)
{
    const QString name = QFileInfo(path).fileName();
    label.setText(name);
    label.setToolTip(QLatin1String("<p style='white-space:pre'>") + name.toHtmlEscaped());
}

} // namespace

void OrluneDlg::SlotRadioButtonGroupSwitched()
{
    const Operation running(*this);
    const struct
    {
        const QRadioButton* radio;
        Source source;
    } rows[] = {{StandardRadio, kStandard},
                {DeviceRadio, kDevice},
                {LutFileRadio, kLutFile},
                {CsvRadio, kCsv},
                {DefaultRadio, kDefault}};
    for (const auto& row : rows) {
        if (!row.radio->isChecked())
            continue;
        LutSource = row.source;
        const int code = LoadSource(row.source);
        if (code != kSuccess) {
            LutSource = kDefault;
            ParamsValid = true;
            ShowError(code);
            FallBackToDefault();
        }
        UpdateControls();
        return;
    }
}

int OrluneDlg::LoadSource(int source)
{
    switch (source) {
    case kStandard:
        ParamsValid = true;
        return LoadStandardSource();
    case kDevice:
        return LoadDeviceSource();
    case kLutFile:
        return LoadLutFileSource();
    case kCsv:
        ParamsValid = false;
        return LoadCsvSource();
    default:
        ParamsValid = true;
        ResetToDefault();
        return ApplyLoadedLut();
    }
}

// The last step of a load: ApplyLut has shown its failure.
int OrluneDlg::ApplyLoadedLut()
{
    return ApplyLut() == kSuccess ? kSuccess : kReported;
}

// The camera keeps the table that it had.
void OrluneDlg::FallBackToDefault()
{
    DefaultRadio->setChecked(true);
    ResetToDefault();
    LutSource = kDefault;
}

int OrluneDlg::LoadStandardSource()
{
    return TakeStandardLut(StandardName);
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the contract's parameter
void OrluneDlg::on_objStandardComboBox_currentIndexChanged(QString text)
{
    const Operation running(*this);
    const int code = TakeStandardLut(text);
    if (code == kSuccess)
        return;
    ShowError(code);
    FallBackToDefault();
    UpdateControls();
}

int OrluneDlg::TakeStandardLut(const QString& name)
{
    if (!StandardFileExists(name))
        return kStandardMissing;
    const int code = ReadLutFile(StandardLutMap.value(name));
    if (code != kSuccess)
        return code;
    ResetParams(name);
    PlotterWidget->RefreshCurve();
    return ApplyLoadedLut();
}

int OrluneDlg::LoadDeviceSource()
{
    const int code = ReadDeviceLut();
    if (code != kSuccess)
        return code;
    RestoreFromTrailer();
    PlotterWidget->RefreshCurve();
    return kSuccess;
}

int OrluneDlg::LoadLutFileSource()
{
    const QString path = AskForFile(tr("Lut file (*.lut)"));
    if (path.isEmpty())
        return kReported;
    const int code = ReadLutFile(path);
    if (code != kSuccess)
        return code;
    PlotterWidget->RefreshCurve();
    RestoreFromTrailer();
    ShowFileName(*LutFileNameLabel, path);
    return ApplyLoadedLut();
}

int OrluneDlg::LoadCsvSource()
{
    const QString path = AskForFile(tr("csv file (*.csv)"));
    if (path.isEmpty())
        return kReported;
    const int code = ReadCsvFile(path);
    if (code != kSuccess)
        return code;
    ResetParams(kDefaultStandardName);
    PlotterWidget->RefreshCurve();
    ShowFileName(*CsvFileNameLabel, path);
    return ApplyLoadedLut();
}

int OrluneDlg::LoadStandardCatalogue()
{
    for (const StandardCurve& curve : ScanStandardCatalogue(kStandardDirectory, tr("bin"))) {
        StandardLutMap[curve.Name] = curve.Path;
        const QSignalBlocker silence(StandardCombo);
        StandardCombo->addItem(curve.Name);
    }
    if (StandardLutMap.isEmpty())
        return kEmptyCatalogue;
    return SelectStandard(kDefaultStandardName) ? kSuccess : kStandardMissing;
}

bool OrluneDlg::StandardFileExists(const QString& name) const
{
    const FileNamesAsBefore encoding;
    const auto found = StandardLutMap.constFind(name);
    return found != StandardLutMap.constEnd() && QFile::exists(*found);
}

// False, and nothing changes, when the catalogue lacks the name.
bool OrluneDlg::SelectStandard(const QString& name)
{
    const int index = StandardCombo->findText(name);
    if (index < 0)
        return false;
    const QSignalBlocker silence(StandardCombo);
    StandardCombo->setCurrentIndex(index);
    StandardName = name;
    return true;
}

// Stores and shows untouched settings; neither table nor picture changes.
void OrluneDlg::ResetParams(const QString& name)
{
    const LutSettings untouched;
    for (const ControlRow* row : kControlRows) {
        (PlotterWidget->*row->Store)(untouched.*row->Setting);
        RestoreControl(*row);
    }
    SelectStandard(name);
}

void OrluneDlg::ResetToDefault()
{
    ResetParams(kDefaultStandardName);
    PlotterWidget->ResetIdentity();
}

// Brings back the settings that made the current table, and puts the standard curve that it was made from
// under the controls. The table itself stays in force until a control changes. Values are taken without a
// test: a slider stops at its end, edit and curve view hold what stands there.
void OrluneDlg::RestoreFromTrailer()
{
    const auto trailer = ReadTrailer(*GetLut());
    ParamsValid = trailer.has_value();
    if (!trailer) {
        ResetParams(kDefaultStandardName);
        return;
    }
    for (const ControlRow* row : kControlRows) {
        (PlotterWidget->*row->Store)(trailer->Settings.*row->Setting);
        RestoreControl(*row);
    }
    if (!SelectStandard(FromPlainString(trailer->StandardName)))
        SelectStandard(kDefaultStandardName);
    // Without the curve's file the loaded table itself stays the base.
    ReadBaseLutFile(StandardLutMap.value(StandardName));
}
