// A camera of plain values behind the node interfaces: it logs every access, and each node can be taken away,
// given another type or made to fail.
#ifndef ORLUNE_TESTS_SUPPORT_FAKECAMERA_H
#define ORLUNE_TESTS_SUPPORT_FAKECAMERA_H

#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>

#include <QByteArray>
#include <QStringList>

#include "genapi/GenApi.h"

class FakeCamera : public GenApi_3_0::INodeMap
{
public:
    enum class Failure { None, Camera, Standard, Foreign };

    struct Node : virtual GenApi_3_0::INode
    {
        GenApi_3_0::EAccessMode GetAccessMode() const override { return touch("GetAccessMode"), mode; }
        GenICam_3_0::gcstring GetName(bool) const override { return name.c_str(); }
        void touch(const char* operation, bool verify = false, bool ignoreCache = false) const
        {
            const QString entry = QString::fromStdString(name) + '.' + operation;
            if (!entry.endsWith("GetLength") && !entry.endsWith("GetAccessMode"))
                camera->log << entry + (verify ? "+verify" : "") + (ignoreCache ? "+nocache" : "");
            fail(failure);
        }

        FakeCamera* camera = nullptr;
        std::string name;
        GenApi_3_0::EAccessMode mode = GenApi_3_0::RW;
        Failure failure = Failure::None;
    };

    struct Integer : Node, GenApi_3_0::IInteger
    {
        void SetValue(std::int64_t v, bool) override { touch("SetValue"), value = v; }
        std::int64_t GetValue(bool verify, bool ignoreCache) override
        {
            return touch("GetValue", verify, ignoreCache), value;
        }
        std::int64_t value = 0;
    };

    struct Boolean : Node, GenApi_3_0::IBoolean
    {
        void SetValue(bool v, bool verify) override { touch(v ? "SetTrue" : "SetFalse", verify), value = v; }
        bool GetValue(bool, bool) const override { return value; }
        bool value = false;
    };

    struct String : Node, GenApi_3_0::IString
    {
        void SetValue(const GenICam_3_0::gcstring&, bool) override {}
        GenICam_3_0::gcstring GetValue(bool, bool) override { return touch("GetValue"), value.c_str(); }
        std::string value;
    };

    struct Command : Node, GenApi_3_0::ICommand
    {
        void Execute(bool verify) override { touch("Execute", verify), action(); }
        bool IsDone(bool) override { return true; }
        std::function<void()> action = [] {};
    };

    struct Enumeration : Node, GenApi_3_0::IEnumeration
    {
        void SetIntValue(std::int64_t v, bool verify) override { touch("SetIntValue", verify), value = v; }
        std::int64_t GetIntValue(bool verify, bool ignoreCache) override
        {
            return touch("GetIntValue", verify, ignoreCache), value;
        }
        std::int64_t value = 0;
    };

    struct Register : Node, GenApi_3_0::IRegister
    {
        void Set(const std::uint8_t* buffer, std::int64_t length, bool verify) override
        {
            touch("Set", verify);
            bytes = QByteArray(reinterpret_cast<const char*>(buffer), int(length));
        }
        void Get(std::uint8_t* buffer, std::int64_t length, bool verify, bool ignoreCache) override
        {
            touch("Get", verify, ignoreCache);
            memcpy(buffer, bytes.constData(), size_t(length));
        }
        std::int64_t GetLength() override
        {
            touch("GetLength");
            return claimedLength < 0 ? bytes.size() : claimedLength;
        }
        QByteArray bytes;
        qint64 claimedLength = -1;
    };

    // The nodes of a camera with a whole register, if any; LUTEnable where asked for.
    explicit FakeCamera(bool hasEnable = false, bool hasRegister = true)
    {
        if (hasRegister)
            add<Register>("LUTValueAll").bytes = QByteArray(16424, '\0');
        add<Enumeration>("LUTSelector").value = 7;
        if (hasEnable)
            add<Boolean>("LUTEnable");
        add<Integer>("TLParamsLocked");
        add<Enumeration>("UserSetSelector");
        add<Command>("UserSetLoad");
        add<Command>("UserSetSave");
        add<Enumeration>("UserSetDefault");
    }

    template <class Type>
    Type& add(const char* name)
    {
        auto node = std::make_unique<Type>();
        node->camera = this;
        node->name = name;
        Type& added = *node;
        m_nodes[name] = std::move(node);
        return added;
    }
    void remove(const char* name) { m_nodes.erase(name); }
    template <class Type>
    Type& node(const char* name) const
    {
        return dynamic_cast<Type&>(*m_nodes.at(name));
    }
    Node& any(const char* name) const { return *m_nodes.at(name); }

    GenApi_3_0::INode* GetNode(const GenICam_3_0::gcstring& name) const override
    {
        fail(mapFailure);
        const auto found = m_nodes.find(name.c_str());
        return found == m_nodes.end() ? nullptr : found->second.get();
    }

    // "Node.Operation", with "+verify" and "+nocache" behind it when these were asked for; lengths are not
    // logged.
    QStringList log;
    Failure mapFailure = Failure::None;
    static constexpr char kFailureText[] = "the cable is out";

private:
    static void fail(Failure failure)
    {
        if (failure == Failure::Camera)
            throw GenICam_3_0::GenericException(kFailureText, __FILE__, __LINE__);
        if (failure == Failure::Standard)
            throw std::runtime_error(kFailureText);
        if (failure == Failure::Foreign)
            throw 42;
    }

    std::map<std::string, std::unique_ptr<Node>> m_nodes;
};

#endif
