// Typed nodes over the simulated camera's memory, and the map that hands them out.
//
// Every call but GetName passes AccessFaults::access first. A write to a node that is not writable, a length
// other than the register's and a value outside an enumeration are refused by a GenericException, whether
// Verify is set or not: it is the camera that refuses.
#ifndef ORLUNE_HOST_CAMERA_SIMULATEDNODES_H
#define ORLUNE_HOST_CAMERA_SIMULATEDNODES_H

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>

#include <QStringList>

#include "genapi/GenApi.h"
#include "host/camera/AccessFaults.h"
#include "host/camera/RegisterMemory.h"

namespace host {

class SimulatedNode : public GenApi_3_0::INode
{
public:
    using Mode = std::function<GenApi_3_0::EAccessMode()>;

    SimulatedNode(std::string name, AccessFaults& faults, Mode mode);

    GenICam_3_0::gcstring GetName(bool FullQualified) const override;
    GenApi_3_0::EAccessMode GetAccessMode() const override;

protected:
    AccessFaults::Outcome enter(NodeOperation operation) const { return m_faults.access(m_name, operation); }
    // Enters the write, and refuses it when the node is not writable now.
    void enterWrite() const;
    const std::string& name() const { return m_name; }

private:
    std::string m_name;
    AccessFaults& m_faults;
    Mode m_mode;
};

// A value in one word of the memory.
class WordNode : public SimulatedNode
{
public:
    // May refuse a value by an exception; the memory then keeps the old one.
    using BeforeWrite = std::function<void(std::int64_t)>;

    WordNode(std::string name, AccessFaults& faults, Mode mode, RegisterMemory& memory, int address,
             BeforeWrite beforeWrite = {});

protected:
    std::int64_t readWord() const;
    void writeWord(std::int64_t value);

private:
    RegisterMemory& m_memory;
    int m_address;
    BeforeWrite m_beforeWrite;
};

class IntegerNode : public WordNode, public GenApi_3_0::IInteger
{
public:
    using WordNode::WordNode;
    void SetValue(std::int64_t value, bool) override { writeWord(value); }
    std::int64_t GetValue(bool, bool) override { return readWord(); }
};

class BooleanNode : public WordNode, public GenApi_3_0::IBoolean
{
public:
    using WordNode::WordNode;
    void SetValue(bool value, bool) override { writeWord(value); }
    bool GetValue(bool, bool) const override { return readWord() != 0; }
};

class EnumerationNode : public WordNode, public GenApi_3_0::IEnumeration
{
public:
    // Entries are the values 0 to count - 1.
    EnumerationNode(const std::string& name, AccessFaults& faults, Mode mode, RegisterMemory& memory,
                    int address, int count, BeforeWrite beforeWrite = {});
    void SetIntValue(std::int64_t value, bool) override { writeWord(value); }
    std::int64_t GetIntValue(bool, bool) override { return readWord(); }
};

// Zero-terminated text in a block of the memory; not writable.
class StringNode : public SimulatedNode, public GenApi_3_0::IString
{
public:
    StringNode(std::string name, AccessFaults& faults, RegisterMemory& memory, int address, int length);
    void SetValue(const GenICam_3_0::gcstring& value, bool) override;
    GenICam_3_0::gcstring GetValue(bool, bool) override;

private:
    RegisterMemory& m_memory;
    int m_address;
    int m_length;
};

class CommandNode : public SimulatedNode, public GenApi_3_0::ICommand
{
public:
    CommandNode(std::string name, AccessFaults& faults, std::function<void()> action);
    void Execute(bool) override;
    bool IsDone(bool) override; // always: Execute returns when all is done

private:
    std::function<void()> m_action;
};

// A block of the memory, whose address may depend on other nodes.
class RegisterNode : public SimulatedNode, public GenApi_3_0::IRegister
{
public:
    RegisterNode(std::string name, AccessFaults& faults, Mode mode, RegisterMemory& memory,
                 std::function<int()> address, int length, std::function<void()> afterWrite);
    void Set(const std::uint8_t* buffer, std::int64_t length, bool) override;
    void Get(std::uint8_t* buffer, std::int64_t length, bool, bool) override;
    std::int64_t GetLength() override;

private:
    void checkTransfer(const void* buffer, std::int64_t length) const;

    RegisterMemory& m_memory;
    std::function<int()> m_address;
    int m_length;
    std::function<void()> m_afterWrite;
};

class SimulatedNodeMap : public GenApi_3_0::INodeMap
{
public:
    explicit SimulatedNodeMap(AccessFaults& faults) : m_faults(faults) {}

    GenApi_3_0::INode* GetNode(const GenICam_3_0::gcstring& Name) const override;

    void add(std::unique_ptr<SimulatedNode> node);
    QStringList names() const;

private:
    struct Entry
    {
        std::unique_ptr<SimulatedNode> node;
        std::unique_ptr<SimulatedNode> wrongType;
    };

    AccessFaults& m_faults;
    std::map<std::string, Entry> m_entries;
};

// Modes of nodes that never change theirs.
inline GenApi_3_0::EAccessMode readWrite()
{
    return GenApi_3_0::RW;
}
inline GenApi_3_0::EAccessMode readOnly()
{
    return GenApi_3_0::RO;
}

} // namespace host

#endif
