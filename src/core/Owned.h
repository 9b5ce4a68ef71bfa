#ifndef SARN_CORE_OWNED_H
#define SARN_CORE_OWNED_H

// Operations on the containers through which tables and descriptors own
// their entries: collections keyed by an identifier and vectors in wire
// order, both holding owned raw pointers.

#include <algorithm>
#include <list>
#include <utility>
#include <vector>

#pragma GCC visibility push(hidden)  // internal: not exported
namespace Sarn {
namespace owned {

// A keyed collection is a vector of (key, entry) pairs kept in ascending key
// order: one block instead of a tree node per entry, and a walk in key order
// is a walk along the vector. Keys are unique; lookups are binary searches.
template <typename K, typename V, typename A = std::allocator<std::pair<K, V*>>>
using Keyed = std::vector<std::pair<K, V*>, A>;

/** The position of key in entries, or of the first key above it. */
template <typename K, typename V, typename A>
typename Keyed<K, V, A>::const_iterator lowerBound(const Keyed<K, V, A>& entries, const K& key) {
    return std::lower_bound(entries.begin(), entries.end(), key,
                            [](const std::pair<K, V*>& e, const K& k) { return e.first < k; });
}
template <typename K, typename V, typename A>
typename Keyed<K, V, A>::iterator lowerBound(Keyed<K, V, A>& entries, const K& key) {
    return std::lower_bound(entries.begin(), entries.end(), key,
                            [](const std::pair<K, V*>& e, const K& k) { return e.first < k; });
}

/** The entry stored under key, or null. */
template <typename K, typename V, typename A>
V* find(const Keyed<K, V, A>& entries, const K& key) {
    auto it = lowerBound(entries, key);
    return it == entries.end() || key < it->first ? nullptr : it->second;
}

/** The keys in ascending order. */
template <typename K, typename V, typename A>
std::list<K> keys(const Keyed<K, V, A>& entries) {
    std::list<K> all;
    for (const auto& entry : entries)
        all.push_back(entry.first);
    return all;
}

/** Deletes and removes the entry stored under key; false when there is none. */
template <typename K, typename V, typename A>
bool erase(Keyed<K, V, A>& entries, const K& key) {
    auto it = lowerBound(entries, key);
    if (it == entries.end() || key < it->first)
        return false;
    delete it->second;
    entries.erase(it);
    return true;
}

/**
 * Stores value under key and gives back the entry it displaces (null when
 * the key was free). Loops usually carry their entries in ascending order:
 * a key above the last one is appended without a search.
 */
template <typename K, typename V, typename A>
V* assign(Keyed<K, V, A>& entries, const K& key, V* value) {
    if (entries.empty() || entries.back().first < key) {
        entries.emplace_back(key, value);
        return nullptr;
    }
    auto it = lowerBound(entries, key);
    if (it != entries.end() && !(key < it->first)) {
        V* displaced = it->second;
        it->second = value;
        return displaced;
    }
    entries.emplace(it, key, value);
    return nullptr;
}

/**
 * Stores entry under the key it reports (a null pointer is not stored); an
 * entry stored there before is dropped, not deleted: a caller may hold it.
 */
template <typename K, typename V, typename A>
void put(Keyed<K, V, A>& entries, V* entry, K (V::*keyOf)() const) {
    if (entry != nullptr)
        assign(entries, (entry->*keyOf)(), entry);
}

/**
 * Stores value under key while a parse fills the collection: an entry
 * displaced by a repeated key is deleted, since no caller can hold it yet.
 */
template <typename K, typename V, typename A>
inline void replace(Keyed<K, V, A>& entries, const K& key, V* value) {
    V* displaced = assign(entries, key, value);
    if (displaced != value)
        delete displaced;
}

template <typename K, typename V, typename A>
void deleteAll(Keyed<K, V, A>& entries) {
    for (auto& entry : entries)
        delete entry.second;
    entries.clear();
}

// Loop entries and items kept in wire order are addressed by position. The
// public API passes positions as unsigned char; they widen to unsigned int
// here without changing value, so one signature serves every caller.

/** The entry at that position, or null at or beyond the end. */
template <typename V, typename A>
V* at(const std::vector<V*, A>& entries, unsigned int index) {
    return index < entries.size() ? entries[index] : nullptr;
}

/** Deletes and removes the entry at that position; false when there is none. */
template <typename V, typename A>
bool removeAt(std::vector<V*, A>& entries, unsigned int index) {
    if (index >= entries.size() || entries[index] == nullptr)
        return false;
    delete entries[index];
    entries.erase(entries.begin() + index);
    return true;
}

/** Appends an entry (a null pointer is not stored). */
template <typename V, typename A>
void append(std::vector<V*, A>& entries, V* entry) {
    if (entry != nullptr)
        entries.push_back(entry);
}

template <typename V, typename A>
void deleteAll(std::vector<V*, A>& entries) {
    for (V* entry : entries)
        delete entry;
    entries.clear();
}

/** Fills to with copies of the values of from, made by V's copy constructor from a pointer. */
template <typename K, typename V, typename A>
void copyAll(const Keyed<K, V, A>& from, Keyed<K, V, A>& to) {
    to.reserve(from.size());
    for (const auto& entry : from)
        to.emplace_back(entry.first, new V(entry.second));
}
template <typename V, typename A>
void copyAll(const std::vector<V*, A>& from, std::vector<V*, A>& to) {
    to.reserve(from.size());
    for (const V* value : from)
        to.push_back(new V(value));
}

}  // namespace owned
}  // namespace Sarn
#pragma GCC visibility pop

// The public methods of a class over the entries it owns, defined once here:
// a list in wire order addressed by position (add, get, remove) ...
#define SARN_OWNED_LIST_METHODS(Class, Entry, list, addName, getName, removeName) \
    void Class::addName(Entry* entry) {                                           \
        Sarn::owned::append(list, entry);                                         \
    }                                                                             \
    Entry* Class::getName(unsigned char index) const {                            \
        return Sarn::owned::at(list, index);                                      \
    }                                                                             \
    bool Class::removeName(unsigned char index) {                                 \
        return Sarn::owned::removeAt(list, index);                                \
    }

// ... and a map keyed by the identifier an entry reports through keyOf
// (add, get, the keys in ascending order, remove).
#define SARN_OWNED_MAP_METHODS(Class, Key, Entry, map, keyOf, addName, getName, keysName, \
                               removeName)                                                \
    void Class::addName(Entry* entry) {                                                   \
        Sarn::owned::put(map, entry, &Entry::keyOf);                                      \
    }                                                                                     \
    Entry* Class::getName(Key key) const {                                                \
        return Sarn::owned::find(map, key);                                               \
    }                                                                                     \
    std::list<Key> Class::keysName() const {                                              \
        return Sarn::owned::keys(map);                                                    \
    }                                                                                     \
    bool Class::removeName(Key key) {                                                     \
        return Sarn::owned::erase(map, key);                                              \
    }

#endif
