// The plug-in for the targets with widgets, without a screen, and silent.
#ifndef ORLUNE_TESTS_FUZZ_PLUGINWINDOW_H
#define ORLUNE_TESTS_FUZZ_PLUGINWINDOW_H

#include <QApplication>
#include <QWidget>

#include "plugin/OrlunePlugin.h"
#include "support/FakeCamera.h"

namespace fuzz {

inline void startApplication()
{
    static int argc = 1;
    static char name[] = "fuzz";
    static char* argv[] = {name, nullptr};
    if (qApp)
        return;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    new QApplication(argc, argv); // as long as the process
}

struct PluginWindow
{
    explicit PluginWindow(FakeCamera& camera)
    {
        PluginInitParam param{};
        param.remoteDeviceMap = &camera;
        param.parentWidget = &parent;
        code = plugin.InitPlugin(&param);
    }

    QWidget parent;
    OrlunePlugin plugin;
    int code; // of its start
};

} // namespace fuzz

#endif
