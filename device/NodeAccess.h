// Typed access to the camera's GenICam nodes, by name. Every operation looks its node up anew, makes one call
// on it and turns each failure into a code of lut/ResultCodes.h:
//
//   kNodeMissing       no node of that name, or one of another type (but see below)
//   kInvalidParameter  a null argument, a register without room for a table or too long to be one, no memory,
//                      or a node that is to be an enumeration and is of another type
//   kReported          the camera layer threw; the text went to ShowNodeFailure unless showMessage was false
//
// A failed operation leaves its out argument as it was. No exception leaves this class.
//
// Thread: the GUI thread. The node map is the host's.
#ifndef ORLUNE_DEVICE_NODEACCESS_H
#define ORLUNE_DEVICE_NODEACCESS_H

#include <QString>

#include "genapi/GenApi.h"
#include "lut/LutImage.h"

namespace orlune {

// A register of more bytes is no table: no buffer is made for it.
constexpr qint64 kMaxRegisterBytes = 64 * 1024 * 1024;

class NodeAccess
{
public:
    // The node, or null when the map lacks it. The one operation that passes on what the camera layer throws.
    GenApi_3_0::INode* GetNode(const char* name) const;

    // Moves a whole LUT register in one transfer, in the form that its length asks for (lut/RegisterImage.h).
    // A failed read leaves the image as it was.
    int WriteRegister(const char* name, const LutImage* image);
    int ReadRegister(const char* name, LutImage* image);

    int SetEnumValue(const char* name, qint64 value, bool showMessage);
    int GetEnumValue(const char* name, qint64& value);
    int GetIntegerValue(const char* name, qint64& value);
    int SetBooleanValue(const char* name, bool value, bool showMessage);
    // Fires the command and does not wait for its end.
    int ExecuteCommand(const char* name);

    // An absent node is an answer (false), not a failure. kInvalidParameter: empty name. kNodeMissing: the
    // camera layer threw, which is not shown.
    int IsNodeImplemented(const QString& name, bool& implemented);

protected:
    NodeAccess() = default;
    ~NodeAccess() = default;

    // Shows the text of an exception and returns when the user has seen it. Null: an exception without a
    // text.
    virtual void ShowNodeFailure(const char* what) = 0;

    GenApi_3_0::INodeMap* RemoteNodeMap = nullptr;

private:
    template <class Interface, class Call>
    int OnNode(const char* name, int wrongTypeCode, bool showMessage, Call call);
};

} // namespace orlune

#endif
