// The camera layer as Orlune uses it: the GenICam GenApi 3.0 interfaces under their published names, with the
// operations that the module calls and no others. A host implements them over its own camera library; the
// module finds a node by name in the map and cross-casts it with dynamic_cast to the interface of its type.
//
// Ownership: the host owns maps and nodes; the module keeps a map's address while the plug-in runs and a
// node's address only inside one operation. Thread: all calls come from the GUI thread. Errors: every
// operation may throw GenICam_3_0::GenericException (or another std::exception), whose what() the user is
// shown.
//
// Stands alone, needs C++11 and no library.
#ifndef ORLUNE_GENAPI_GENAPI_H
#define ORLUNE_GENAPI_GENAPI_H

#include <cstddef>
#include <cstdint>
#include <exception>
#include <string>

// Type information has to be one and the same on both sides of the module's border, whatever visibility the
// translation unit is compiled with: run-time casts and exceptions cross it.
#if defined(__GNUC__)
#define ORLUNE_GENAPI_SHARED __attribute__((visibility("default")))
#else
#define ORLUNE_GENAPI_SHARED
#endif

namespace GenICam_3_0 {

// A zero-terminated string of 8-bit characters.
class ORLUNE_GENAPI_SHARED gcstring
{
public:
    gcstring() {}
    gcstring(const char* pc) : m_text(pc ? pc : "") {}
    const char* c_str() const { return m_text.c_str(); }
    operator const char*() const { return c_str(); }
    std::size_t length() const { return m_text.length(); }
    bool empty() const { return m_text.empty(); }
    bool operator==(const gcstring& other) const { return m_text == other.m_text; }
    bool operator!=(const gcstring& other) const { return m_text != other.m_text; }

private:
    std::string m_text;
};

// A failure of the camera or of the access to it. what() is a sentence for the user.
class ORLUNE_GENAPI_SHARED GenericException : public std::exception
{
public:
    GenericException(const char* description, const char* sourceFileName, unsigned int sourceLine)
        : m_description(description ? description : ""), m_file(sourceFileName ? sourceFileName : ""),
          m_line(sourceLine)
    {
    }
    const char* what() const noexcept override { return m_description.c_str(); }
    const char* GetDescription() const noexcept { return m_description.c_str(); }
    const char* GetSourceFileName() const noexcept { return m_file.c_str(); }
    unsigned int GetSourceLine() const noexcept { return m_line; }

private:
    std::string m_description;
    std::string m_file;
    unsigned int m_line;
};

} // namespace GenICam_3_0

namespace GenApi_3_0 {

enum EAccessMode {
    NI, // not implemented
    NA, // implemented, not available now
    WO, // write only
    RO, // read only
    RW  // read and write
};

struct ORLUNE_GENAPI_SHARED IBase
{
    virtual EAccessMode GetAccessMode() const = 0;
    virtual ~IBase() {}
};

inline bool IsImplemented(EAccessMode AccessMode)
{
    return AccessMode != NI;
}

inline bool IsImplemented(const IBase* p)
{
    return p && IsImplemented(p->GetAccessMode());
}

// What every node is; the value interfaces below are reached from it by dynamic_cast.
struct ORLUNE_GENAPI_SHARED INode : virtual IBase
{
    virtual GenICam_3_0::gcstring GetName(bool FullQualified = false) const = 0;
};

// Verify asks for a check of limits and access mode before a write, and of the value after a read.
// IgnoreCache asks for a read from the device even when a cached value is at hand.

struct ORLUNE_GENAPI_SHARED IInteger : virtual IBase
{
    virtual void SetValue(std::int64_t Value, bool Verify = true) = 0;
    virtual std::int64_t GetValue(bool Verify = false, bool IgnoreCache = false) = 0;
};

struct ORLUNE_GENAPI_SHARED IBoolean : virtual IBase
{
    virtual void SetValue(bool Value, bool Verify = true) = 0;
    virtual bool GetValue(bool Verify = false, bool IgnoreCache = false) const = 0;
};

struct ORLUNE_GENAPI_SHARED IString : virtual IBase
{
    virtual void SetValue(const GenICam_3_0::gcstring& Value, bool Verify = true) = 0;
    virtual GenICam_3_0::gcstring GetValue(bool Verify = false, bool IgnoreCache = false) = 0;
};

struct ORLUNE_GENAPI_SHARED ICommand : virtual IBase
{
    virtual void Execute(bool Verify = true) = 0;
    virtual bool IsDone(bool Verify = true) = 0;
};

// Values are the integers of the entries, never their symbolic names.
struct ORLUNE_GENAPI_SHARED IEnumeration : virtual IBase
{
    virtual void SetIntValue(std::int64_t Value, bool Verify = true) = 0;
    virtual std::int64_t GetIntValue(bool Verify = false, bool IgnoreCache = false) = 0;
};

// Set and Get move exactly Length bytes; GetLength is the register's length in bytes.
struct ORLUNE_GENAPI_SHARED IRegister : virtual IBase
{
    virtual void Set(const std::uint8_t* pBuffer, std::int64_t Length, bool Verify = true) = 0;
    virtual void Get(std::uint8_t* pBuffer, std::int64_t Length, bool Verify = false,
                     bool IgnoreCache = false) = 0;
    virtual std::int64_t GetLength() = 0;
};

struct ORLUNE_GENAPI_SHARED INodeMap
{
    // The node of that name, owned by the map, or null when the map has none.
    virtual INode* GetNode(const GenICam_3_0::gcstring& Name) const = 0;
    virtual ~INodeMap() {}
};

} // namespace GenApi_3_0

#endif
