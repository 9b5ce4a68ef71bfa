#include "TPrefetchDescriptor.h"

#include "ISDBTUtils.h"
#include "ItemLoop.h"
#include "Log.h"
#include "Owned.h"
#include "ParserUtils.h"

namespace Sarn {

TPrefetchDescriptorItem::TPrefetchDescriptorItem() : prefetchPriority(0) {}

TPrefetchDescriptorItem::TPrefetchDescriptorItem(const TPrefetchDescriptorItem* src)
    : label(src->label), prefetchPriority(src->prefetchPriority) {}

TPrefetchDescriptorItem::~TPrefetchDescriptorItem() {}

TPrefetchDescriptorItem* TPrefetchDescriptorItem::parse(unsigned char* data, unsigned int len,
                                                        unsigned int* bytesRead,
                                                        unsigned short* err) {
    // label_length, label, prefetch_priority
    if (data == nullptr || len < 2) {
        SARN_LOGW("%s: TPrefetchDescriptorItem::parse: Item length not valid: %u. Aborting!", len);
        ISDBTUtils::setErrorCode(err, ERROR_DATA_TOO_SHORT);
        return nullptr;
    }
    TPrefetchDescriptorItem* item = new TPrefetchDescriptorItem();
    const int n = ParserUtils::parseStr(data, item->label, 0, len);
    if (n < 0) {
        SARN_LOGW("%s: TPrefetchDescriptorItem:: parse: ERROR: parsing Label. Aborting!");
        ISDBTUtils::setErrorCode(err, ERROR_FIELD_PARSE);
        delete item;
        return nullptr;
    }
    const unsigned int used = static_cast<unsigned int>(n);
    if (used >= len) {
        // No byte left for the priority.
        SARN_LOGW("%s: TPrefetchDescriptorItem::parse: Item length not valid: %u. Aborting!",
                  len - used);
        ISDBTUtils::setErrorCode(err, ERROR_DATA_TOO_SHORT);
        delete item;
        return nullptr;
    }
    item->prefetchPriority = data[used];
    if (bytesRead != nullptr)
        *bytesRead = used + 1;
    return item;
}

TPrefetchDescriptor::TPrefetchDescriptor(unsigned char* bytes, unsigned int len)
    : TISDBTDescriptor(DESCRIPTOR_TAG, bytes, len), transportProtocolLabel(0) {}

TPrefetchDescriptor::TPrefetchDescriptor(const TPrefetchDescriptor* src)
    : TISDBTDescriptor(*src), transportProtocolLabel(src->transportProtocolLabel) {
    owned::copyAll(src->items, items);
}

TPrefetchDescriptor::~TPrefetchDescriptor() {
    owned::deleteAll(items);
}

TPrefetchDescriptor* TPrefetchDescriptor::parse(unsigned char* data, unsigned int len,
                                                unsigned int* bytesRead, unsigned short* err) {
    // transport_protocol_label, then items up to the end
    if (!parseCommonHeader(data, len, err, 4, DESCRIPTOR_TAG))
        return nullptr;
    TPrefetchDescriptor* d = new TPrefetchDescriptor(data, len);
    d->transportProtocolLabel = data[2];
    auto store = [d](TPrefetchDescriptorItem* item) { d->items.push_back(item); };
    return parseItems<TPrefetchDescriptorItem>(d, "TPrefetchDescriptor", data + 3, data[1] - 1u,
                                               bytesRead, err, store);
}

void TPrefetchDescriptor::add(TPrefetchDescriptorItem* item) {
    if (item != nullptr)
        items.push_back(item);
}

TPrefetchDescriptorItem* TPrefetchDescriptor::get(unsigned int index) const {
    return owned::at(items, index);
}

}  // namespace Sarn
