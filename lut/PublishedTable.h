// How a table gets from the one thread that edits it to the threads that map frames: the editor publishes
// complete tables, a frame takes a snapshot of the newest one and keeps it as long as it likes.
//
// No reader ever waits, takes a lock or allocates, sees a table half written, or holds one that is
// overwritten or freed. docs/frame-path.md tells how.
//
// Stands alone, needs C++17 and no library but the standard one.
#ifndef ORLUNE_LUT_PUBLISHEDTABLE_H
#define ORLUNE_LUT_PUBLISHEDTABLE_H

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>

namespace orlune {

class PublishedTable
{
    struct Slot;
    struct Release
    {
        void operator()(Slot* slot) const noexcept;
    };

public:
    static constexpr int kEntries = 4096;

    // A table that stays as it is until the snapshot goes. Belongs to one thread at a time; may be moved.
    class Snapshot
    {
    public:
        // kEntries entries, or null when nothing was published.
        const std::int32_t* entries() const noexcept;

    private:
        friend class PublishedTable;
        explicit Snapshot(Slot* slot) noexcept : m_slot(slot) {}
        std::unique_ptr<Slot, Release> m_slot;
    };

    PublishedTable() noexcept;
    // No snapshot may be left.
    ~PublishedTable();
    PublishedTable(const PublishedTable&) = delete;
    PublishedTable& operator=(const PublishedTable&) = delete;

    // Copies the entries and makes them the table of every later Acquire. One thread at a time. Never fails
    // and allocates nothing; it waits only while kSlots - 1 older tables are all held, so a thread that holds
    // snapshots of that many itself must not publish.
    void Publish(const std::int32_t (&entries)[kEntries]) noexcept;

    // Takes the table away: every later Acquire gives null. Same thread as Publish; snapshots stay good.
    void Clear() noexcept;

    // The newest table. Any thread, any number of them; one atomic addition.
    Snapshot Acquire() const noexcept;

    static constexpr int kSlots = 8;

private:
    struct Slot
    {
        std::array<std::int32_t, kEntries> entries;
        std::atomic<std::uint64_t> released{0}; // snapshots given back
        std::uint64_t acquired = 0;             // snapshots handed out while it was current; the writer's own
    };

    Slot& SpareSlot() noexcept;
    void MakeCurrent(std::uint64_t index) noexcept;

    std::array<Slot, kSlots> m_slots;
    // Index of the current slot in the top byte, below it the number of snapshots handed out of it since it
    // became current: both change in one step, so none is handed out uncounted.
    mutable std::atomic<std::uint64_t> m_current;
};

} // namespace orlune

#endif
