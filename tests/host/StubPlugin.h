// A plug-in object without an editor that writes down what the host does with it.
#ifndef ORLUNE_TESTS_HOST_STUBPLUGIN_H
#define ORLUNE_TESTS_HOST_STUBPLUGIN_H

#include <atomic>

#include <QStringList>
#include <QTextCodec>

#include "plugin/IPlugin.h"

class StubPlugin : public IPlugin
{
public:
    // What all stubs of a test share; the frame thread touches the atomic members only.
    struct Log
    {
        QStringList calls;
        int initResult = 0;
        int languageId = -1;
        std::atomic<bool> running{false};
        std::atomic<int> frames{0};
        std::atomic<int> framesOutOfTime{0}; // before InitPlugin or after UninitPlugin
    };
    static Log& log()
    {
        static Log log;
        return log;
    }

    StubPlugin() { log().calls += "create"; }
    ~StubPlugin() override { log().calls += "destroy"; }

    void SlotProcessDemoMsg(const PLUGIN_MSG& message) override
    {
        log().calls += QString("message %1").arg(message.type);
    }
    const char* GetGuid() override { return ""; }
    const char* GetName() override { return "Stub"; }
    const char* GetDisplayName() override { return "Stub"; }
    const char* GetDescription() override { return ""; }
    std::uint32_t GetInterfaceVersion() override { return STUB_INTERFACE_VERSION; }
    PluginVersion GetVersion() override { return {}; }
    bool HasDialog() override { return false; }
    bool IsDialogVisible() override { return false; }
    bool IsDialogHidden() override { return true; }
    const char* GetErrorText(int) override { return log().languageId == 1 ? "\xC4\xDA" : "caf\xE9"; }
    int InitPlugin(PluginInitParam* param) override
    {
        log().calls += "init";
        log().languageId = param->languageId;
        if (param->languageId == 1)
            QTextCodec::setCodecForLocale(QTextCodec::codecForName("GB2312"));
        log().running = log().initResult == 0;
        return log().initResult;
    }
    void UninitPlugin() override
    {
        log().calls += "uninit";
        log().running = false;
    }
    // Inverts 8-bit frames.
    int ProcessFrame(FrameIn* in, FrameOut* out, int, FrameResult* result) override
    {
        ++log().frames;
        if (!log().running)
            ++log().framesOutOfTime;
        const auto* source = static_cast<const std::uint8_t*>(in->data);
        auto* target = static_cast<std::uint8_t*>(out->data);
        for (int i = 0; i < out->width * out->height; ++i)
            target[i] = std::uint8_t(255 - source[i]);
        result->processed = 1;
        return 0;
    }
};

#endif
