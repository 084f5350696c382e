#include "host/camera/SimulatedNodes.h"

#include <algorithm>

namespace host {

using GenICam_3_0::gcstring;

SimulatedNode::SimulatedNode(std::string name, AccessFaults& faults, Mode mode)
    : m_name(std::move(name)), m_faults(faults), m_mode(std::move(mode))
{
}

gcstring SimulatedNode::GetName(bool FullQualified) const
{
    return ((FullQualified ? "Std::" : "") + m_name).c_str();
}

GenApi_3_0::EAccessMode SimulatedNode::GetAccessMode() const
{
    return enter(NodeOperation::AccessMode) == AccessFaults::Outcome::NotImplemented ? GenApi_3_0::NI
                                                                                     : m_mode();
}

void SimulatedNode::enterWrite() const
{
    enter(NodeOperation::Write);
    const GenApi_3_0::EAccessMode mode = m_mode();
    if (mode != GenApi_3_0::RW && mode != GenApi_3_0::WO) {
        refuseAccess("The node " + m_name + " is not writable.");
    }
}

WordNode::WordNode(std::string name, AccessFaults& faults, Mode mode, RegisterMemory& memory, int address,
                   BeforeWrite beforeWrite)
    : SimulatedNode(std::move(name), faults, std::move(mode)), m_memory(memory), m_address(address),
      m_beforeWrite(std::move(beforeWrite))
{
}

std::int64_t WordNode::readWord() const
{
    enter(NodeOperation::Read);
    return m_memory.word(m_address);
}

void WordNode::writeWord(std::int64_t value)
{
    enterWrite();
    if (m_beforeWrite) {
        m_beforeWrite(value);
    }
    m_memory.setWord(m_address, static_cast<std::int32_t>(value));
}

EnumerationNode::EnumerationNode(const std::string& name, AccessFaults& faults, Mode mode,
                                 RegisterMemory& memory, int address, int count, BeforeWrite beforeWrite)
    : WordNode(name, faults, std::move(mode), memory, address,
               [name, count, beforeWrite = std::move(beforeWrite)](std::int64_t value) {
                   if (value < 0 || value >= count) {
                       refuseAccess("The value " + std::to_string(value) + " is no entry of the node " +
                                    name + ".");
                   }
                   if (beforeWrite) {
                       beforeWrite(value);
                   }
               })
{
}

StringNode::StringNode(std::string name, AccessFaults& faults, RegisterMemory& memory, int address,
                       int length)
    : SimulatedNode(std::move(name), faults, readOnly), m_memory(memory), m_address(address), m_length(length)
{
}

void StringNode::SetValue(const gcstring&, bool)
{
    enterWrite();
}

gcstring StringNode::GetValue(bool, bool)
{
    enter(NodeOperation::Read);
    return m_memory.read(m_address, m_length).constData(); // a QByteArray ends in a zero
}

CommandNode::CommandNode(std::string name, AccessFaults& faults, std::function<void()> action)
    : SimulatedNode(std::move(name), faults, readWrite), m_action(std::move(action))
{
}

void CommandNode::Execute(bool)
{
    enter(NodeOperation::Execute);
    m_action();
}

bool CommandNode::IsDone(bool)
{
    enter(NodeOperation::Read);
    return true;
}

RegisterNode::RegisterNode(std::string name, AccessFaults& faults, Mode mode, RegisterMemory& memory,
                           std::function<int()> address, int length, std::function<void()> afterWrite)
    : SimulatedNode(std::move(name), faults, std::move(mode)), m_memory(memory),
      m_address(std::move(address)), m_length(length), m_afterWrite(std::move(afterWrite))
{
}

void RegisterNode::checkTransfer(const void* buffer, std::int64_t length) const
{
    if (!buffer || length != m_length) {
        refuseAccess("The register " + name() + " is transferred whole, in " + std::to_string(m_length) +
                     " bytes.");
    }
}

void RegisterNode::Set(const std::uint8_t* buffer, std::int64_t length, bool)
{
    enterWrite();
    checkTransfer(buffer, length);
    m_memory.write(m_address(), QByteArray(reinterpret_cast<const char*>(buffer), m_length));
    m_afterWrite();
}

void RegisterNode::Get(std::uint8_t* buffer, std::int64_t length, bool, bool)
{
    enter(NodeOperation::Read);
    checkTransfer(buffer, length);
    const QByteArray bytes = m_memory.read(m_address(), m_length);
    std::copy(bytes.begin(), bytes.end(), buffer);
}

std::int64_t RegisterNode::GetLength()
{
    return enter(NodeOperation::Length) == AccessFaults::Outcome::ZeroLength ? 0 : m_length;
}

GenApi_3_0::INode* SimulatedNodeMap::GetNode(const gcstring& Name) const
{
    const std::string name = Name.c_str();
    const auto found = m_entries.find(name);
    const bool exists = found != m_entries.end();
    const AccessFaults::Outcome outcome = m_faults.access(name, NodeOperation::Lookup, exists);
    if (!exists || outcome == AccessFaults::Outcome::Absent) {
        return nullptr;
    }
    return outcome == AccessFaults::Outcome::WrongType ? found->second.wrongType.get()
                                                       : found->second.node.get();
}

void SimulatedNodeMap::add(std::unique_ptr<SimulatedNode> node)
{
    const std::string name = node->GetName(false).c_str();
    m_entries[name] = Entry{std::move(node), std::make_unique<SimulatedNode>(name, m_faults, readWrite)};
}

QStringList SimulatedNodeMap::names() const
{
    QStringList names;
    for (const auto& entry : m_entries) {
        names << QString::fromStdString(entry.first);
    }
    return names;
}

} // namespace host
