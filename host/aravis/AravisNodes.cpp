#include "host/aravis/AravisNodes.h"

#include <chrono>
#include <thread>

namespace host {

using GenICam_3_0::gcstring;

namespace {

constexpr std::chrono::milliseconds kCommandPatience(1000);
constexpr std::chrono::milliseconds kCommandPause(2);

GenApi_3_0::EAccessMode modeOf(ArvGcFeatureNode* node, GError** error)
{
    // The order matters: Aravis calls a node that is not implemented readable and writable.
    if (!arv_gc_feature_node_is_implemented(node, error))
        return GenApi_3_0::NI;
    if (!arv_gc_feature_node_is_available(node, error))
        return GenApi_3_0::NA;
    const bool locked = arv_gc_feature_node_is_locked(node, error);
    switch (arv_gc_feature_node_get_actual_access_mode(node)) {
    case ARV_GC_ACCESS_MODE_RO:
        return GenApi_3_0::RO;
    case ARV_GC_ACCESS_MODE_WO:
        return locked ? GenApi_3_0::NA : GenApi_3_0::WO;
    default:
        return locked ? GenApi_3_0::RO : GenApi_3_0::RW;
    }
}

std::int64_t minimumOf(ArvGcFeatureNode* node, GError** error)
{
    return arv_gc_integer_get_min(ARV_GC_INTEGER(node), error);
}

std::int64_t maximumOf(ArvGcFeatureNode* node, GError** error)
{
    return arv_gc_integer_get_max(ARV_GC_INTEGER(node), error);
}

// What the node's description says of it, or null.
ArvGcPropertyNode* property(ArvGcFeatureNode* node, std::initializer_list<ArvGcPropertyNodeType> types)
{
    for (ArvDomNode* child = arv_dom_node_get_first_child(ARV_DOM_NODE(node)); child;
         child = arv_dom_node_get_next_sibling(child)) {
        for (const ArvGcPropertyNodeType type : types) {
            if (ARV_IS_GC_PROPERTY_NODE(child) &&
                arv_gc_property_node_get_node_type(ARV_GC_PROPERTY_NODE(child)) == type)
                return ARV_GC_PROPERTY_NODE(child);
        }
    }
    return nullptr;
}

// A command's register holds the command's value until the camera is done. One that cannot be read tells
// nothing.
bool isDone(ArvGcFeatureNode* command, GError** error)
{
    ArvGcPropertyNode* const value = property(command, {ARV_GC_PROPERTY_NODE_TYPE_P_VALUE});
    ArvGcPropertyNode* const commandValue = property(
        command, {ARV_GC_PROPERTY_NODE_TYPE_COMMAND_VALUE, ARV_GC_PROPERTY_NODE_TYPE_P_COMMAND_VALUE});
    ArvGcNode* const target = value ? arv_gc_property_node_get_linked_node(value) : nullptr;
    if (!commandValue || !ARV_IS_GC_FEATURE_NODE(target) ||
        arv_gc_feature_node_get_actual_access_mode(ARV_GC_FEATURE_NODE(target)) == ARV_GC_ACCESS_MODE_WO)
        return true;
    const gint64 now = arv_gc_property_node_get_int64(value, error);
    return (error && *error) || now != arv_gc_property_node_get_int64(commandValue, error);
}

} // namespace

gcstring AravisNode::GetName(bool FullQualified) const
{
    return ((FullQualified ? "Std::" : "") + m_name).c_str();
}

GenApi_3_0::EAccessMode AravisNode::GetAccessMode() const
{
    return read(modeOf);
}

void AravisNode::checkWritable() const
{
    switch (GetAccessMode()) {
    case GenApi_3_0::NI:
        refuse("the camera does not implement this node");
    case GenApi_3_0::NA:
        refuse("the node is not available now");
    case GenApi_3_0::RO:
        refuse("the node is locked or read only");
    default:
        break;
    }
}

void AravisInteger::SetValue(std::int64_t value, bool verify)
{
    if (verify && (value < read(minimumOf) || value > read(maximumOf)))
        refuse(std::to_string(value) + " lies outside the limits");
    write(verify, [=](ArvGcFeatureNode* node, GError** error) {
        arv_gc_integer_set_value(ARV_GC_INTEGER(node), value, error);
    });
}

std::int64_t AravisInteger::GetValue(bool, bool)
{
    return read([](ArvGcFeatureNode* node, GError** error) {
        return arv_gc_integer_get_value(ARV_GC_INTEGER(node), error);
    });
}

void AravisBoolean::SetValue(bool value, bool verify)
{
    write(verify, [=](ArvGcFeatureNode* node, GError** error) {
        arv_gc_boolean_set_value(ARV_GC_BOOLEAN(node), value, error);
    });
}

bool AravisBoolean::GetValue(bool, bool) const
{
    return read([](ArvGcFeatureNode* node, GError** error) {
        return arv_gc_boolean_get_value(ARV_GC_BOOLEAN(node), error);
    });
}

void AravisEnumeration::SetIntValue(std::int64_t value, bool verify)
{
    write(verify, [=](ArvGcFeatureNode* node, GError** error) {
        arv_gc_enumeration_set_int_value(ARV_GC_ENUMERATION(node), value, error);
    });
}

std::int64_t AravisEnumeration::GetIntValue(bool, bool)
{
    return read([](ArvGcFeatureNode* node, GError** error) {
        return arv_gc_enumeration_get_int_value(ARV_GC_ENUMERATION(node), error);
    });
}

void AravisString::SetValue(const gcstring& value, bool verify)
{
    write(verify, [&](ArvGcFeatureNode* node, GError** error) {
        arv_gc_string_set_value(ARV_GC_STRING(node), value.c_str(), error);
    });
}

gcstring AravisString::GetValue(bool, bool)
{
    return read([](ArvGcFeatureNode* node, GError** error) {
        return gcstring(arv_gc_string_get_value(ARV_GC_STRING(node), error));
    });
}

void AravisCommand::Execute(bool verify)
{
    write(verify, [](ArvGcFeatureNode* node, GError** error) {
        arv_gc_command_execute(ARV_GC_COMMAND(node), error);
    });
    const auto end = std::chrono::steady_clock::now() + kCommandPatience;
    while (!IsDone(false) && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(kCommandPause);
}

bool AravisCommand::IsDone(bool)
{
    return read(isDone);
}

AravisRegister::AravisRegister(std::string name, Connection& connection, std::function<void(int)> afterWrite)
    : AravisNode(std::move(name), connection), m_afterWrite(std::move(afterWrite))
{
}

// Aravis fills up a short write with zeros.
void AravisRegister::checkTransfer(const void* buffer, std::int64_t length)
{
    const std::int64_t whole = GetLength();
    if (!buffer || length != whole)
        refuse("the register is transferred whole, in " + std::to_string(whole) + " bytes");
}

void AravisRegister::Set(const std::uint8_t* buffer, std::int64_t length, bool verify)
{
    checkTransfer(buffer, length);
    write(verify, [=](ArvGcFeatureNode* node, GError** error) {
        arv_gc_register_set(ARV_GC_REGISTER(node), buffer, guint64(length), error);
    });
    if (m_afterWrite)
        m_afterWrite(int(length));
}

void AravisRegister::Get(std::uint8_t* buffer, std::int64_t length, bool, bool)
{
    checkTransfer(buffer, length);
    read([=](ArvGcFeatureNode* node, GError** error) {
        arv_gc_register_get(ARV_GC_REGISTER(node), buffer, guint64(length), error);
    });
}

std::int64_t AravisRegister::GetLength()
{
    return read([](ArvGcFeatureNode* node, GError** error) {
        return std::int64_t(arv_gc_register_get_length(ARV_GC_REGISTER(node), error));
    });
}

void AravisRegister::poke(const std::uint8_t* buffer, std::int64_t length)
{
    checkTransfer(buffer, length);
    read([=](ArvGcFeatureNode* node, GError** error) {
        const guint64 address = arv_gc_register_get_address(ARV_GC_REGISTER(node), error);
        ArvDevice* const device = arv_gc_get_device(arv_gc_node_get_genicam(ARV_GC_NODE(node)));
        if (!*error)
            arv_device_write_memory(device, address, guint32(length), const_cast<std::uint8_t*>(buffer),
                                    error);
    });
}

AravisNodeMap::AravisNodeMap(Connection& connection, std::function<void(int)> afterLutWrite)
    : m_connection(connection), m_afterLutWrite(std::move(afterLutWrite))
{
    if (!dynamic_cast<GenApi_3_0::IInteger*>(AravisNodeMap::GetNode(kLock)))
        m_nodes[kLock] = std::make_unique<OwnLock>();
}

GenApi_3_0::INode* AravisNodeMap::GetNode(const gcstring& Name) const
{
    const std::string name = Name.c_str();
    const bool exists = m_connection.typeOf(name) != G_TYPE_INVALID;
    const auto known = m_nodes.find(name);
    if (known != m_nodes.end())
        return known->second.get();
    return exists ? (m_nodes[name] = make(name)).get() : nullptr;
}

std::unique_ptr<GenApi_3_0::INode> AravisNodeMap::make(const std::string& name) const
{
    const GType type = m_connection.typeOf(name);
    // Enumerations pass for integers and strings with Aravis, and value registers for registers.
    if (g_type_is_a(type, ARV_TYPE_GC_COMMAND))
        return std::make_unique<AravisCommand>(name, m_connection);
    if (g_type_is_a(type, ARV_TYPE_GC_BOOLEAN))
        return std::make_unique<AravisBoolean>(name, m_connection);
    if (g_type_is_a(type, ARV_TYPE_GC_ENUMERATION))
        return std::make_unique<AravisEnumeration>(name, m_connection);
    if (g_type_is_a(type, ARV_TYPE_GC_INTEGER))
        return std::make_unique<AravisInteger>(name, m_connection);
    if (g_type_is_a(type, ARV_TYPE_GC_STRING))
        return std::make_unique<AravisString>(name, m_connection);
    if (g_type_is_a(type, ARV_TYPE_GC_REGISTER))
        return std::make_unique<AravisRegister>(name, m_connection,
                                                name == kLut ? m_afterLutWrite : std::function<void(int)>());
    return std::make_unique<AravisNode>(name, m_connection);
}

AravisRegister& AravisNodeMap::lut() const
{
    auto* const node = dynamic_cast<AravisRegister*>(GetNode(kLut));
    if (!node || !GenApi_3_0::IsImplemented(node))
        Connection::refuse(kLut, "this camera has no LUT register");
    return *node;
}

void AravisNodeMap::setLock(bool on)
{
    dynamic_cast<GenApi_3_0::IInteger&>(*GetNode(kLock)).SetValue(on, false);
}

} // namespace host
