// The gate that every access to a node of the simulated camera passes: it counts, tells an observer, and
// plays faults.
//
// An access is one call: a lookup in a node map, or an operation of a node's interfaces; one table write is
// three (GetNode, GetLength, Set). GetName is not counted.
//
// Thread: the GUI thread, where all node access comes from.
#ifndef ORLUNE_HOST_CAMERA_ACCESSFAULTS_H
#define ORLUNE_HOST_CAMERA_ACCESSFAULTS_H

#include <functional>
#include <optional>
#include <string>

#include <QString>
#include <QStringList>

namespace host {

enum class NodeOperation { Lookup, AccessMode, Length, Read, Write, Execute };

// One failure of one access. It strikes the first access from the at-th on (1 is the next one) that can fail
// this way, once.
struct AccessFault
{
    enum Kind {
        ThrowsGenericException, // strikes any access
        ThrowsStdException,     // strikes any access
        ThrowsForeign,          // strikes any access, with what is no std::exception
        NodeAbsent,             // strikes the lookup of a node that exists
        WrongType,              // the same: the node handed out has none of the value interfaces
        NotImplemented,         // strikes any operation of a node: GetAccessMode gives NI, others throw
        ZeroLength              // strikes GetLength
    };
    int at = 1;
    Kind kind = ThrowsGenericException;
};

class AccessFaults
{
public:
    using Observer = std::function<void(const std::string& node, NodeOperation operation)>;

    // Whether an access to a node that exists, or not, can fail this way.
    static bool canStrike(AccessFault::Kind kind, NodeOperation operation, bool exists);

    // Accesses made since the object was made.
    int count() const { return m_count; }
    // Called for each access before it takes place.
    void setObserver(Observer observer) { m_observer = std::move(observer); }

    // Arms one fault in place of the one armed before. It is disarmed when it has struck.
    void arm(const AccessFault& fault);
    void disarm() { m_armed.reset(); }
    bool isArmed() const { return m_armed.has_value(); }

    // Faults with a switch, by name. The node's name takes the place of %1.
    static constexpr const char* kUnplugged = "unplugged";    // every operation of a node throws
    static constexpr const char* kSlow = "slow";              // every operation of a node takes 20 ms
    static constexpr const char* kWriteFails = "write-fails"; // the next write throws and clears the switch
    static constexpr const char* kUserSetFails = "user-set-fails"; // commands throw
    static constexpr const char* kZeroLength = "zero-length";      // a register's length reads as 0
    static constexpr const char* kMissing = "missing:%1";
    static constexpr const char* kWrongType = "wrong-type:%1";
    static constexpr const char* kNotImplemented = "not-implemented:%1";

    // Names of all switches for a camera with these nodes.
    static QStringList names(const QStringList& nodes);

    void setSwitch(const QString& name, bool on);
    bool isOn(const QString& name) const { return m_on.contains(name); }
    const QStringList& switchesOn() const { return m_on; }

    // What the caller of access has to do, where it is more than to go on.
    enum class Outcome { Works, Absent, WrongType, NotImplemented, ZeroLength };

    // Called at the start of each access. Throws what the faults in force demand. The result is Absent or
    // WrongType only for a lookup of an existing node, NotImplemented only for AccessMode, ZeroLength only
    // for Length.
    Outcome access(const std::string& node, NodeOperation operation, bool exists = true);

private:
    Outcome strikeArmed(const std::string& node, NodeOperation operation, bool exists);
    Outcome playSwitches(const std::string& node, NodeOperation operation);

    int m_count = 0;
    Observer m_observer;
    std::optional<AccessFault> m_armed; // its "at" counts from the start
    QStringList m_on;
};

// Throws the GenericException of a camera that refuses an access, with this sentence.
[[noreturn]] void refuseAccess(const std::string& sentence);

} // namespace host

#endif
