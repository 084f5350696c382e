#include "lut/PublishedTable.h"

#include <algorithm>
#include <cassert>
#include <thread>

namespace orlune {

namespace {

constexpr int kIndexShift = 56;
constexpr std::uint64_t kCountMask = (std::uint64_t(1) << kIndexShift) - 1;
constexpr std::uint64_t kNoTable = PublishedTable::kSlots;

} // namespace

void PublishedTable::Release::operator()(Slot* slot) const noexcept
{
    // Release: what was read from the slot was read before the writer sees it spare.
    slot->released.fetch_add(1, std::memory_order_release);
}

const std::int32_t* PublishedTable::Snapshot::entries() const noexcept
{
    return m_slot ? m_slot->entries.data() : nullptr;
}

PublishedTable::PublishedTable() noexcept : m_current(kNoTable << kIndexShift) {}

PublishedTable::~PublishedTable()
{
    Clear();
    assert(std::all_of(m_slots.begin(), m_slots.end(),
                       [](const Slot& slot) { return slot.released == slot.acquired; }));
}

void PublishedTable::Publish(const std::int32_t (&entries)[kEntries]) noexcept
{
    Slot& slot = SpareSlot();
    std::copy(std::begin(entries), std::end(entries), slot.entries.begin());
    MakeCurrent(std::uint64_t(&slot - m_slots.data()));
}

void PublishedTable::Clear() noexcept
{
    MakeCurrent(kNoTable);
}

PublishedTable::Snapshot PublishedTable::Acquire() const noexcept
{
    // Acquire: the entries were written before their slot became current.
    const std::uint64_t index = m_current.fetch_add(1, std::memory_order_acquire) >> kIndexShift;
    return Snapshot(index == kNoTable ? nullptr : const_cast<Slot*>(&m_slots[index]));
}

// A slot that is not current and whose snapshots have all been given back.
PublishedTable::Slot& PublishedTable::SpareSlot() noexcept
{
    const std::uint64_t current = m_current.load(std::memory_order_relaxed) >> kIndexShift;
    for (;;) {
        for (std::uint64_t index = 0; index < kSlots; ++index) {
            Slot& slot = m_slots[index];
            if (index != current && slot.released.load(std::memory_order_acquire) == slot.acquired)
                return slot;
        }
        std::this_thread::yield();
    }
}

void PublishedTable::MakeCurrent(std::uint64_t index) noexcept
{
    const std::uint64_t before = m_current.exchange(index << kIndexShift, std::memory_order_release);
    const std::uint64_t retired = before >> kIndexShift;
    if (retired != kNoTable)
        m_slots[retired].acquired += before & kCountMask;
}

} // namespace orlune
