// The plug-in object: what stands behind IPlugin. It owns the dialog, the language and the frame path.
//
// The class has no meta-object of its own: its texts are translated in the context "QObject", and it reports
// itself as an IPlugin.
#ifndef ORLUNE_PLUGIN_ORLUNEPLUGIN_H
#define ORLUNE_PLUGIN_ORLUNEPLUGIN_H

#include <string>

#include <QTranslator>

#include "plugin/IPlugin.h"

class OrluneDlg;

// Results of IPlugin's operations; GetErrorText has the text of each.
enum PluginResult : int {
    kPluginSuccess = 0,
    kPluginGeneralError = -1, // no dialog object, or not all that it needs
    kPluginNoMemory = -2,
    kPluginInvalidParam = -3,
    kPluginProbeFailed = -4,
    kPluginNoStandard = -5
};

class OrlunePlugin : public IPlugin
{
public:
    OrlunePlugin();
    // Leaves the dialog alone: without UninitPlugin it goes with its parent. Takes the translator out of the
    // application; the process's text codecs stay as they are.
    ~OrlunePlugin() override;

    void SlotProcessDemoMsg(const PLUGIN_MSG& stPluginMsg) override;
    const char* GetGuid() override;
    const char* GetName() override;
    const char* GetDisplayName() override;
    const char* GetDescription() override;
    std::uint32_t GetInterfaceVersion() override;
    PluginVersion GetVersion() override;
    bool HasDialog() override;
    bool IsDialogVisible() override;
    bool IsDialogHidden() override;
    const char* GetErrorText(int nCode) override;
    int InitPlugin(PluginInitParam* pstParam) override;
    void UninitPlugin() override;
    int ProcessFrame(FrameIn* pstIn, FrameOut* pstOut, int nStage, FrameResult* pstResult) override;

    // Deletes the object, as DestoryPluginObject does.
    virtual void ReleasePlugin();

    // Language 1 is Chinese; every other leaves translator and codecs alone.
    virtual void LoadLanguage(int nLanguageId);
    // Sets the process's locale codec and the plain-string codec to GB2312, then loads and installs a
    // catalogue; when that can't be loaded, texts stay English and the codecs stay set.
    virtual void LoadTranslator(const QString& strPath);

    virtual void ConnectDialog();
    // kPluginSuccess or kPluginGeneralError. A device name that can't be read is left out of the title.
    virtual int CreateDialog(PluginInitParam* pstParam);
    virtual int InitDialog();
    virtual void UninitDialog();
    virtual void DestroyDialog();

    // Significant bits of an unpacked 8-, 10- or 12-bit mono or Bayer format, or -1 with a line in the debug
    // log. Any thread, like all that follow.
    virtual int GetPixelBits(unsigned nCode);
    // dst[i] = src[i * (nSrcCount / nDstCount)] >> nShift: the table is sampled, not averaged.
    virtual void ResampleLut(const std::int32_t* src, int nSrcCount, std::int32_t* dst, int nDstCount,
                             int nShift);
    // Map nWidth times nHeight pixels through a table and keep an entry's low word or byte; src and dst may
    // be one buffer. A 16-bit pixel beyond the table's entries maps like the last one. kPluginInvalidParam: a
    // null pointer, a dimension below 1, or more pixels than a signed 32-bit count; nothing was written.
    virtual int ApplyLut16(const std::uint16_t* src, std::uint16_t* dst, int nWidth, int nHeight,
                           const std::int32_t* table, int nEntries);
    virtual int ApplyLut8(const std::uint8_t* src, std::uint8_t* dst, int nWidth, int nHeight,
                          const std::int32_t* table);

private:
    int Start(PluginInitParam* pstParam);
    bool SampleLut(std::int32_t* table, int nEntries, int nShift);

    OrluneDlg* m_pDlg; // owned between CreateDialog and DestroyDialog
    QTranslator m_objTranslator;
    PluginVersion m_stVersion;
    std::string m_strName;
    std::string m_strGuid;
    std::string m_strDisplayName;
    std::string m_strDescription;
    std::string m_strErrorText; // what GetErrorText gave out last
};

#endif
