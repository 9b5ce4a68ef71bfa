#ifndef SARN_DESCRIPTORS_ITEMLOOP_H
#define SARN_DESCRIPTORS_ITEMLOOP_H

// The item loop of the descriptors whose body ends in a run of items
// (application names, authorized applications, prefetch labels, DII
// locations).

#include "ISDBTUtils.h"
#include "Log.h"

#pragma GCC visibility push(hidden)  // internal: not exported
namespace Sarn {

/**
 * Parses one Item after the other from the remaining bytes at p into d
 * through store. When an item fails (it has logged and set its code), logs
 * "<name>::parse: Invalid item", sets 2568, deletes d and returns null.
 * Otherwise sets 0 and returns d; lastConsumed, when non-null, receives the
 * byte count of the last item (0 for none): the figure these descriptors
 * have always reported.
 */
template <class Item, class D, class Store>
D* parseItems(D* d, const char* name, unsigned char* p, unsigned int remaining,
              unsigned int* lastConsumed, unsigned short* err, Store store) {
    unsigned int last = 0;
    while (remaining > 0) {
        unsigned int consumed = 0;
        Item* item = Item::parse(p, remaining, &consumed, err);
        // Items report at most the bytes they were given; an item that
        // consumes nothing could never end the loop.
        if (item == nullptr || consumed == 0 || consumed > remaining) {
            delete item;
            SARN_LOGW("%s: %s::parse: Invalid item. Aborting!", name);
            ISDBTUtils::setErrorCode(err, ERROR_DESCRIPTOR_LENGTH);
            delete d;
            return nullptr;
        }
        store(item);
        p += consumed;
        remaining -= consumed;
        last = consumed;
    }
    if (lastConsumed != nullptr)
        *lastConsumed = last;
    ISDBTUtils::setErrorCode(err, ERROR_NONE);
    return d;
}

}  // namespace Sarn
#pragma GCC visibility pop

#endif
