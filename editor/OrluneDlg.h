// The editor window: it takes up a base table from one of five sources, reshapes it by five settings, and
// keeps the camera, the curve and the controls in step. The settings live in the curve view; edits and
// sliders mirror them.
//
// The window's widgets, with their names and texts, stand in OrluneDlg.ui. The four .cpp files follow what
// the user does: OrluneDlg.cpp builds, shows and reports; OrluneDlgSources.cpp takes up tables;
// OrluneDlgEditing.cpp changes settings; OrluneDlgFiles.cpp reads and saves files.
//
// Thread: the GUI thread, but for AcquireLut and IsLutSupported. Every failure is shown to the user once;
// codes are those of lut/ResultCodes.h.
#ifndef ORLUNE_EDITOR_ORLUNEDLG_H
#define ORLUNE_EDITOR_ORLUNEDLG_H

#include <QDialog>
#include <QMap>

#include "device/DeviceLut.h"
#include "lut/PublishedTable.h"
#include "plugin/HostRecords.h"

class CIntSlider;
class Plotter;
class QComboBox;
class QIntValidator;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class Ui_OrluneDlg;

// Results of OrluneDlg::Init; the plug-in has a text for each.
enum InitResult : int {
    kInitSuccess = 0,
    kInitNoMemory = -2,    // a validator could not be allocated
    kInitProbeFailed = -4, // the camera's LUT nodes could not be probed
    kInitNoStandard = -5   // no standard curves, or not the identity among them
};

class OrluneDlg : public QDialog, public orlune::DeviceLut
{
    Q_OBJECT

public:
    // Builds the window; touches neither the camera nor a file but the optional icon. The record is read, not
    // kept.
    OrluneDlg(PluginInitParam* initParam, QWidget* parent);
    ~OrluneDlg() override;

    // Brings the dialog to life on the Default source, with untouched settings. Writes nothing to the camera
    // and shows nothing. Once; an InitResult. After a failure the dialog only waits for Uninit.
    int Init();
    // Releases the curve view's tables. The last call before Destroy.
    void Uninit();
    // Deletes the dialog. While a box is open or the host handles a message, the dialog only goes out of
    // sight, leaves camera and parent alone and is deleted when its operation is over; Uninit then does
    // nothing either.
    void Destroy();

    // The newest complete table, for a frame; null entries before Init and after Uninit. Any thread.
    orlune::PublishedTable::Snapshot AcquireLut() const;

    // The box of a result code, in the user's language. kReported opens none, an unknown code says so.
    void ShowError(int code) override;

signals:
    void SigDlgStatusChanged(const PLUGIN_MSG& stPluginMsg);

public slots:
    void SlotRadioButtonGroupSwitched();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

    // The window icon, when the application directory brings one in resource/oem/images/logo.png.
    virtual void SetOemIcon();
    virtual void ShowRangeError(int low, int high);
    virtual void ShowRangeDifferenceError(int low, int high);

private slots:
    // Wired by name.
    void on_objSaveLutButton_clicked();
    void on_objWriteLutButton_clicked();
    void on_objGammaLineEdit_editingFinished();
    void on_objBrightnessLineEdit_editingFinished();
    void on_objContrastLineEdit_editingFinished();
    void on_objGammaSlider_valueChanged(int nValue);
    void on_objBrightnessSlider_valueChanged(int nValue);
    void on_objContrastSlider_valueChanged(int nValue);
    void on_objLutRangeMinEdit_editingFinished();
    void on_objLutRangeMaxEdit_editingFinished();
    void on_objStandardComboBox_currentIndexChanged(QString text);

private:
    // Stands in every operation during which the host can act, by an event loop or a message.
    class Operation
    {
    public:
        explicit Operation(OrluneDlg& dialog) : m_dialog(dialog) { ++m_dialog.m_operations; }
        ~Operation();
        Operation(const Operation&) = delete;
        Operation& operator=(const Operation&) = delete;

    private:
        OrluneDlg& m_dialog;
    };

    enum Source { kStandard = 0, kDevice = 1, kLutFile = 2, kCsv = 3, kDefault = 4 };

