#include "host/app/PluginModule.h"

#include <QDialog>
#include <QFileInfo>
#include <QLibrary>
#include <QTextCodec>

namespace host {

namespace {

constexpr std::uint32_t kInterfaceVersion = 0x10000;
constexpr std::int32_t kLanguageEnglish = 0;
constexpr std::int32_t kLanguageChinese = 1;

} // namespace

std::unique_ptr<PluginModule> PluginModule::load(const QString& path, QString* error)
{
    if (!QFileInfo(path).isFile()) {
        *error = QString("There is no plug-in module %1.").arg(path);
        return nullptr;
    }
    QLibrary library(path);
    library.setLoadHints(QLibrary::ResolveAllSymbolsHint);
    if (!library.load()) {
        *error = QString("%1 cannot be loaded as a plug-in module: %2").arg(path, library.errorString());
        return nullptr;
    }
    const auto create = reinterpret_cast<CreatePluginObjectFunction>(library.resolve("CreatePluginObject"));
    const auto destroy =
        reinterpret_cast<DestoryPluginObjectFunction>(library.resolve("DestoryPluginObject"));
    if (!create || !destroy) {
        *error = QString("%1 is a library, but no plug-in module: it has no function %2.")
                     .arg(path, create ? "DestoryPluginObject" : "CreatePluginObject");
        return nullptr;
    }
    auto module = std::make_unique<PluginModule>(create, destroy);
    const std::unique_ptr<IPlugin, DestoryPluginObjectFunction> probe(module->create(), destroy);
    if (!probe) {
        *error = QString("The plug-in module %1 gives no plug-in object.").arg(path);
        return nullptr;
    }
    if (probe->GetInterfaceVersion() != kInterfaceVersion) {
        *error = QString("The plug-in module %1 is for interface version 0x%2; this viewer has 0x%3.")
                     .arg(path)
                     .arg(probe->GetInterfaceVersion(), 0, 16)
                     .arg(kInterfaceVersion, 0, 16);
        return nullptr;
    }
    return module;
}

PluginObject::PluginObject(const PluginModule& module) : m_module(module), m_plugin(module.create())
{
    if (m_plugin)
        connect(m_plugin, SIGNAL(SigPluginMsg(PLUGIN_MSG)), this, SLOT(onPluginMessage(PLUGIN_MSG)));
}

PluginObject::~PluginObject()
{
    if (!m_plugin)
        return;
    m_running = false;
    m_plugin->UninitPlugin();
    m_module.destroy(m_plugin);
}

int PluginObject::start(GenApi_3_0::INodeMap* deviceMap, GenApi_3_0::INodeMap* remoteMap, bool chinese,
                        QWidget* parent)
{
    constexpr int kNoObject = -1;
    if (!m_plugin)
        return kNoObject;
    m_chinese = chinese;
    PluginInitParam param{};
    param.deviceInfoMap = deviceMap;
    param.remoteDeviceMap = remoteMap;
    param.languageId = chinese ? kLanguageChinese : kLanguageEnglish;
    param.parentWidget = parent;

    // The dialog has no operation of its own here; it is the window that its parent gains.
    const auto dialogs = [parent] {
        return parent->findChildren<QDialog*>(QString(), Qt::FindDirectChildrenOnly);
    };
    const QList<QDialog*> before = dialogs();
    // The plug-in sets the process's codec for its language; file names stay in the system's.
    QTextCodec* codec = QTextCodec::codecForLocale();
    const int code = m_plugin->InitPlugin(&param);
    QTextCodec::setCodecForLocale(codec);
    for (QDialog* dialog : dialogs()) {
        if (!before.contains(dialog))
            m_dialog = dialog;
    }
    m_running = code == 0;
    return code;
}

QString PluginObject::errorText(int code)
{
    return m_plugin ? text(m_plugin->GetErrorText(code)) : QString();
}

QString PluginObject::displayName()
{
    return m_plugin ? text(m_plugin->GetDisplayName()) : QString();
}

QDialog* PluginObject::dialog() const
{
    return m_running ? m_dialog.data() : nullptr;
}

void PluginObject::send(PluginMsgType type)
{
    if (!m_running)
        return;
    PLUGIN_MSG message{};
    message.type = type;
    m_plugin->SlotProcessDemoMsg(message);
}

void PluginObject::onPluginMessage(const PLUGIN_MSG& message)
{
    emit this->message(message.type);
}

QString PluginObject::text(const char* pluginString) const
{
    QTextCodec* codec = QTextCodec::codecForName(m_chinese ? "GB2312" : "ISO-8859-1");
    return codec ? codec->toUnicode(pluginString) : QString::fromLatin1(pluginString);
}

} // namespace host
