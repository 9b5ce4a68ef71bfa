#ifndef SARN_DESCRIPTORS_ITEMLOOP_H
#define SARN_DESCRIPTORS_ITEMLOOP_H

// The item loop of the descriptors whose body is a run of items up to its
// end (application names, authorized applications, prefetch labels, DII
// locations).

namespace Sarn {

/**
 * Parses one Item after the other from the remaining bytes at p and hands
 * each to store. Stops with false at the first item that fails (the item has
 * logged and set its code). lastConsumed, when non-null, receives the byte
 * count of the last item parsed (left as it was when there is none).
 */
template <class Item, class Store>
bool parseItemLoop(unsigned char* p, unsigned int remaining, unsigned short* err,
                   unsigned int* lastConsumed, Store store) {
    while (remaining > 0) {
        unsigned int consumed = 0;
        Item* item = Item::parse(p, remaining, &consumed, err);
        // Items report at most the bytes they were given; an item that
        // consumes nothing could never end the loop.
        if (item == nullptr || consumed == 0 || consumed > remaining) {
            delete item;
            return false;
        }
        store(item);
        p += consumed;
        remaining -= consumed;
        if (lastConsumed != nullptr)
            *lastConsumed = consumed;
    }
    return true;
}

}  // namespace Sarn

#endif
