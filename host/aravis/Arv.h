// Aravis' header beside Qt's, in any order, and holders for what Aravis hands out.
#ifndef ORLUNE_HOST_ARAVIS_ARV_H
#define ORLUNE_HOST_ARAVIS_ARV_H

#include <memory>

// A word that Qt makes a keyword and GLib's headers use as a name.
#pragma push_macro("signals")
#undef signals
#include <arv.h>
#pragma pop_macro("signals")

namespace host {

struct Unref
{
    void operator()(gpointer object) const { g_object_unref(object); }
};

// One reference to a GObject.
template <class Object>
using Held = std::unique_ptr<Object, Unref>;

// Receives the failure of one call.
class ArvError
{
public:
    ArvError() = default;
    ~ArvError() { g_clear_error(&m_error); }
    ArvError(const ArvError&) = delete;
    ArvError& operator=(const ArvError&) = delete;

    GError** out() { return &m_error; }
    explicit operator bool() const { return m_error != nullptr; }
    const char* text() const { return m_error ? m_error->message : ""; }
    bool is(ArvDeviceError code) const { return g_error_matches(m_error, ARV_DEVICE_ERROR, code); }

private:
    GError* m_error = nullptr;
};

} // namespace host

#endif
