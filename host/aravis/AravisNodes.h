// Aravis' nodes under the interfaces of genapi/GenApi.h, found by name at each access.
//
// Aravis asks the camera for every value and keeps no access mode: here a write with Verify asks first
// whether the node is implemented, available and not locked, and a register is moved in its whole length or
// not at all. Every call but GetName throws as Connection::access does.
#ifndef ORLUNE_HOST_ARAVIS_ARAVISNODES_H
#define ORLUNE_HOST_ARAVIS_ARAVISNODES_H

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "genapi/GenApi.h"
#include "host/aravis/Connection.h"

namespace host {

class AravisNode : public GenApi_3_0::INode
{
public:
    AravisNode(std::string name, Connection& connection)
        : m_name(std::move(name)), m_connection(connection), m_type(connection.typeOf(m_name))
    {
    }

    GenICam_3_0::gcstring GetName(bool FullQualified) const override;
    GenApi_3_0::EAccessMode GetAccessMode() const override;

protected:
    // call(ArvGcFeatureNode*, GError**)
    template <class Call>
    auto read(Call call) const
    {
        return m_connection.access(m_name, m_type, call);
    }
    // The same after the check that Verify asks for.
    template <class Call>
    void write(bool verify, Call call) const
    {
        if (verify)
            checkWritable();
        m_connection.access(m_name, m_type, call);
    }
    [[noreturn]] void refuse(const std::string& reason) const { Connection::refuse(m_name, reason); }

private:
    void checkWritable() const;

    std::string m_name;
    Connection& m_connection;
    GType m_type;
};

// Any node with an integer value but an enumeration.
class AravisInteger : public AravisNode, public GenApi_3_0::IInteger
{
public:
    using AravisNode::AravisNode;
    void SetValue(std::int64_t value, bool verify) override;
    std::int64_t GetValue(bool verify, bool ignoreCache) override;
};

class AravisBoolean : public AravisNode, public GenApi_3_0::IBoolean
{
public:
    using AravisNode::AravisNode;
    void SetValue(bool value, bool verify) override;
    bool GetValue(bool verify, bool ignoreCache) const override;
};

class AravisEnumeration : public AravisNode, public GenApi_3_0::IEnumeration
{
public:
    using AravisNode::AravisNode;
    void SetIntValue(std::int64_t value, bool verify) override; // refuses what is no entry, verify or not
    std::int64_t GetIntValue(bool verify, bool ignoreCache) override;
};

class AravisString : public AravisNode, public GenApi_3_0::IString
{
public:
    using AravisNode::AravisNode;
    void SetValue(const GenICam_3_0::gcstring& value, bool verify) override;
    GenICam_3_0::gcstring GetValue(bool verify, bool ignoreCache) override;
};

class AravisCommand : public AravisNode, public GenApi_3_0::ICommand
{
public:
    using AravisNode::AravisNode;
    // Returns when the camera is done, or after a second with a camera that never says so.
    void Execute(bool verify) override;
    bool IsDone(bool verify) override;
};

class AravisRegister : public AravisNode, public GenApi_3_0::IRegister
{
public:
    // afterWrite is called with the number of bytes after each write that has arrived.
    AravisRegister(std::string name, Connection& connection, std::function<void(int)> afterWrite = {});
    void Set(const std::uint8_t* buffer, std::int64_t length, bool verify) override;
    void Get(std::uint8_t* buffer, std::int64_t length, bool verify, bool ignoreCache) override;
    std::int64_t GetLength() override;

    // Sets the bytes in the camera's memory, below the node and its locks.
    void poke(const std::uint8_t* buffer, std::int64_t length);

private:
    void checkTransfer(const void* buffer, std::int64_t length);

    std::function<void(int)> m_afterWrite;
};

class AravisNodeMap : public GenApi_3_0::INodeMap
{
public:
    static constexpr char kLut[] = "LUTValueAll";
    static constexpr char kLock[] = "TLParamsLocked";

    // afterLutWrite is called with the number of bytes after each write to the LUT register. A connected
    // camera.
    AravisNodeMap(Connection& connection, std::function<void(int)> afterLutWrite);

    // Throws a GenericException when the camera is lost.
    GenApi_3_0::INode* GetNode(const GenICam_3_0::gcstring& Name) const override;

    // Throws when the camera has none, and like a node.
    AravisRegister& lut() const;
    // Sets TLParamsLocked, the camera's or, where it has none, the map's own. Throws like a node.
    void setLock(bool on);

private:
    // TLParamsLocked of a camera without.
    class OwnLock : public GenApi_3_0::INode, public GenApi_3_0::IInteger
    {
    public:
        GenICam_3_0::gcstring GetName(bool) const override { return kLock; }
        GenApi_3_0::EAccessMode GetAccessMode() const override { return GenApi_3_0::RW; }
        void SetValue(std::int64_t value, bool) override { m_value = value; }
        std::int64_t GetValue(bool, bool) override { return m_value; }

    private:
        std::int64_t m_value = 0;
    };

    std::unique_ptr<GenApi_3_0::INode> make(const std::string& name) const;

    Connection& m_connection;
    std::function<void(int)> m_afterLutWrite;
    mutable std::map<std::string, std::unique_ptr<GenApi_3_0::INode>> m_nodes;
};

} // namespace host

#endif
