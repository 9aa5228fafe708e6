// Positions of a document's entries by section and one of their texts (the
// key, or the value), in an open-addressing table that holds positions only:
// the texts are compared in the entries themselves, so indexing copies no
// string. Part of the datafile engine.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

template <class TEntry, std::wstring TEntry::*Text> class CEntryIndex {
public:
    static constexpr std::size_t npos = static_cast<std::size_t>(-1);

    void Clear() {
        m_slots.clear();
        m_count = 0;
    }

    // Room for `count` entries without growing on the way.
    void Reserve(const std::vector<TEntry>& entries, std::size_t count) {
        std::size_t size = m_slots.empty() ? 64 : m_slots.size();
        while (size < count * 2)
            size *= 2;
        if (size > m_slots.size())
            Rehash(entries, size);
    }

    // The position of the entry of `section` whose text is `text`; npos when
    // none is indexed.
    std::size_t Find(const std::vector<TEntry>& entries, std::wstring_view section,
                     std::wstring_view text) const {
        if (m_slots.empty())
            return npos;
        const std::size_t mask = m_slots.size() - 1;
        for (std::size_t i = Hash(section, text) & mask;; i = (i + 1) & mask) {
            const std::uint32_t slot = m_slots[i];
            if (slot == 0)
                return npos;
            const TEntry& entry = entries[slot - 1];
            if (entry.*Text == text && entry.section == section)
                return slot - 1;
        }
    }

    // Indexes the entry at `at`, unless one of the same section and text is
    // indexed already (the first one stays).
    void Add(const std::vector<TEntry>& entries, std::size_t at) {
        if ((m_count + 1) * 2 > m_slots.size())
            Grow(entries);
        const TEntry& entry = entries[at];
        const std::size_t mask = m_slots.size() - 1;
        for (std::size_t i = Hash(entry.section, entry.*Text) & mask;; i = (i + 1) & mask) {
            const std::uint32_t slot = m_slots[i];
            if (slot == 0) {
                m_slots[i] = static_cast<std::uint32_t>(at + 1);
                ++m_count;
                return;
            }
            const TEntry& other = entries[slot - 1];
            if (other.*Text == entry.*Text && other.section == entry.section)
                return;
        }
    }

    // Drops the entry at `at`, which must still hold its texts.
    void Remove(const std::vector<TEntry>& entries, std::size_t at) {
        if (m_slots.empty())
            return;
        const std::size_t mask = m_slots.size() - 1;
        std::size_t i = Hash(entries[at].section, entries[at].*Text) & mask;
        while (m_slots[i] != at + 1) {
            if (m_slots[i] == 0)
                return;
            i = (i + 1) & mask;
        }
        // Shifts back the entries after it whose probe passed this slot, so
        // that no search stops early at the hole.
        for (std::size_t j = (i + 1) & mask; m_slots[j] != 0; j = (j + 1) & mask) {
            const TEntry& moved = entries[m_slots[j] - 1];
            const std::size_t home = Hash(moved.section, moved.*Text) & mask;
            const bool stays = i <= j ? (i < home && home <= j) : (i < home || home <= j);
            if (stays)
                continue;
            m_slots[i] = m_slots[j];
            i = j;
        }
        m_slots[i] = 0;
        --m_count;
    }

private:
    static std::size_t Hash(std::wstring_view section, std::wstring_view text) {
        const std::size_t a = std::hash<std::wstring_view>{}(section);
        const std::size_t b = std::hash<std::wstring_view>{}(text);
        return a ^ (b + 0x9e3779b97f4a7c15ULL + (a << 6) + (a >> 2));
    }

    void Grow(const std::vector<TEntry>& entries) {
        Rehash(entries, m_slots.empty() ? 64 : m_slots.size() * 2);
    }

    // Places every indexed entry again in a table of `size` slots.
    void Rehash(const std::vector<TEntry>& entries, std::size_t size) {
        std::vector<std::uint32_t> old;
        old.swap(m_slots);
        m_slots.assign(size, 0);
        m_count = 0;
        for (const std::uint32_t slot : old) {
            if (slot != 0)
                Add(entries, slot - 1);
        }
    }

    std::vector<std::uint32_t> m_slots; // an entry's position + 1; 0 is free
    std::size_t m_count = 0;
};
