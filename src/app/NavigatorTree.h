// The navigator's tree of clients and standards as data: the desktop tree
// control mirrors it item for item.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

enum ENavImage { eNavClient = 0, eNavStandard = 1, eNavDeleted = 2 };

// The kind of "nothing selected" (no item, or the tree's root).
inline constexpr int kNavNothing = 12;

struct CNavItem {
    std::uint64_t handle = 0; // stable while the item exists; 0 is never used
    std::wstring text;
    std::int32_t id = 0;
    int image = eNavClient;
    std::vector<CNavItem> children;
};

class CNavigatorTree {
public:
    const std::vector<CNavItem>& Roots() const { return m_roots; }
    void Clear() { m_roots.clear(); }

    // Inserts under `parent` (0: the top level) at its sorted place; returns
    // the new item's handle.
    std::uint64_t Insert(std::uint64_t parent, const std::wstring& text, std::int32_t id,
                         int image);
    // Inserts a copy of `item` (with its children, new handles) under `parent`.
    std::uint64_t InsertCopy(std::uint64_t parent, const CNavItem& item);
    void Remove(std::uint64_t handle);

    CNavItem* Find(std::uint64_t handle);
    const CNavItem* Find(std::uint64_t handle) const;
    // The parent item, or nullptr for a top-level item (or an unknown one).
    const CNavItem* Parent(std::uint64_t handle) const;
    bool IsInside(std::uint64_t handle, std::uint64_t ancestor) const;

    // Sorts every level alphabetically, ignoring letter case; equal texts keep
    // their order.
    void SortAll();
    void SortChildren(std::uint64_t parent);

    // The texts from the top level down to the item.
    std::vector<std::wstring> PathOf(std::uint64_t handle) const;
    // The deepest item along a path of texts (0 when not even the first matches).
    std::uint64_t FindByPath(const std::vector<std::wstring>& path) const;

private:
    std::vector<CNavItem>* ChildrenOf(std::uint64_t parent);
    std::uint64_t m_next = 1;
    std::vector<CNavItem> m_roots;
};
