#include "plugin/OrlunePlugin.h"

#include <new>

#include <QCoreApplication>
#include <QTextCodec>

#include "editor/OrluneDlg.h"
#include "genapi/GenApi.h"
#include "lut/PlainString.h"

using orlune::FromPlainString;
using orlune::ToPlainString;

namespace {

constexpr int kChinese = 1;
constexpr std::uint32_t kInterfaceVersion = 0x10000;
constexpr char kChineseCatalogue[] = ":/OrlunePlugin_D08DDF08-B172-4e06-B9B3-22822888E027_zh.qm";

static_assert(int(kInitNoMemory) == int(kPluginNoMemory) &&
                  int(kInitProbeFailed) == int(kPluginProbeFailed) &&
                  int(kInitNoStandard) == int(kPluginNoStandard),
              "the dialog's results are handed on as they are");

struct PluginText
{
    int code;
    const char* text;
};

constexpr PluginText kPluginTexts[] = {
    {kPluginSuccess, QT_TRANSLATE_NOOP("QObject", "success")},
    {kPluginGeneralError, QT_TRANSLATE_NOOP("QObject", "General Error")},
    {kPluginNoMemory, QT_TRANSLATE_NOOP("QObject", "Out of memory")},
    {kPluginInvalidParam, QT_TRANSLATE_NOOP("QObject", "Invalid input param")},
    {kPluginProbeFailed, QT_TRANSLATE_NOOP("QObject", "Get xml value error")},
    {kPluginNoStandard,
     QT_TRANSLATE_NOOP("QObject", "The Lut File is missing, Please Reinstall the installation package")},
};

// The name that the device gives itself, or nothing: a camera whose name can't be read is a camera all the
// same.
QString DeviceDisplayName(GenApi_3_0::INodeMap* map)
{
    try {
        auto* name = map ? dynamic_cast<GenApi_3_0::IString*>(map->GetNode("DeviceDisplayName")) : nullptr;
        return name ? FromPlainString(name->GetValue(false, false).c_str()) : QString();
    } catch (...) {
        return QString();
    }
}

} // namespace

OrlunePlugin::OrlunePlugin()
    : m_pDlg(nullptr), m_stVersion{1, 1, 1907, 8091}, m_strName("Orlune"),
      m_strGuid("7B15CF6D-E59B-4a8a-9036-FAD8ADD13EFE")
{
}

OrlunePlugin::~OrlunePlugin() = default;

const char* OrlunePlugin::GetGuid()
{
    return m_strGuid.c_str();
}

const char* OrlunePlugin::GetName()
{
    return m_strName.c_str();
}

const char* OrlunePlugin::GetDisplayName()
{
    return m_strDisplayName.c_str();
}

const char* OrlunePlugin::GetDescription()
{
    return m_strDescription.c_str();
}

std::uint32_t OrlunePlugin::GetInterfaceVersion()
{
    return kInterfaceVersion;
}

PluginVersion OrlunePlugin::GetVersion()
{
    return m_stVersion;
}

bool OrlunePlugin::HasDialog()
{
    return true;
}

bool OrlunePlugin::IsDialogVisible()
{
    return m_pDlg && m_pDlg->isVisible();
}

bool OrlunePlugin::IsDialogHidden()
{
    return !m_pDlg || m_pDlg->isHidden();
}

const char* OrlunePlugin::GetErrorText(int nCode)
{
    m_strErrorText.clear();
    for (const PluginText& row : kPluginTexts) {
        if (row.code == nCode)
            m_strErrorText = ToPlainString(QObject::tr(row.text));
    }
    return m_strErrorText.c_str();
}

void OrlunePlugin::SlotProcessDemoMsg(const PLUGIN_MSG& stPluginMsg)
{
    if (!m_pDlg)
        return;
    if (stPluginMsg.type == MSG_SHOW_DIALOG) {
        if (m_pDlg->isMinimized())
            m_pDlg->showNormal();
        else
            m_pDlg->show();
    } else if (stPluginMsg.type == MSG_HIDE_DIALOG) {
        m_pDlg->hide();
    }
}

int OrlunePlugin::InitPlugin(PluginInitParam* pstParam)
{
    if (!pstParam || !pstParam->remoteDeviceMap || m_pDlg)
        return kPluginInvalidParam;
    try {
        return Start(pstParam);
    } catch (const std::bad_alloc&) { // no exception reaches the host
        DestroyDialog();
        return kPluginGeneralError;
    }
}

int OrlunePlugin::Start(PluginInitParam* pstParam)
{
    LoadLanguage(pstParam->languageId); // first: the dialog's texts are translated while it is built
    m_strDisplayName = ToPlainString(QObject::tr("Orlune Plugin"));
    m_strDescription =
        ToPlainString(QObject::tr("This plugin can create and adjust lut,can read and save lut."));
    int code = CreateDialog(pstParam);
    if (code != kPluginSuccess)
        return code;
    code = InitDialog();
    if (code != kPluginSuccess)
        return code;
    ConnectDialog();
    return kPluginSuccess;
}

void OrlunePlugin::UninitPlugin()
{
    UninitDialog();
    DestroyDialog();
}

void OrlunePlugin::ReleasePlugin()
{
    delete this;
}

void OrlunePlugin::LoadLanguage(int nLanguageId)
{
    if (nLanguageId == kChinese)
        LoadTranslator(QLatin1String(kChineseCatalogue));
}

void OrlunePlugin::LoadTranslator(const QString& strPath)
{
    QTextCodec* codec = QTextCodec::codecForName("GB2312");
    orlune::SetPlainStringCodec(codec);
    QTextCodec::setCodecForLocale(codec);
    const QString empty = QLatin1String("");
    if (m_objTranslator.load(strPath, empty, empty, empty))
        QCoreApplication::installTranslator(&m_objTranslator);
}

void OrlunePlugin::ConnectDialog()
{
    connect(m_pDlg, &OrluneDlg::SigDlgStatusChanged, this, &IPlugin::SigPluginMsg);
}

int OrlunePlugin::CreateDialog(PluginInitParam* pstParam)
{
    m_pDlg = new (std::nothrow) OrluneDlg(pstParam, pstParam->parentWidget);
    if (!m_pDlg)
        return kPluginGeneralError;
    // A host that deletes the parent first takes the dialog with it.
    connect(m_pDlg, &QObject::destroyed, this, [this](QObject* dialog) {
        if (m_pDlg == dialog)
            m_pDlg = nullptr;
    });
    m_pDlg->setWindowFlags(Qt::Dialog | Qt::WindowMinimizeButtonHint);
    const QString device = DeviceDisplayName(pstParam->deviceInfoMap);
    if (!device.isNull())
        m_pDlg->setWindowTitle(m_pDlg->windowTitle() + QLatin1String("  ") + device);
    return kPluginSuccess;
}

int OrlunePlugin::InitDialog()
{
    return m_pDlg->Init();
}

void OrlunePlugin::UninitDialog()
{
    if (m_pDlg)
        m_pDlg->Uninit();
}

void OrlunePlugin::DestroyDialog()
{
    if (m_pDlg)
        m_pDlg->Destroy();
    m_pDlg = nullptr;
}
