#ifndef SARN_CORE_OWNED_H
#define SARN_CORE_OWNED_H

// Operations on the containers through which tables and descriptors own
// their entries: maps keyed by an identifier and vectors in wire order, both
// holding owned raw pointers.

#include <list>
#include <map>
#include <vector>

#pragma GCC visibility push(hidden)  // internal: not exported
namespace Sarn {
namespace owned {

/** The entry stored under key, or null. */
template <typename K, typename V>
V* find(const std::map<K, V*>& entries, const K& key) {
    auto it = entries.find(key);
    return it == entries.end() ? nullptr : it->second;
}

/** The keys in ascending order. */
template <typename K, typename V>
std::list<K> keys(const std::map<K, V*>& entries) {
    std::list<K> all;
    for (const auto& entry : entries)
        all.push_back(entry.first);
    return all;
}

/** Deletes and removes the entry stored under key; false when there is none. */
template <typename K, typename V>
bool erase(std::map<K, V*>& entries, const K& key) {
    auto it = entries.find(key);
    if (it == entries.end())
        return false;
    delete it->second;
    entries.erase(it);
    return true;
}

/** Stores entry under the key it reports (a null pointer is not stored). */
template <typename K, typename V>
void put(std::map<K, V*>& entries, V* entry, K (V::*keyOf)() const) {
    if (entry != nullptr)
        entries[(entry->*keyOf)()] = entry;
}

/**
 * Stores value under key while a parse fills the map: an entry displaced by
 * a repeated key is deleted, since no caller can hold it yet.
 */
template <typename K, typename V>
inline void replace(std::map<K, V*>& entries, const K& key, V* value) {
    // Loops usually carry their entries in ascending order: with the end as
    // the hint, a key above the last one is placed without a search.
    auto at = entries.emplace_hint(entries.end(), key, value);
    if (at->second != value) {
        delete at->second;
        at->second = value;
    }
}

template <typename K, typename V>
void deleteAll(std::map<K, V*>& entries) {
    for (auto& entry : entries)
        delete entry.second;
    entries.clear();
}

// Loop entries and items kept in wire order are addressed by position. The
// public API passes positions as unsigned char; they widen to unsigned int
// here without changing value, so one signature serves every caller.

/** The entry at that position, or null at or beyond the end. */
template <typename V>
V* at(const std::vector<V*>& entries, unsigned int index) {
    return index < entries.size() ? entries[index] : nullptr;
}

/** Deletes and removes the entry at that position; false when there is none. */
template <typename V>
bool removeAt(std::vector<V*>& entries, unsigned int index) {
    if (index >= entries.size() || entries[index] == nullptr)
        return false;
    delete entries[index];
    entries.erase(entries.begin() + index);
    return true;
}

/** Appends an entry (a null pointer is not stored). */
template <typename V>
void append(std::vector<V*>& entries, V* entry) {
    if (entry != nullptr)
        entries.push_back(entry);
}

template <typename V>
void deleteAll(std::vector<V*>& entries) {
    for (V* entry : entries)
        delete entry;
    entries.clear();
}

/** Fills to with copies of the values of from, made by V's copy constructor from a pointer. */
template <typename K, typename V>
void copyAll(const std::map<K, V*>& from, std::map<K, V*>& to) {
    for (const auto& entry : from)
        to[entry.first] = new V(entry.second);
}
template <typename V>
void copyAll(const std::vector<V*>& from, std::vector<V*>& to) {
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
