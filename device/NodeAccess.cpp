#include "device/NodeAccess.h"

#include <memory>
#include <new>

#include "lut/PlainString.h"
#include "lut/RegisterImage.h"
#include "lut/ResultCodes.h"

namespace orlune {

namespace {

std::unique_ptr<uchar[]> MakeTransferBuffer(qint64 length)
{
    if (length <= kTrailerBytes || length > kMaxRegisterBytes)
        return nullptr;
    return std::unique_ptr<uchar[]>(new (std::nothrow) uchar[std::size_t(length)]());
}

} // namespace

GenApi_3_0::INode* NodeAccess::GetNode(const char* name) const
{
    return RemoteNodeMap ? RemoteNodeMap->GetNode(GenICam_3_0::gcstring(name)) : nullptr;
}

// The one road to a node's value. The box of a failure stands while the exception is handled; buffers of the
// call are gone by then.
template <class Interface, class Call>
int NodeAccess::OnNode(const char* name, int wrongTypeCode, bool showMessage, Call call)
{
    if (!name)
        return kInvalidParameter;
    try {
        GenApi_3_0::INode* node = GetNode(name);
        if (!node)
            return kNodeMissing;
        auto* value = dynamic_cast<Interface*>(node);
        return value ? call(*value) : wrongTypeCode;
    } catch (const std::exception& failure) { // the camera layer's own class is one
        if (showMessage)
            ShowNodeFailure(failure.what());
    } catch (...) { // what a host throws must not pass through Qt's event loop
        if (showMessage)
            ShowNodeFailure(nullptr);
    }
    return kReported;
}

int NodeAccess::WriteRegister(const char* name, const LutImage* image)
{
    if (!image)
        return kInvalidParameter;
    return OnNode<GenApi_3_0::IRegister>(name, kNodeMissing, true,
                                         [image](GenApi_3_0::IRegister& node) -> int {
                                             const qint64 length = node.GetLength();
                                             const auto buffer = MakeTransferBuffer(length);
                                             if (!buffer || !TableToRegister(*image, buffer.get(), length))
                                                 return kInvalidParameter;
                                             node.Set(buffer.get(), length, true);
                                             return kSuccess;
                                         });
}

int NodeAccess::ReadRegister(const char* name, LutImage* image)
{
    if (!image)
        return kInvalidParameter;
    return OnNode<GenApi_3_0::IRegister>(
        name, kNodeMissing, true, [image](GenApi_3_0::IRegister& node) -> int {
            const qint64 length = node.GetLength();
            const auto buffer = MakeTransferBuffer(length);
            if (!buffer)
                return kInvalidParameter;
            node.Get(buffer.get(), length, false, false);
            return RegisterToTable(buffer.get(), length, *image) ? kSuccess : kInvalidParameter;
        });
}

int NodeAccess::SetEnumValue(const char* name, qint64 value, bool showMessage)
{
    return OnNode<GenApi_3_0::IEnumeration>(name, kInvalidParameter, showMessage,
                                            [value](GenApi_3_0::IEnumeration& node) {
                                                node.SetIntValue(value, true);
                                                return kSuccess;
                                            });
}

int NodeAccess::GetEnumValue(const char* name, qint64& value)
{
    return OnNode<GenApi_3_0::IEnumeration>(name, kInvalidParameter, true,
                                            [&value](GenApi_3_0::IEnumeration& node) {
                                                value = node.GetIntValue(false, false);
                                                return kSuccess;
                                            });
}

int NodeAccess::GetIntegerValue(const char* name, qint64& value)
{
    return OnNode<GenApi_3_0::IInteger>(name, kNodeMissing, true, [&value](GenApi_3_0::IInteger& node) {
        value = node.GetValue(false, false);
        return kSuccess;
    });
}

int NodeAccess::SetBooleanValue(const char* name, bool value, bool showMessage)
{
    return OnNode<GenApi_3_0::IBoolean>(name, kNodeMissing, showMessage, [value](GenApi_3_0::IBoolean& node) {
        node.SetValue(value, true);
        return kSuccess;
    });
}

int NodeAccess::ExecuteCommand(const char* name)
{
    return OnNode<GenApi_3_0::ICommand>(name, kNodeMissing, true, [](GenApi_3_0::ICommand& node) {
        node.Execute(true);
        return kSuccess;
    });
}

int NodeAccess::IsNodeImplemented(const QString& name, bool& implemented)
{
    if (name.isEmpty())
        return kInvalidParameter;
    try {
        const GenApi_3_0::INode* node = GetNode(ToPlainString(name).c_str());
        implemented = GenApi_3_0::IsImplemented(node);
        return kSuccess;
    } catch (...) {
        return kNodeMissing;
    }
}

} // namespace orlune
