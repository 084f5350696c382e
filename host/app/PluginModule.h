// The plug-in's module, and one plug-in object at work.
#ifndef ORLUNE_HOST_APP_PLUGINMODULE_H
#define ORLUNE_HOST_APP_PLUGINMODULE_H

#include <memory>

#include <QObject>
#include <QPointer>
#include <QString>

#include "genapi/GenApi.h"
#include "plugin/HostRecords.h"
#include "plugin/IPlugin.h"

class QDialog;

namespace host {

// The two functions of a module. It stays loaded until the process ends: a translator or a resource of its
// may live as long.
class PluginModule
{
public:
    PluginModule(CreatePluginObjectFunction create, DestoryPluginObjectFunction destroy)
        : m_create(create), m_destroy(destroy)
    {
    }

    // Null with one sentence in *error when the file is missing, is no library, or is not this kind of
    // plug-in.
    static std::unique_ptr<PluginModule> load(const QString& path, QString* error);

    IPlugin* create() const { return m_create(); }
    void destroy(IPlugin* plugin) const { m_destroy(plugin); }

private:
    CreatePluginObjectFunction m_create;
    DestoryPluginObjectFunction m_destroy;
};

// A plug-in object from CreatePluginObject to DestoryPluginObject. GUI thread.
class PluginObject : public QObject
{
    Q_OBJECT

public:
    explicit PluginObject(const PluginModule& module);
    ~PluginObject() override;

    // Starts the plug-in on a camera's maps; both and the parent have to outlive this object. Gives
    // InitPlugin's code; after a failure the object is of no further use but for errorText.
    int start(GenApi_3_0::INodeMap* deviceMap, GenApi_3_0::INodeMap* remoteMap, bool chinese,
              QWidget* parent);

    QString errorText(int code);
    QString displayName();

    // Null unless the plug-in was started.
    IPlugin* running() const { return m_running ? m_plugin : nullptr; }
    QDialog* dialog() const;

    void send(PluginMsgType type);

signals:
    // Emitted inside the plug-in's operation: what must be done before it goes on is done in the slot.
    void message(int type);

private slots:
    void onPluginMessage(const PLUGIN_MSG& message);

private:
    QString text(const char* pluginString) const;

    const PluginModule& m_module;
    IPlugin* m_plugin;
    QPointer<QDialog> m_dialog;
    bool m_running = false;
    bool m_chinese = false;
};

} // namespace host

#endif
