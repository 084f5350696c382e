// What a host sees of the module: load Orlune.plx into the running Qt application, resolve the two exported
// functions, make one object a camera, and drive it through this class.
//
//   CreatePluginObject -> InitPlugin -> (messages, frames) -> UninitPlugin -> DestoryPluginObject
//
// Everything runs on the GUI thread but ProcessFrame, which may come from any thread of the host's between a
// successful InitPlugin and UninitPlugin. Connect to the signal by text, SIGNAL(SigPluginMsg(PLUGIN_MSG)):
// the module exports no meta-object symbol for a connection by address.
//
// Needs C++11 and QtCore's headers; nothing to link.
#ifndef ORLUNE_PLUGIN_IPLUGIN_H
#define ORLUNE_PLUGIN_IPLUGIN_H

#include <QObject>

#include "HostRecords.h"

class IPlugin : public QObject
{
    Q_OBJECT

public:
    // The order of these fourteen is part of the binary contract.

public Q_SLOTS:
    // MSG_SHOW_DIALOG shows the dialog (restores it when minimised), MSG_HIDE_DIALOG hides it; any other
    // type, and every type while no dialog exists, does nothing. MSG_DIALOG_SHOWN or MSG_DIALOG_HIDDEN comes
    // back through SigPluginMsg inside this call when the visibility changes.
    virtual void SlotProcessDemoMsg(const PLUGIN_MSG& stPluginMsg) = 0;

public:
    // The strings belong to the object and are never null. They are Latin-1, or GB2312 with languageId 1;
    // they stay valid until they change (InitPlugin, the next GetErrorText) or the object goes.
    virtual const char* GetGuid() = 0;
    virtual const char* GetName() = 0;
    virtual const char* GetDisplayName() = 0; // empty before InitPlugin
    virtual const char* GetDescription() = 0; // empty before InitPlugin

    virtual std::uint32_t GetInterfaceVersion() = 0; // 0x10000
    virtual PluginVersion GetVersion() = 0;          // 1, 1, 1907, 8091

    virtual bool HasDialog() = 0;       // always true
    virtual bool IsDialogVisible() = 0; // false while no dialog exists
    virtual bool IsDialogHidden() = 0;  // true while no dialog exists

    // The text of a result code of this class (0 to -5) in the plug-in's language; empty for every other
    // code.
    virtual const char* GetErrorText(int nCode) = 0;

    // Builds the dialog for a camera. 0: it runs. -1: no memory for the dialog; the object is as it was
    // created, but for the language. -2: no memory for the validators, -4: the probe of the camera's LUT
    // nodes failed, -5: the standard curves are missing; the dialog then exists unconnected until
    // UninitPlugin. -3: null record or map, or the plug-in is initialised already; nothing was changed.
    virtual int InitPlugin(PluginInitParam* pstParam) = 0;

    // Deletes the dialog. Does nothing while there is none.
    virtual void UninitPlugin() = 0;

    // Maps one frame through the current table when the camera has no LUT of its own and stage is 1;
    // otherwise returns 0 and touches nothing. -3: a null pointer, a pixel format that is not handled, a
    // dimension below 1 or more than 2^31 - 1 pixels, or no memory; no pixel was written and processed is
    // unchanged. Takes no lock, and maps the whole frame by one table that the editor held between two
    // changes.
    virtual int ProcessFrame(FrameIn* pstIn, FrameOut* pstOut, int nStage, FrameResult* pstResult) = 0;

Q_SIGNALS:
    // The PluginMsgType codes from 10 up, delivered inside the plug-in's operation that sends them.
    void SigPluginMsg(const PLUGIN_MSG& stPluginMsg);
};

// The signatures of the exported functions "CreatePluginObject" and "DestoryPluginObject" (spelled so). The
// first gives a new object or null; the second deletes it, and takes null.
typedef IPlugin* (*CreatePluginObjectFunction)();
typedef void (*DestoryPluginObjectFunction)(IPlugin*);

#endif
