#include "app/NavigatorTree.h"

#include "datafile/Text.h"

#include <algorithm>

namespace {

bool TextLess(const CNavItem& a, const CNavItem& b) {
    return ToUpper(a.text) < ToUpper(b.text);
}

const CNavItem* FindIn(const std::vector<CNavItem>& items, std::uint64_t handle,
                       const CNavItem** parent, const CNavItem* owner) {
    for (const auto& item : items) {
        if (item.handle == handle) {
            if (parent)
                *parent = owner;
            return &item;
        }
        if (const CNavItem* found = FindIn(item.children, handle, parent, &item))
            return found;
    }
    return nullptr;
}

void SortLevel(std::vector<CNavItem>& items, bool deep) {
    std::stable_sort(items.begin(), items.end(), TextLess);
    if (deep) {
        for (auto& item : items)
            SortLevel(item.children, true);
    }
}

void Renumber(CNavItem& item, std::uint64_t& next) {
    item.handle = next++;
    for (auto& child : item.children)
        Renumber(child, next);
}

} // namespace

const CNavItem* CNavigatorTree::Find(std::uint64_t handle) const {
    return FindIn(m_roots, handle, nullptr, nullptr);
}

CNavItem* CNavigatorTree::Find(std::uint64_t handle) {
    return const_cast<CNavItem*>(static_cast<const CNavigatorTree*>(this)->Find(handle));
}

const CNavItem* CNavigatorTree::Parent(std::uint64_t handle) const {
    const CNavItem* parent = nullptr;
    FindIn(m_roots, handle, &parent, nullptr);
    return parent;
}

std::vector<CNavItem>* CNavigatorTree::ChildrenOf(std::uint64_t parent) {
    if (parent == 0)
        return &m_roots;
    CNavItem* item = Find(parent);
    return item ? &item->children : nullptr;
}

std::uint64_t CNavigatorTree::Insert(std::uint64_t parent, const std::wstring& text,
                                     std::int32_t id, int image) {
    CNavItem item;
    item.text = text;
    item.id = id;
    item.image = image;
    return InsertCopy(parent, item);
}

std::uint64_t CNavigatorTree::InsertCopy(std::uint64_t parent, const CNavItem& source) {
    std::vector<CNavItem>* children = ChildrenOf(parent);
    if (!children)
        return 0;
    CNavItem item = source;
    Renumber(item, m_next);
    const auto at = std::upper_bound(children->begin(), children->end(), item, TextLess);
    return children->insert(at, std::move(item))->handle;
}

void CNavigatorTree::Remove(std::uint64_t handle) {
    const CNavItem* parent = Parent(handle);
    std::vector<CNavItem>* children = parent ? ChildrenOf(parent->handle) : &m_roots;
    std::erase_if(*children, [&](const CNavItem& item) { return item.handle == handle; });
}

bool CNavigatorTree::IsInside(std::uint64_t handle, std::uint64_t ancestor) const {
    for (const CNavItem* parent = Parent(handle); parent; parent = Parent(parent->handle)) {
        if (parent->handle == ancestor)
            return true;
    }
    return false;
}

void CNavigatorTree::SortAll() {
    SortLevel(m_roots, true);
}

void CNavigatorTree::SortChildren(std::uint64_t parent) {
    if (std::vector<CNavItem>* children = ChildrenOf(parent))
        SortLevel(*children, false);
}

std::vector<std::wstring> CNavigatorTree::PathOf(std::uint64_t handle) const {
    std::vector<std::wstring> path;
    for (const CNavItem* item = Find(handle); item; item = Parent(item->handle))
        path.insert(path.begin(), item->text);
    return path;
}

std::uint64_t CNavigatorTree::FindByPath(const std::vector<std::wstring>& path) const {
    const std::vector<CNavItem>* level = &m_roots;
    std::uint64_t found = 0;
    for (const auto& text : path) {
        const auto it = std::find_if(level->begin(), level->end(),
                                     [&](const CNavItem& item) { return item.text == text; });
        if (it == level->end())
            break;
        found = it->handle;
        level = &it->children;
    }
    return found;
}
