#ifndef SARN_DESCRIPTORS_ITEMLOOP_H
#define SARN_DESCRIPTORS_ITEMLOOP_H

// The item loop of the descriptors whose body ends in a run of items
// (application names, authorized applications, prefetch labels, DII
// locations).

#include <memory>

#include "ISDBTUtils.h"
#include "Log.h"
#include "Parse.h"
#include "Reader.h"

#pragma GCC visibility push(hidden)  // internal: not exported
namespace Sarn {

/**
 * Parses one Item after the other from the bytes of items into d through
 * store. When an item fails (it has logged and set its code), logs
 * "<name>::parse: Invalid item", sets 2568 and returns null (d is deleted).
 * Otherwise sets 0 and returns d, released; lastConsumed, when non-null,
 * receives the byte count of the last item (0 for none): the figure these
 * descriptors have always reported.
 */
template <class Item, class D, class Store>
D* parseItems(std::unique_ptr<D>& d, const char* name, bytes::Reader items,
              unsigned int* lastConsumed, unsigned short* err, Store store) {
    unsigned int last = 0;
    while (!items.atEnd()) {
        unsigned int consumed = 0;
        std::unique_ptr<Item> item(
            Item::parse(items.mutableCurrent(), items.remaining(), &consumed, err));
        // Items report at most the bytes they were given; an item that
        // consumes nothing could never end the loop.
        if (item == nullptr || consumed == 0 || consumed > items.remaining()) {
            SARN_LOGW("%s: %s::parse: Invalid item. Aborting!", name);
            return parse::fail(err, ERROR_DESCRIPTOR_LENGTH);
        }
        store(item.release());
        items.skip(consumed);
        last = consumed;
    }
    if (lastConsumed != nullptr)
        *lastConsumed = last;
    return parse::done(err, d);
}

/** The same over remaining bytes at p, taking ownership of d. */
template <class Item, class D, class Store>
D* parseItems(D* d, const char* name, unsigned char* p, unsigned int remaining,
              unsigned int* lastConsumed, unsigned short* err, Store store) {
    std::unique_ptr<D> owner(d);
    return parseItems<Item>(owner, name, bytes::Reader(p, remaining), lastConsumed, err, store);
}

}  // namespace Sarn
#pragma GCC visibility pop

#endif
