#ifndef SARN_DESCRIPTORS_ITEMLOOP_H
#define SARN_DESCRIPTORS_ITEMLOOP_H

// The item loops of the descriptors that carry runs of items (application
// names, authorized applications, prefetch labels, DII locations, emergency
// services, copy-control components, compatibility entries, download modules,
// event items). An item class offers
//   static Item* parse(unsigned char* data, unsigned int length,
//                      unsigned int* bytesRead, unsigned short* error);
// and is handed the bytes left in the descriptor's reader.

#include <memory>

#include "ISDBTUtils.h"
#include "Log.h"
#include "Parse.h"
#include "Reader.h"

#pragma GCC visibility push(hidden)  // internal: not exported
namespace Sarn {

/**
 * The Item at r's position, parsed from every byte left in r; r steps over
 * the bytes the item reports (also written to consumed, when non-null, even
 * for an item refused here). Null when the item fails (it has logged and set
 * its code), or when it reports no bytes or more than it was given: such an
 * item could never end a loop and is deleted.
 */
template <class Item>
std::unique_ptr<Item> nextItem(bytes::Reader& r, unsigned short* err,
                               unsigned int* consumed = nullptr) {
    unsigned int n = 0;
    const unsigned int left = r.remaining();
    std::unique_ptr<Item> item(Item::parse(r.mutableCurrent(), left, &n, err));
    if (consumed != nullptr)
        *consumed = n;
    if (item == nullptr || n == 0 || n > left)
        return nullptr;
    r.skip(n);
    return item;
}

/**
 * count Items one after the other, each released to store (which takes
 * ownership): false at the first that fails, for the caller to log.
 */
template <class Item, class Store>
bool readCounted(bytes::Reader& r, unsigned int count, unsigned short* err, Store store) {
    for (; count != 0; --count) {
        std::unique_ptr<Item> item = nextItem<Item>(r, err);
        if (item == nullptr)
            return false;
        store(item.release());
    }
    return true;
}

/**
 * Items one after the other until r is at its end, each released to store:
 * false at the first that fails, for the caller to log. On success
 * lastConsumed, when non-null, receives the byte count of the last item (0
 * for none).
 */
template <class Item, class Store>
bool readToEnd(bytes::Reader& r, unsigned int* lastConsumed, unsigned short* err, Store store) {
    unsigned int last = 0;
    while (!r.atEnd()) {
        std::unique_ptr<Item> item = nextItem<Item>(r, err, &last);
        if (item == nullptr)
            return false;
        store(item.release());
    }
    if (lastConsumed != nullptr)
        *lastConsumed = last;
    return true;
}

/**
 * readToEnd for the descriptors whose items are their whole body: a failed
 * item is logged as "<name>::parse: Invalid item" with the code 2568.
 * lastConsumed receives the figure these descriptors have always reported.
 */
template <class Item, class Store>
bool readItems(bytes::Reader& r, const char* name, unsigned int* lastConsumed, unsigned short* err,
               Store store) {
    if (readToEnd<Item>(r, lastConsumed, err, store))
        return true;
    SARN_LOGW("%s: %s::parse: Invalid item. Aborting!", name);
    ISDBTUtils::setErrorCode(err, ERROR_DESCRIPTOR_LENGTH);
    return false;
}

/**
 * readItems over the bytes of items into d, for a descriptor whose body ends
 * in its items: null on failure (d is deleted); otherwise sets 0 and returns
 * d, released.
 */
template <class Item, class D, class Store>
D* parseItems(std::unique_ptr<D>& d, const char* name, bytes::Reader items,
              unsigned int* lastConsumed, unsigned short* err, Store store) {
    if (!readItems<Item>(items, name, lastConsumed, err, store))
        return nullptr;
    return parse::done(err, d);
}

}  // namespace Sarn
#pragma GCC visibility pop

#endif
