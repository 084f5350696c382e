// The transfer of the table between the editor and the camera: the probe at start, the write after every
// change, the read of the table that the camera keeps in its user set, and storing it there.
//
// Thread: the GUI thread. Codes: lut/ResultCodes.h.
#ifndef ORLUNE_DEVICE_DEVICELUT_H
#define ORLUNE_DEVICE_DEVICELUT_H

#include "device/NodeAccess.h"

namespace orlune {

class DeviceLut : public NodeAccess
{
public:
    // Finds out what the camera offers, and selects its LUT 0. kSetLutFailed: a node could not be asked or
    // set; the camera then counts as one without a LUT. Shows nothing.
    int ProbeLutSupport();

    // Whether the camera has a LUT register. False before the probe. Any thread, once the probe is over.
    bool IsLutSupported() const { return LutSupported; }

    // Whether a running acquisition holds the camera's parameters. Shows nothing but an exception's text.
    int IsParamsLocked(bool& locked);

    // Loads the camera's user set UserSet0 and reads its table into both images. Returns a failure's code for
    // ShowError; shows nothing itself but an exception's text. Until the read the images are untouched; a
    // failed read leaves both zero.
    int ReadDeviceLut();

    // Stamps the current image and writes it to the camera, if that has a LUT. Has shown every failure when
    // it returns.
    int ApplyLut();

    // Stores the camera's state, its table included, in UserSet0 and makes that the set it starts with.
    // Returns a failure's code for ShowError. That the start set could not be changed is no failure.
    int SaveUserSet();

protected:
    DeviceLut() = default;
    ~DeviceLut() = default;

    virtual void ShowError(int code) = 0;
    // The two ends of a bracket around an access while the parameters are locked. When the begin returns, the
    // host has freed the camera.
    virtual void BeginDeviceAccess() = 0;
    virtual void EndDeviceAccess() = 0;
    // The two images, each null once the curve view has released them. The first is stamped on the way.
    virtual LutImage* StampLut() = 0;
    virtual LutImage* GetLut() = 0;
    virtual LutImage* GetBaseLut() = 0;

private:
    enum WritePath {
        kBracketedWrite = 0, // a register without LUTEnable: written inside the bracket
        kEnabledWrite = 1,   // with LUTEnable: that is set, then the register is written; no bracket
        kNoWrite = 3         // no register: frames are mapped in software
    };

    int WriteLut(const LutImage* image);
    int OnUserSet(const char* command);

    bool LutSupported = false;
    int DeviceLutKind = kNoWrite;
};

} // namespace orlune

#endif
