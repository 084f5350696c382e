#include "editor/OrluneDlg.h"

#include <memory>
#include <new>

#include <QCoreApplication>
#include <QIcon>
#include <QMessageBox>
#include <QPixmap>

#include "editor/BoundedIntValidator.h"
#include "lut/PlainString.h"
#include "lut/ResultCodes.h"
#include "lut/StandardCatalogue.h"
#include "ui_OrluneDlg.h"

using namespace orlune;

namespace {

constexpr int kSliderSingleStep = 10;
constexpr char kUnknownError[] = QT_TRANSLATE_NOOP("OrluneDlg", "Unkown Error! ");

struct ErrorText
{
    int code;
    const char* text;
};

constexpr ErrorText kErrorTexts[] = {
    {kOpenFailed, QT_TRANSLATE_NOOP("OrluneDlg", "Open file failed! ")},
    {kInvalidData, QT_TRANSLATE_NOOP("OrluneDlg", "Invalid file data! ")},
    {kBadFileName, QT_TRANSLATE_NOOP("OrluneDlg", "The filename of Lut is error! ")},
    {kNodeMissing, QT_TRANSLATE_NOOP("OrluneDlg", "Get xml value failed! ")},
    {kSetLutFailed, QT_TRANSLATE_NOOP("OrluneDlg", "Set Lut error! whether the device is disconnected.")},
    {kLutNotSupported,
     QT_TRANSLATE_NOOP("OrluneDlg", "Camera does not support read and write operations of Lut! ")},
    {kEmptyCatalogue,
     QT_TRANSLATE_NOOP("OrluneDlg", "Empty Dir, Please Reinstall the installation package! ")},
    {kStandardMissing,
     QT_TRANSLATE_NOOP("OrluneDlg", "The Lut File is missing, Please Reinstall the installation package! ")},
    {kDeviceInfoFailed, QT_TRANSLATE_NOOP("OrluneDlg", "Device information acquisition failed! ")},
    {kInvalidParameter, QT_TRANSLATE_NOOP("OrluneDlg", "Invalid parameter! ")},
};

} // namespace

OrluneDlg::OrluneDlg(PluginInitParam* initParam, QWidget* parent)
    : QDialog(parent), StandardName(kDefaultStandardName)
{
    auto form = std::make_unique<Ui_OrluneDlg>();
    form->setupUi(this);
    OrluneDlg::SetOemIcon(); // no derived part is there yet
    RemoteNodeMap = initParam->remoteDeviceMap;

    PlotterWidget = form->objPlotterWidget;
    GammaEdit = form->objGammaLineEdit;
    BrightnessEdit = form->objBrightnessLineEdit;
    ContrastEdit = form->objContrastLineEdit;
    RangeMinEdit = form->objLutRangeMinEdit;
    RangeMaxEdit = form->objLutRangeMaxEdit;
    DefaultRadio = form->objDefaultRadioButton;
    StandardRadio = form->objInitLutRadioButton;
    DeviceRadio = form->objDeviceLutRadioButton;
    LutFileRadio = form->objLutFileRadioButton;
    CsvRadio = form->objCSVFileRadioButton;
    LutFileNameLabel = form->objLutFileNameLabel;
    CsvFileNameLabel = form->objCSVFileNameLabel;
    GammaSlider = form->objGammaSlider;
    ContrastSlider = form->objContrastSlider;
    BrightnessSlider = form->objBrightnessSlider;
    WriteButton = form->objWriteLutButton;
    SaveButton = form->objSaveLutButton;
    StandardCombo = form->objStandardComboBox;

    WriteButton->setToolTip(
        tr("This operation will save the user sets and set the UserSetDefault to UserSet0!"));

    for (const ControlRow* row : kControlRows) {
        (this->*row->Edit)->installEventFilter(this);
        if (!row->Slider)
            continue;
        CIntSlider* slider = this->*row->Slider;
        slider->setRange(row->Accepted.low, row->Accepted.high);
        slider->setSingleStep(kSliderSingleStep);
    }
    Ui = form.release(); // the destructor's from here on, where nothing can fail any more
}

OrluneDlg::~OrluneDlg()
{
    delete Ui;
    DeleteValidators();
}

void OrluneDlg::SetOemIcon()
{
    const FileNamesAsBefore encoding;
    const QPixmap logo(QCoreApplication::applicationDirPath() +
                       QLatin1String("/resource/oem/images/logo.png"));
    if (!logo.isNull())
        setWindowIcon(QIcon(logo));
}

