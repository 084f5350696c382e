// Takes the place of a program's allocation functions: while an action is watched, one of its requests can be
// refused. Belongs into one file of a program.
#ifndef ORLUNE_TESTS_SUPPORT_ALLOCATIONS_H
#define ORLUNE_TESTS_SUPPORT_ALLOCATIONS_H

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<bool> g_watched{false};
bool (*g_isOurs)(const void* caller) = nullptr; // whose requests count; null: everybody's
int g_asked = 0;
int g_refused = -1; // the request that gets nothing
std::size_t g_refusedBytes = 0;
int g_alive = 0; // watched ones that were not given back yet

struct alignas(16) Header
{
    bool isWatched;
};

void* take(std::size_t size, const void* caller)
{
    const bool isWatched = g_watched && (!g_isOurs || g_isOurs(caller));
    if (isWatched && g_asked++ == g_refused) {
        g_refusedBytes = size;
        return nullptr;
    }
    auto* header = static_cast<Header*>(std::malloc(sizeof(Header) + size));
    if (!header)
        std::abort();
    header->isWatched = isWatched;
    g_alive += isWatched;
    return header + 1;
}

void* takeOrThrow(std::size_t size, const void* caller)
{
    void* memory = take(size, caller);
    if (!memory)
        throw std::bad_alloc();
    return memory;
}

void giveBack(void* memory)
{
    if (!memory)
        return;
    Header* header = static_cast<Header*>(memory) - 1;
    g_alive -= header->isWatched;
    std::free(header);
}

// Runs an action in which one request is refused, or none.
template <class Action>
void watch(int refused, Action action)
{
    g_asked = 0;
    g_refused = refused;
    g_refusedBytes = 0;
    g_watched = true;
    action();
    g_watched = false;
}

} // namespace

void* operator new(std::size_t size)
{
    return takeOrThrow(size, __builtin_return_address(0));
}
void* operator new[](std::size_t size)
{
    return takeOrThrow(size, __builtin_return_address(0));
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return take(size, __builtin_return_address(0));
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return take(size, __builtin_return_address(0));
}
void operator delete(void* memory) noexcept
{
    giveBack(memory);
}
void operator delete[](void* memory) noexcept
{
    giveBack(memory);
}
void operator delete(void* memory, std::size_t) noexcept
{
    giveBack(memory);
}
void operator delete[](void* memory, std::size_t) noexcept
{
    giveBack(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept
{
    giveBack(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept
{
    giveBack(memory);
}

#endif
