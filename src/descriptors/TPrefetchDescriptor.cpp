#include "TPrefetchDescriptor.h"

#include <memory>

#include "DescriptorParse.h"
#include "ISDBTUtils.h"
#include "ItemLoop.h"
#include "Log.h"
#include "Owned.h"
#include "Reader.h"

namespace Sarn {

TPrefetchDescriptorItem::TPrefetchDescriptorItem() {}

TPrefetchDescriptorItem::TPrefetchDescriptorItem(const TPrefetchDescriptorItem* src)
    : label(src->label), prefetchPriority(src->prefetchPriority) {}

TPrefetchDescriptorItem::~TPrefetchDescriptorItem() {}

TPrefetchDescriptorItem* TPrefetchDescriptorItem::parse(unsigned char* data, unsigned int len,
                                                        unsigned int* bytesRead,
                                                        unsigned short* err) {
    // label_length, label, prefetch_priority
    if (data == nullptr || len < 2) {
        SARN_LOGW("%s: TPrefetchDescriptorItem::parse: Item length not valid: %u. Aborting!", len);
        return parse::fail(err, ERROR_DATA_TOO_SHORT);
    }
    std::unique_ptr<TPrefetchDescriptorItem> item(new TPrefetchDescriptorItem());
    bytes::Reader r(data, len);
    if (r.string(item->label, 0) < 0) {
        SARN_LOGW("%s: TPrefetchDescriptorItem:: parse: ERROR: parsing Label. Aborting!");
        return parse::fail(err, ERROR_FIELD_PARSE);
    }
    if (r.atEnd()) {
        // No byte left for the priority.
        SARN_LOGW("%s: TPrefetchDescriptorItem::parse: Item length not valid: %u. Aborting!",
                  r.remaining());
        return parse::fail(err, ERROR_DATA_TOO_SHORT);
    }
    item->prefetchPriority = r.u8();
    if (bytesRead != nullptr)
        *bytesRead = r.position();
    return item.release();  // the code is left as it stands
}

TPrefetchDescriptor::TPrefetchDescriptor(unsigned char* bytes, unsigned int len)
    : TISDBTDescriptor(DESCRIPTOR_TAG, bytes, len) {}

TPrefetchDescriptor::TPrefetchDescriptor(const TPrefetchDescriptor* src)
    : TISDBTDescriptor(*src), transportProtocolLabel(src->transportProtocolLabel) {
    owned::copyAll(src->items, items);
}

TPrefetchDescriptor::~TPrefetchDescriptor() {
    owned::deleteAll(items);
}

SARN_DESCRIPTOR_PARSE(TPrefetchDescriptor, arena, data, len, bytesRead, err) {
    // transport_protocol_label, then items up to the end
    SARN_OPEN_OR_RETURN(arena, d, r, TPrefetchDescriptor, data, len, err, 4, DESCRIPTOR_TAG);
    bytes::Reader body = r.sub(d->getDescriptorLength());
    d->transportProtocolLabel = body.u8();
    TPrefetchDescriptor* prefetch = d.get();
    auto store = [prefetch](TPrefetchDescriptorItem* item) { prefetch->items.push_back(item); };
    return parseItems<TPrefetchDescriptorItem>(d, "TPrefetchDescriptor", body.rest(), bytesRead,
                                               err, store);
}

void TPrefetchDescriptor::add(TPrefetchDescriptorItem* item) {
    if (item != nullptr)
        items.push_back(item);
}

TPrefetchDescriptorItem* TPrefetchDescriptor::get(unsigned int index) const {
    return owned::at(items, index);
}

}  // namespace Sarn
