// A module with a stub behind it, for hosts that have to look before they load.
#include "host/StubPlugin.h"

#define EXPORT extern "C" __attribute__((visibility("default")))

EXPORT IPlugin* CreatePluginObject()
{
    return new StubPlugin;
}

EXPORT void DestoryPluginObject(IPlugin* plugin)
{
    delete plugin;
}
