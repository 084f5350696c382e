#include "device/DeviceLut.h"

#include "lut/ResultCodes.h"

namespace orlune {

namespace {

constexpr char kLutValueAll[] = "LUTValueAll";
constexpr char kLutSelector[] = "LUTSelector";
constexpr char kLutEnable[] = "LUTEnable";
constexpr char kParamsLocked[] = "TLParamsLocked";
constexpr char kUserSetSelector[] = "UserSetSelector";
constexpr char kUserSetLoad[] = "UserSetLoad";
constexpr char kUserSetSave[] = "UserSetSave";
constexpr char kUserSetDefault[] = "UserSetDefault";

constexpr qint64 kFirstLut = 0;
constexpr qint64 kUserSet0 = 1;

} // namespace

int DeviceLut::ProbeLutSupport()
{
    LutSupported = false;
    DeviceLutKind = kNoWrite;

    bool hasRegister = false;
    if (IsNodeImplemented(kLutValueAll, hasRegister) != kSuccess)
        return kSetLutFailed;
    if (!hasRegister)
        return kSuccess;
    if (SetEnumValue(kLutSelector, kFirstLut, false) != kSuccess)
        return kSetLutFailed;
    bool hasEnable = false;
    if (IsNodeImplemented(kLutEnable, hasEnable) != kSuccess)
        return kSetLutFailed;
    LutSupported = true;
    DeviceLutKind = hasEnable ? kEnabledWrite : kBracketedWrite;
    return kSuccess;
}

int DeviceLut::IsParamsLocked(bool& locked)
{
    qint64 value = 0;
    const int code = GetIntegerValue(kParamsLocked, value);
    if (code == kSuccess)
        locked = value != 0;
    return code;
}

int DeviceLut::ReadDeviceLut()
{
    bool locked = false;
    int code = IsParamsLocked(locked);
    if (code != kSuccess)
        return code;

    if (locked)
        BeginDeviceAccess();
    code = OnUserSet(kUserSetLoad);
    if (locked)
        EndDeviceAccess();
    if (code != kSuccess)
        return code;

    if (DeviceLutKind != kBracketedWrite) {
        code = SetBooleanValue(kLutEnable, true, true);
        if (code != kSuccess)
            return code;
    }

    LutImage* current = GetLut();
    LutImage* base = GetBaseLut();
    if (!current || !base)
        return kInvalidParameter;
    *current = LutImage{};
    *base = LutImage{};
    code = ReadRegister(kLutValueAll, current);
    if (code == kSuccess)
        *base = *current;
    return code;
}

// Selects UserSet0 and runs a command on it.
int DeviceLut::OnUserSet(const char* command)
{
    qint64 selected = 0;
    int code = GetEnumValue(kUserSetSelector, selected);
    if (code == kSuccess && selected != kUserSet0)
        code = SetEnumValue(kUserSetSelector, kUserSet0, true);
    if (code == kSuccess)
        code = ExecuteCommand(command);
    return code;
}

int DeviceLut::ApplyLut()
{
    const LutImage* image = StampLut();
    if (!LutSupported)
        return kSuccess;

    if (DeviceLutKind == kEnabledWrite) {
        const int code = SetBooleanValue(kLutEnable, true, true);
        if (code != kSuccess) {
            ShowError(code);
            return code;
        }
        return WriteLut(image);
    }

    bool locked = false;
    int code = IsParamsLocked(locked);
    if (code != kSuccess) {
        ShowError(code);
        return code;
    }
    if (locked)
        BeginDeviceAccess();
    code = WriteLut(image);
    if (locked)
        EndDeviceAccess();
    return code;
}

// The box of a failed write stands while the bracket is open.
int DeviceLut::WriteLut(const LutImage* image)
{
    const int code = WriteRegister(kLutValueAll, image);
    if (code != kSuccess)
        ShowError(code);
    return code;
}

int DeviceLut::SaveUserSet()
{
    const int code = OnUserSet(kUserSetSave);
    if (code == kSuccess)
        SetEnumValue(kUserSetDefault, kUserSet0, true);
    return code;
}

} // namespace orlune
