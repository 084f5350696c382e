// The five settings: one rule for every edit and one for every slider, and a row of data for each.
#include "editor/OrluneDlg.h"

#include <QEvent>
#include <QLineEdit>
#include <QSignalBlocker>

#include "curve/BezierCurve.h"
#include "editor/IntSlider.h"
#include "editor/Plotter.h"
#include "lut/ResultCodes.h"

using namespace orlune;

const OrluneDlg::ControlRow OrluneDlg::kGammaRow = {
    &OrluneDlg::GammaEdit, &OrluneDlg::GammaSlider,   &OrluneDlg::GammaValidator, &Plotter::GetGamma,
    &Plotter::SetGamma,    &Plotter::StoreGamma,      &LutSettings::Gamma,        kGammaLimits,
    kGammaLimits,          &OrluneDlg::ShowRangeError};
const OrluneDlg::ControlRow OrluneDlg::kBrightnessRow = {&OrluneDlg::BrightnessEdit,
                                                         &OrluneDlg::BrightnessSlider,
                                                         &OrluneDlg::BrightnessValidator,
                                                         &Plotter::GetBrightness,
                                                         &Plotter::SetBrightness,
                                                         &Plotter::StoreBrightness,
                                                         &LutSettings::Brightness,
                                                         kToneLimits,
                                                         kToneLimits,
                                                         &OrluneDlg::ShowRangeError};
const OrluneDlg::ControlRow OrluneDlg::kContrastRow = {&OrluneDlg::ContrastEdit,
                                                       &OrluneDlg::ContrastSlider,
                                                       &OrluneDlg::ContrastValidator,
                                                       &Plotter::GetContrast,
                                                       &Plotter::SetContrast,
                                                       &Plotter::StoreContrast,
                                                       &LutSettings::Contrast,
                                                       kToneLimits,
                                                       kToneLimits,
                                                       &OrluneDlg::ShowRangeError};
const OrluneDlg::ControlRow OrluneDlg::kRangeMinRow = {
    &OrluneDlg::RangeMinEdit,
    nullptr,
    &OrluneDlg::RangeMinValidator,
    &Plotter::GetRangeMin,
    &Plotter::SetRangeMin,
    &Plotter::StoreRangeMin,
    &LutSettings::RangeMin,
    kRangeLimits,
    {kRangeLimits.low, kRangeLimits.high - kMinRangeDistance},
    &OrluneDlg::ShowRangeDifferenceError};
const OrluneDlg::ControlRow OrluneDlg::kRangeMaxRow = {
    &OrluneDlg::RangeMaxEdit,
    nullptr,
    &OrluneDlg::RangeMaxValidator,
    &Plotter::GetRangeMax,
    &Plotter::SetRangeMax,
    &Plotter::StoreRangeMax,
    &LutSettings::RangeMax,
    kRangeLimits,
    {kRangeLimits.low + kMinRangeDistance, kRangeLimits.high},
    &OrluneDlg::ShowRangeDifferenceError};
const OrluneDlg::ControlRow* const OrluneDlg::kControlRows[5] = {&kGammaRow, &kBrightnessRow, &kContrastRow,
                                                                 &kRangeMinRow, &kRangeMaxRow};

void OrluneDlg::on_objGammaLineEdit_editingFinished()
{
    ApplyEdit(kGammaRow);
}

void OrluneDlg::on_objBrightnessLineEdit_editingFinished()
{
    ApplyEdit(kBrightnessRow);
}

void OrluneDlg::on_objContrastLineEdit_editingFinished()
{
    ApplyEdit(kContrastRow);
}

void OrluneDlg::on_objLutRangeMinEdit_editingFinished()
{
    ApplyEdit(kRangeMinRow);
}

void OrluneDlg::on_objLutRangeMaxEdit_editingFinished()
{
    ApplyEdit(kRangeMaxRow);
}

void OrluneDlg::on_objGammaSlider_valueChanged(int nValue)
{
    ApplySlider(kGammaRow, nValue);
}

void OrluneDlg::on_objBrightnessSlider_valueChanged(int nValue)
{
    ApplySlider(kBrightnessRow, nValue);
}

void OrluneDlg::on_objContrastSlider_valueChanged(int nValue)
{
    ApplySlider(kContrastRow, nValue);
}

void OrluneDlg::ApplySlider(const ControlRow& row, int value)
{
    if (value == (PlotterWidget->*row.Get)())
        return;
    (this->*row.Edit)->setText(QString::number(value));
    ApplyEdit(row);
}

// Edit and setting agree whenever a box opens: the box takes the focus, the edit then finishes once more, and
// that must find nothing to do.
void OrluneDlg::ApplyEdit(const ControlRow& row)
{
    const Operation running(*this);
    const int newValue = (this->*row.Edit)->text().toInt();
    const int oldValue = (PlotterWidget->*row.Get)();
    if (newValue == oldValue)
        return;
    if (!Accepts(row, newValue)) {
        RestoreControl(row);
        (this->*row.Reject)(row.Accepted.low, row.Accepted.high);
        return;
    }
    (PlotterWidget->*row.Set)(newValue);
    SetSliderSilently(row, newValue);
    if (ApplyLut() == kSuccess)
        return;
    // The user has seen why; the camera is not written again.
    (PlotterWidget->*row.Set)(oldValue);
    RestoreControl(row);
}

bool OrluneDlg::Accepts(const ControlRow& row, int value) const
{
    if (!row.Accepted.Contains(value))
        return false;
    if (row.Slider)
        return true;
    LutSettings settings = Settings();
    settings.*row.Setting = value;
    return qint64(settings.RangeMax) - settings.RangeMin >= kMinRangeDistance;
}

LutSettings OrluneDlg::Settings() const
{
    LutSettings settings;
    for (const ControlRow* row : kControlRows)
        settings.*row->Setting = (PlotterWidget->*row->Get)();
    return settings;
}

void OrluneDlg::RestoreControl(const ControlRow& row)
{
    ShowSetting(row, (PlotterWidget->*row.Get)());
}

void OrluneDlg::ShowSetting(const ControlRow& row, int value)
{
    (this->*row.Edit)->setText(QString::number(value));
    SetSliderSilently(row, value);
}

void OrluneDlg::SetSliderSilently(const ControlRow& row, int value)
{
    if (!row.Slider)
        return;
    const QSignalBlocker silence(this->*row.Slider);
    (this->*row.Slider)->setValue(value);
}

void OrluneDlg::ShowRangeError(int low, int high)
{
    ShowBox(tr("The value is out of range, \nplease enter a value between %1~%2 ! ").arg(low).arg(high));
}

void OrluneDlg::ShowRangeDifferenceError(int, int)
{
    ShowBox(tr("The value is out of range, \nThe right value minus the left value is greater than or equal "
               "to 63! "));
}

// An edit that is left half-typed (empty, or only a sign) would keep showing what is no setting.
bool OrluneDlg::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::FocusOut) {
        for (const ControlRow* row : kControlRows) {
            QLineEdit* edit = this->*row->Edit;
            if (watched == edit && !edit->hasAcceptableInput())
                edit->setText(QString::number((PlotterWidget->*row->Get)()));
        }
    }
    return QObject::eventFilter(watched, event); // NOLINT(bugprone-parent-virtual-call): not the size grip's
}
