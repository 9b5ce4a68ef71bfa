#ifndef SARN_CORE_OWNEDMAP_H
#define SARN_CORE_OWNEDMAP_H

// Maps that own their values (keyed children of tables and descriptors).

namespace Sarn {

/**
 * Stores value under key during a parse. A value already stored under the
 * key was made by the same parse and nobody else holds it, so it is deleted.
 */
template <class Map>
void storeReplacing(Map& map, const typename Map::key_type& key,
                    typename Map::mapped_type value) {
    auto slot = map.emplace(key, nullptr).first;
    if (slot->second != value)
        delete slot->second;
    slot->second = value;
}

}  // namespace Sarn

#endif