    // One setting and everything that shows or changes it.
    struct ControlRow
    {
        QLineEdit* OrluneDlg::*Edit;
        CIntSlider* OrluneDlg::*Slider; // null for the two ends of the range
        QIntValidator* OrluneDlg::*Validator;
        qint32 (Plotter::*Get)() const;
        void (Plotter::*Set)(qint32);
        void (Plotter::*Store)(qint32);
        qint32 orlune::LutSettings::*Setting;
        orlune::ControlLimits Typed;    // what the validator lets through
        orlune::ControlLimits Accepted; // what the setting takes
        void (OrluneDlg::*Reject)(int low, int high);
    };
    static const ControlRow kGammaRow, kBrightnessRow, kContrastRow, kRangeMinRow, kRangeMaxRow;
    static const ControlRow* const kControlRows[5];

    // Building, showing
    bool CreateValidators();
    void DeleteValidators();
    void UpdateControls();
    void ShowBox(const QString& text);
    void SendStatus(PluginMsgType type);

    // Camera
    void ShowNodeFailure(const char* what) override;
    void BeginDeviceAccess() override { SendStatus(MSG_DEVICE_ACCESS_BEGIN); }
    void EndDeviceAccess() override { SendStatus(MSG_DEVICE_ACCESS_END); }
    orlune::LutImage* StampLut() override;
    orlune::LutImage* GetLut() override;
    orlune::LutImage* GetBaseLut() override;

    // Sources: each gives 0, a code for ShowError, or kReported
    int LoadSource(int source);
    int LoadStandardSource();
    int LoadDeviceSource();
    int LoadLutFileSource();
    int LoadCsvSource();
    int ApplyLoadedLut();
    int LoadStandardCatalogue();
    bool StandardFileExists(const QString& name) const;
    int TakeStandardLut(const QString& name);
    void FallBackToDefault();
    void ResetParams(const QString& name);
    void ResetToDefault();
    void RestoreFromTrailer();
    bool SelectStandard(const QString& name);

    // Editing
    void ApplyEdit(const ControlRow& row);
    void ApplySlider(const ControlRow& row, int value);
    bool Accepts(const ControlRow& row, int value) const;
    orlune::LutSettings Settings() const;
    void ShowSetting(const ControlRow& row, int value);
    void SetSliderSilently(const ControlRow& row, int value);
    void RestoreControl(const ControlRow& row);

    // Files
    QString FileDialogDirectory() const;
    QString AskForFile(const QString& filter) const; // empty when cancelled
    QString AskForSaveFile() const;                  // likewise
    int ReadLutFile(const QString& path);
    int ReadBaseLutFile(const QString& path);
    int ReadCsvFile(const QString& path);
    int WriteLutFile(const QString& path);
    int WriteCsvFile(const QString& path);

    Ui_OrluneDlg* Ui; // owned; the widgets below are its, and go with Qt's parent tree
    Plotter* PlotterWidget;
    QLineEdit* GammaEdit;
    QLineEdit* BrightnessEdit;
    QLineEdit* ContrastEdit;
    QLineEdit* RangeMinEdit;
    QLineEdit* RangeMaxEdit;
    QIntValidator* BrightnessValidator = nullptr; // the five are owned
    QIntValidator* ContrastValidator = nullptr;
    QIntValidator* GammaValidator = nullptr;
    QIntValidator* RangeMinValidator = nullptr;
    QIntValidator* RangeMaxValidator = nullptr;
    QRadioButton* DefaultRadio;
    QRadioButton* StandardRadio;
    QRadioButton* DeviceRadio;
    QRadioButton* LutFileRadio;
    QRadioButton* CsvRadio;
    QLabel* LutFileNameLabel;
    QLabel* CsvFileNameLabel;
    CIntSlider* GammaSlider;
    CIntSlider* ContrastSlider;
    CIntSlider* BrightnessSlider;
    QPushButton* WriteButton;
    QPushButton* SaveButton;
    QComboBox* StandardCombo;
    qint32 LutSource = kDefault;
    bool ParamsValid = false; // settings and standard curve describe the current table, so a trailer can
    orlune::LutImage* CurrentImage = nullptr; // the curve view's, asked anew before each use
    orlune::LutImage* BaseImage = nullptr;
    QString StandardName;
    QMap<QString, QString> StandardLutMap; // name to canonical path
    int m_operations = 0;                  // that run, one inside the other
    bool m_abandoned = false;              // to be deleted after them
};

#endif
