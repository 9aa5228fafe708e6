#include "app/NavigatorTree.h"

#include "datafile/Text.h"

#include <algorithm>
#include <numeric>

namespace {

// Sorts a level by its texts without regard to case, computing each key once.
void SortLevel(std::vector<CNavItem>& items) {
    std::vector<std::wstring> keys;
    keys.reserve(items.size());
    for (const auto& item : items)
        keys.push_back(ToUpper(item.text));
    std::vector<std::size_t> order(items.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return keys[a] < keys[b]; });
    std::vector<CNavItem> sorted;
    sorted.reserve(items.size());
    for (std::size_t i : order)
        sorted.push_back(std::move(items[i]));
    items = std::move(sorted);
}

void SortDeep(std::vector<CNavItem>& items) {
    SortLevel(items);
    for (auto& item : items)
        SortDeep(item.children);
}

void Renumber(CNavItem& item, std::uint64_t& next) {
    item.handle = next++;
    for (auto& child : item.children)
        Renumber(child, next);
}

} // namespace

void CNavigatorTree::Clear() {
    Assign({});
}

void CNavigatorTree::Assign(std::vector<CNavItem> roots) {
    SortDeep(roots);
    for (auto& item : roots)
        Renumber(item, m_next);
    m_roots = std::move(roots);
    m_places.clear();
    Index(0, m_roots);
    m_changes.assign(1, {SNavChange::Reset, 0});
}

void CNavigatorTree::Index(std::uint64_t parent, const std::vector<CNavItem>& items) {
    for (std::size_t i = 0; i < items.size(); ++i) {
        m_places[items[i].handle] = {parent, i};
        Index(items[i].handle, items[i].children);
    }
}

void CNavigatorTree::Unindex(const CNavItem& item) {
    m_places.erase(item.handle);
    for (const auto& child : item.children)
        Unindex(child);
}

void CNavigatorTree::Note(SNavChange::EKind kind, std::uint64_t handle) {
    m_changes.push_back({kind, handle});
}

std::vector<SNavChange> CNavigatorTree::TakeChanges() {
    std::vector<SNavChange> changes;
    changes.swap(m_changes);
    return changes;
}

const CNavItem* CNavigatorTree::Find(std::uint64_t handle) const {
    const auto place = m_places.find(handle);
    if (place == m_places.end())
        return nullptr;
    const std::vector<CNavItem>* level = &m_roots;
    if (place->second.parent != 0) {
        const CNavItem* parent = Find(place->second.parent);
        if (!parent)
            return nullptr;
        level = &parent->children;
    }
    return place->second.index < level->size() ? &(*level)[place->second.index] : nullptr;
}

CNavItem* CNavigatorTree::FindMutable(std::uint64_t handle) {
    return const_cast<CNavItem*>(Find(handle));
}

const CNavItem* CNavigatorTree::Parent(std::uint64_t handle) const {
    const auto place = m_places.find(handle);
    return place == m_places.end() ? nullptr : Find(place->second.parent);
}

std::size_t CNavigatorTree::IndexOf(std::uint64_t handle) const {
    const auto place = m_places.find(handle);
    return place == m_places.end() ? 0 : place->second.index;
}

std::vector<CNavItem>* CNavigatorTree::ChildrenOf(std::uint64_t parent) {
    if (parent == 0)
        return &m_roots;
    CNavItem* item = FindMutable(parent);
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
    const std::wstring key = ToUpper(item.text);
    const auto at = std::upper_bound(
        children->begin(), children->end(), key,
        [](const std::wstring& k, const CNavItem& other) { return k < ToUpper(other.text); });
    const std::size_t index = static_cast<std::size_t>(at - children->begin());
    const std::uint64_t handle = item.handle;
    children->insert(at, std::move(item));
    // The inserted item and its children, then the later siblings' places.
    m_places[handle] = {parent, index};
    Index(handle, (*children)[index].children);
    for (std::size_t i = index + 1; i < children->size(); ++i)
        m_places[(*children)[i].handle].index = i;
    Note(SNavChange::Inserted, handle);
    return handle;
}

void CNavigatorTree::Remove(std::uint64_t handle) {
    const auto place = m_places.find(handle);
    if (place == m_places.end())
        return;
    const SPlace where = place->second;
    std::vector<CNavItem>* children = ChildrenOf(where.parent);
    if (!children || where.index >= children->size())
        return;
    Unindex((*children)[where.index]);
    children->erase(children->begin() + static_cast<std::ptrdiff_t>(where.index));
    for (std::size_t i = where.index; i < children->size(); ++i)
        m_places[(*children)[i].handle].index = i;
    Note(SNavChange::Removed, handle);
}

void CNavigatorTree::SetText(std::uint64_t handle, const std::wstring& text) {
    if (CNavItem* item = FindMutable(handle); item && item->text != text) {
        item->text = text;
        Note(SNavChange::Changed, handle);
    }
}

void CNavigatorTree::SetImage(std::uint64_t handle, int image) {
    if (CNavItem* item = FindMutable(handle); item && item->image != image) {
        item->image = image;
        Note(SNavChange::Changed, handle);
    }
}

bool CNavigatorTree::IsInside(std::uint64_t handle, std::uint64_t ancestor) const {
    for (const CNavItem* parent = Parent(handle); parent; parent = Parent(parent->handle)) {
        if (parent->handle == ancestor)
            return true;
    }
    return false;
}

void CNavigatorTree::SortChildren(std::uint64_t parent) {
    std::vector<CNavItem>* children = ChildrenOf(parent);
    if (!children)
        return;
    SortLevel(*children);
    for (std::size_t i = 0; i < children->size(); ++i)
        m_places[(*children)[i].handle].index = i;
    Note(SNavChange::Resorted, parent);
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