int OrluneDlg::Init()
{
    PlotterWidget->Init();
    ResetParams(kDefaultStandardName);
    if (!CreateValidators())
        return kInitNoMemory;
    if (ProbeLutSupport() != kSuccess)
        return kInitProbeFailed;
    if (LoadStandardCatalogue() != kSuccess)
        return kInitNoStandard;

    DefaultRadio->setChecked(true);
    ParamsValid = true;
    UpdateControls();
    for (QRadioButton* radio : {DefaultRadio, StandardRadio, LutFileRadio, CsvRadio, DeviceRadio})
        connect(radio, &QRadioButton::clicked, this, &OrluneDlg::SlotRadioButtonGroupSwitched);
    return kInitSuccess;
}

void OrluneDlg::Uninit()
{
    if (m_operations == 0)
        PlotterWidget->Uninit();
}

void OrluneDlg::Destroy()
{
    if (m_operations == 0) {
        delete this;
        return;
    }
    m_abandoned = true;
    RemoteNodeMap = nullptr;
    blockSignals(true);
    hide();
    setParent(nullptr); // which the host may delete from here on
}

OrluneDlg::Operation::~Operation()
{
    if (--m_dialog.m_operations == 0 && m_dialog.m_abandoned)
        m_dialog.deleteLater();
}

PublishedTable::Snapshot OrluneDlg::AcquireLut() const
{
    return PlotterWidget->PublishedLut().Acquire();
}

bool OrluneDlg::CreateValidators()
{
    for (const ControlRow* row : kControlRows) {
        QIntValidator*& validator = this->*row->Validator;
        validator = new (std::nothrow) BoundedIntValidator(row->Typed.low, row->Typed.high, this);
        if (!validator) {
            DeleteValidators();
            return false;
        }
    }
    for (const ControlRow* row : kControlRows)
        (this->*row->Edit)->setValidator(this->*row->Validator);
    return true;
}

void OrluneDlg::DeleteValidators()
{
    for (const ControlRow* row : kControlRows) {
        delete (this->*row->Validator);
        this->*row->Validator = nullptr;
    }
}

void OrluneDlg::UpdateControls()
{
    const bool adjustable = LutSource != kCsv;
    for (const ControlRow* row : kControlRows) {
        (this->*row->Edit)->setEnabled(adjustable);
        if (row->Slider)
            (this->*row->Slider)->setEnabled(adjustable);
    }
    StandardCombo->setEnabled(LutSource == kStandard);
    DeviceRadio->setEnabled(IsLutSupported());
    WriteButton->setEnabled(IsLutSupported());
    LutFileNameLabel->setVisible(LutSource == kLutFile);
    CsvFileNameLabel->setVisible(LutSource == kCsv);
}

void OrluneDlg::showEvent(QShowEvent* event)
{
    SendStatus(MSG_DIALOG_SHOWN);
    QDialog::showEvent(event);
}

void OrluneDlg::hideEvent(QHideEvent* event)
{
    SendStatus(MSG_DIALOG_HIDDEN);
    QDialog::hideEvent(event);
}

void OrluneDlg::SendStatus(PluginMsgType type)
{
    PLUGIN_MSG message{};
    message.type = type;
    const Operation running(*this);
    emit SigDlgStatusChanged(message);
}

void OrluneDlg::ShowError(int code)
{
    if (code == kReported)
        return;
    const char* text = kUnknownError;
    for (const ErrorText& row : kErrorTexts) {
        if (row.code == code)
            text = row.text;
    }
    ShowBox(tr(text));
}

void OrluneDlg::ShowNodeFailure(const char* what)
{
    ShowBox(what ? FromPlainString(what) : tr(kUnknownError));
}

void OrluneDlg::ShowBox(const QString& text)
{
    if (!m_abandoned)
        QMessageBox::about(this, tr("Error"), text);
}

LutImage* OrluneDlg::GetLut()
{
    return CurrentImage = PlotterWidget->GetLut();
}

LutImage* OrluneDlg::GetBaseLut()
{
    return BaseImage = PlotterWidget->GetBaseLut();
}

LutImage* OrluneDlg::StampLut()
{
    GetLut();
    if (CurrentImage && ParamsValid)
        StampTrailer(*CurrentImage, Settings(), StandardName);
    return CurrentImage;
}

void OrluneDlg::on_objWriteLutButton_clicked()
{
    const Operation running(*this);
    const int code = SaveUserSet();
    if (code != kSuccess)
        ShowError(code);
}
