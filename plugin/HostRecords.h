// The records that host and plug-in exchange: a binary contract, 64-bit, little-endian, packed to 4 bytes.
// Bytes named "reserved" are neither read nor relied on by the plug-in; in records that it sends they are
// zero.
//
// Stands alone, needs C++11 and no library.
#ifndef ORLUNE_PLUGIN_HOSTRECORDS_H
#define ORLUNE_PLUGIN_HOSTRECORDS_H

#include <cstddef>
#include <cstdint>

class QWidget;
namespace GenApi_3_0 {
struct INodeMap;
}

// Values of PLUGIN_MSG::type.
enum PluginMsgType : std::int32_t {
    MSG_SHOW_DIALOG = 1,          // host to plug-in: show the dialog
    MSG_HIDE_DIALOG = 2,          // host to plug-in: hide it
    MSG_DEVICE_ACCESS_END = 10,   // plug-in to host: the camera access is over
    MSG_DEVICE_ACCESS_BEGIN = 11, // plug-in to host: parameters are locked and an access follows; free the
                                  // camera before the signal's handler returns
    MSG_DIALOG_HIDDEN = 1001,     // plug-in to host: the dialog is being hidden
    MSG_DIALOG_SHOWN = 1002       // plug-in to host: the dialog is being shown
};

#pragma pack(push, 4)

// Valid while InitPlugin runs. The plug-in keeps the map pointers and the parent, not the record;
// remoteDeviceMap and parentWidget have to outlive UninitPlugin.
struct PluginInitParam
{
    std::uint8_t reserved0[16];
    GenApi_3_0::INodeMap* deviceInfoMap; // map with DeviceDisplayName; may be null
    std::uint8_t reserved24[8];
    GenApi_3_0::INodeMap* remoteDeviceMap; // map of the camera's features; not null
    std::uint8_t reserved40[76];
    std::int32_t languageId; // 1 is Chinese, everything else English
    QWidget* parentWidget;   // parent of the dialog
};

struct PluginMsgBlock
{
    std::uint32_t words[5];
    std::uint64_t longWord;
    std::uint8_t bytes[64];
};

struct PLUGIN_MSG
{
    std::int32_t type; // PluginMsgType; the only field that the plug-in reads or sets
    PluginMsgBlock first;
    PluginMsgBlock second;
    std::uint8_t reserved[64];
};

// A frame to be mapped. Only pixelFormat (a PFNC code) and data are read.
struct FrameIn
{
    std::uint8_t reserved0[4];
    std::uint32_t pixelFormat;
    std::uint8_t reserved8[12];
    void* data; // width times height pixels of the output record, without gaps at line ends
    std::uint8_t reserved28[64];
};

// Where the mapped frame goes; its dimensions rule.
struct FrameOut
{
    std::uint8_t reserved0[8];
    std::int32_t width;  // pixels
    std::int32_t height; // lines
    std::uint8_t reserved16[4];
    void* data; // may be the input's data: the frame is then mapped in place
    std::uint8_t reserved28[64];
};

struct FrameResult
{
    std::uint8_t reserved0[4];
    std::uint8_t processed; // set to 1 after a frame was mapped, otherwise left alone
    std::uint8_t reserved5[3];
};

struct PluginVersion
{
    std::uint16_t major_, minor_, patch, build;
};

#pragma pack(pop)

static_assert(sizeof(void*) == 8, "the records are those of a 64-bit process");
static_assert(offsetof(PluginInitParam, deviceInfoMap) == 16, "contract");
static_assert(offsetof(PluginInitParam, remoteDeviceMap) == 32, "contract");
static_assert(offsetof(PluginInitParam, languageId) == 116, "contract");
static_assert(offsetof(PluginInitParam, parentWidget) == 120, "contract");
static_assert(offsetof(PluginMsgBlock, longWord) == 20, "contract");
static_assert(offsetof(PluginMsgBlock, bytes) == 28, "contract");
static_assert(sizeof(PluginMsgBlock) == 92, "contract");
static_assert(offsetof(PLUGIN_MSG, type) == 0, "contract");
static_assert(offsetof(PLUGIN_MSG, first) == 4, "contract");
static_assert(offsetof(PLUGIN_MSG, second) == 96, "contract");
static_assert(offsetof(PLUGIN_MSG, reserved) == 188, "contract");
static_assert(sizeof(PLUGIN_MSG) == 252, "contract");
static_assert(offsetof(FrameIn, pixelFormat) == 4, "contract");
static_assert(offsetof(FrameIn, data) == 20, "contract");
static_assert(sizeof(FrameIn) == sizeof(PluginMsgBlock), "contract");
static_assert(offsetof(FrameOut, width) == 8, "contract");
static_assert(offsetof(FrameOut, height) == 12, "contract");
static_assert(offsetof(FrameOut, data) == 20, "contract");
static_assert(sizeof(FrameOut) == sizeof(PluginMsgBlock), "contract");
static_assert(offsetof(FrameResult, processed) == 4, "contract");
static_assert(sizeof(PluginVersion) == 8, "contract");

#endif
