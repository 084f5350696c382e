#include "host/camera/AccessFaults.h"

#include <stdexcept>

#include <QThread>

#include "genapi/GenApi.h"

namespace host {

void refuseAccess(const std::string& sentence)
{
    throw GenICam_3_0::GenericException(sentence.c_str(), "simulated camera", 0);
}

[[noreturn]] static void refuseUnimplemented(const std::string& node)
{
    refuseAccess("The node " + node + " is not implemented.");
}

void AccessFaults::arm(const AccessFault& fault)
{
    m_armed = AccessFault{m_count + fault.at, fault.kind};
}

QStringList AccessFaults::names(const QStringList& nodes)
{
    QStringList names;
    for (const char* name : {kUnplugged, kSlow, kWriteFails, kUserSetFails, kZeroLength}) {
        names << QString::fromLatin1(name);
    }
    for (const char* pattern : {kMissing, kWrongType, kNotImplemented}) {
        for (const QString& node : nodes) {
            names << QString::fromLatin1(pattern).arg(node);
        }
    }
    return names;
}

void AccessFaults::setSwitch(const QString& name, bool on)
{
    m_on.removeAll(name);
    if (on) {
        m_on << name;
    }
}

AccessFaults::Outcome AccessFaults::access(const std::string& node, NodeOperation operation, bool exists)
{
    ++m_count;
    if (m_observer) {
        m_observer(node, operation);
    }
    const Outcome struck = strikeArmed(node, operation, exists);
    return struck == Outcome::Works ? playSwitches(node, operation) : struck;
}

bool AccessFaults::canStrike(AccessFault::Kind kind, NodeOperation operation, bool exists)
{
    switch (kind) {
    case AccessFault::ThrowsGenericException:
    case AccessFault::ThrowsStdException:
    case AccessFault::ThrowsForeign:
        return true;
    case AccessFault::NodeAbsent:
    case AccessFault::WrongType:
        return operation == NodeOperation::Lookup && exists;
    case AccessFault::NotImplemented:
        return operation != NodeOperation::Lookup;
    case AccessFault::ZeroLength:
        return operation == NodeOperation::Length;
    }
    return false;
}

AccessFaults::Outcome AccessFaults::strikeArmed(const std::string& node, NodeOperation operation, bool exists)
{
    if (!m_armed || m_count < m_armed->at || !canStrike(m_armed->kind, operation, exists)) {
        return Outcome::Works;
    }
    const AccessFault::Kind kind = m_armed->kind;
    m_armed.reset();
    switch (kind) {
    case AccessFault::ThrowsGenericException:
        refuseAccess("The camera does not answer.");
    case AccessFault::ThrowsStdException:
        throw std::runtime_error("The camera's driver has failed.");
    case AccessFault::ThrowsForeign:
        throw int(operation);
    case AccessFault::NodeAbsent:
        return Outcome::Absent;
    case AccessFault::WrongType:
        return Outcome::WrongType;
    case AccessFault::NotImplemented:
        if (operation != NodeOperation::AccessMode) {
            refuseUnimplemented(node);
        }
        return Outcome::NotImplemented;
    case AccessFault::ZeroLength:
        return Outcome::ZeroLength;
    }
    return Outcome::Works;
}

AccessFaults::Outcome AccessFaults::playSwitches(const std::string& node, NodeOperation operation)
{
    constexpr int kSlowAccessMs = 20;
    if (m_on.isEmpty()) {
        return Outcome::Works;
    }
    const auto on = [&](const char* pattern) {
        const QString name = QString::fromLatin1(pattern);
        return isOn(name.contains(QLatin1String("%1")) ? name.arg(QString::fromStdString(node)) : name);
    };
    if (operation == NodeOperation::Lookup) {
        return on(kMissing) ? Outcome::Absent : on(kWrongType) ? Outcome::WrongType : Outcome::Works;
    }
    if (on(kSlow)) {
        QThread::msleep(kSlowAccessMs);
    }
    if (on(kUnplugged)) {
        refuseAccess("The camera is unplugged.");
    }
    if (on(kNotImplemented)) {
        if (operation != NodeOperation::AccessMode) {
            refuseUnimplemented(node);
        }
        return Outcome::NotImplemented;
    }
    if (operation == NodeOperation::Write && on(kWriteFails)) {
        setSwitch(QString::fromLatin1(kWriteFails), false);
        refuseAccess("The write to the node " + node + " has failed.");
    }
    if (operation == NodeOperation::Execute && on(kUserSetFails)) {
        refuseAccess("The command " + node + " has failed.");
    }
    return operation == NodeOperation::Length && on(kZeroLength) ? Outcome::ZeroLength : Outcome::Works;
}

} // namespace host
