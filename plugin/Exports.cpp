// The two functions that the host resolves; the module shows nothing else.
#include <new>

#include "plugin/OrlunePlugin.h"

#if defined(_WIN32)
#define ORLUNE_EXPORT extern "C" __declspec(dllexport)
#else
#define ORLUNE_EXPORT extern "C" __attribute__((visibility("default")))
#endif

ORLUNE_EXPORT IPlugin* CreatePluginObject()
{
    try {
        return new (std::nothrow) OrlunePlugin;
    } catch (const std::bad_alloc&) { // what the object itself holds
        return nullptr;
    }
}

ORLUNE_EXPORT void DestoryPluginObject(IPlugin* pPlugin)
{
    delete pPlugin;
}
