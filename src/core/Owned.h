#ifndef SARN_CORE_OWNED_H
#define SARN_CORE_OWNED_H

// Containers that own their elements: the keyed children (maps of raw
// pointers) and the ordered ones (vectors of raw pointers) of tables and
// descriptors.

#include <list>
#include <map>
#include <vector>

namespace Sarn {

/**
 * Stores value under key during a parse. A value already stored under the
 * key was made by the same parse and nobody else holds it, so it is deleted.
 */
template <class Map>
void storeReplacing(Map& map, const typename Map::key_type& key, typename Map::mapped_type value) {
    auto slot = map.emplace(key, nullptr).first;
    if (slot->second != value)
        delete slot->second;
    slot->second = value;
}

/** Every key in order. */
template <class K, class V>
std::list<K> keysOf(const std::map<K, V>& map) {
    std::list<K> keys;
    for (const auto& entry : map)
        keys.push_back(entry.first);
    return keys;
}

/** Deletes every value (the container is left holding dangling pointers). */
template <class K, class V>
void deleteAll(std::map<K, V*>& map) {
    for (auto& entry : map)
        delete entry.second;
}
template <class V>
void deleteAll(std::vector<V*>& list) {
    for (V* value : list)
        delete value;
}

/** Fills to with copies of the values of from, made by V's copy constructor from a pointer. */
template <class K, class V>
void copyAll(const std::map<K, V*>& from, std::map<K, V*>& to) {
    for (const auto& entry : from)
        to[entry.first] = new V(entry.second);
}
template <class V>
void copyAll(const std::vector<V*>& from, std::vector<V*>& to) {
    to.reserve(from.size());
    for (const V* value : from)
        to.push_back(new V(value));
}

/** The element at index, or null beyond the end. */
template <class V>
V* elementAt(const std::vector<V*>& list, unsigned int index) {
    return index < list.size() ? list[index] : nullptr;
}

}  // namespace Sarn

#endif
