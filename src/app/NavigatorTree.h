// The navigator's tree of clients and standards as data: the desktop tree
// control mirrors it item for item, applying the changes the tree records.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
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

// A change of the tree since the view last looked, so that the view updates
// the items concerned instead of building itself again.
struct SNavChange {
    enum EKind {
        Reset,    // the whole tree is new
        Inserted, // the item (with its children) was inserted
        Removed,  // the item (with its children) was removed
        Changed,  // the item's text or image changed
        Resorted, // the children of the item (0: the top level) were reordered
    };
    EKind kind = Reset;
    std::uint64_t handle = 0;
};

class CNavigatorTree {
public:
    const std::vector<CNavItem>& Roots() const { return m_roots; }
    void Clear();
    // Makes the tree these items in one go: every level sorted, handles
    // given, in time proportional to N log N.
    void Assign(std::vector<CNavItem> roots);

    // Inserts under `parent` (0: the top level) at its sorted place; returns
    // the new item's handle.
    std::uint64_t Insert(std::uint64_t parent, const std::wstring& text, std::int32_t id,
                         int image);
    // Inserts a copy of `item` (with its children, new handles) under `parent`.
    std::uint64_t InsertCopy(std::uint64_t parent, const CNavItem& item);
    void Remove(std::uint64_t handle);
    void SetText(std::uint64_t handle, const std::wstring& text);
    void SetImage(std::uint64_t handle, int image);

    const CNavItem* Find(std::uint64_t handle) const;
    // The parent item, or nullptr for a top-level item (or an unknown one).
    const CNavItem* Parent(std::uint64_t handle) const;
    // The item's place among its parent's children.
    std::size_t IndexOf(std::uint64_t handle) const;
    bool IsInside(std::uint64_t handle, std::uint64_t ancestor) const;

    // Sorts the children of an item (0: the top level) alphabetically,
    // ignoring letter case; equal texts keep their order.
    void SortChildren(std::uint64_t parent);

    // The texts from the top level down to the item.
    std::vector<std::wstring> PathOf(std::uint64_t handle) const;
    // The deepest item along a path of texts (0 when not even the first matches).
    std::uint64_t FindByPath(const std::vector<std::wstring>& path) const;

    // The changes since the last call, oldest first.
    std::vector<SNavChange> TakeChanges();

private:
    struct SPlace {
        std::uint64_t parent = 0;
        std::size_t index = 0;
    };

    CNavItem* FindMutable(std::uint64_t handle);
    std::vector<CNavItem>* ChildrenOf(std::uint64_t parent);
    // Records where each item of `items` (and below) stands.
    void Index(std::uint64_t parent, const std::vector<CNavItem>& items);
    void Unindex(const CNavItem& item);
    void Note(SNavChange::EKind kind, std::uint64_t handle);

    std::uint64_t m_next = 1;
    std::vector<CNavItem> m_roots;
    std::unordered_map<std::uint64_t, SPlace> m_places;
    std::vector<SNavChange> m_changes;
};
