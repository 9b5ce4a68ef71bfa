#include "TDIILocationDescriptor.h"

#include "Bytes.h"
#include "ISDBTUtils.h"
#include "ItemLoop.h"
#include "Log.h"
#include "Owned.h"

namespace Sarn {

TDIILocationDescriptorItem::TDIILocationDescriptorItem(unsigned short dii, unsigned short tag)
    : diiIdentification(dii), associationTag(tag) {}

TDIILocationDescriptorItem::TDIILocationDescriptorItem(const TDIILocationDescriptorItem* src)
    : diiIdentification(src->diiIdentification), associationTag(src->associationTag) {}

TDIILocationDescriptorItem::~TDIILocationDescriptorItem() {}

TDIILocationDescriptorItem* TDIILocationDescriptorItem::parse(unsigned char* data, unsigned int len,
                                                              unsigned int* bytesRead,
                                                              unsigned short* err) {
    // reserved (1 bit), DII_identification (15 bits), association_tag (16 bits)
    if (data == nullptr || len < 4) {
        SARN_LOGW("%s: TDIILocationDescriptorItem::parse: Item length not valid: %u. Aborting!",
                  len);
        ISDBTUtils::setErrorCode(err, ERROR_DATA_TOO_SHORT);
        return nullptr;
    }
    if (bytesRead != nullptr)
        *bytesRead = 4;
    return new TDIILocationDescriptorItem(static_cast<unsigned short>(bytes::be16(data) & 0x7FFF),
                                          bytes::be16(data + 2));
}

TDIILocationDescriptor::TDIILocationDescriptor(unsigned char* bytes, unsigned int len)
    : TISDBTDescriptor(DESCRIPTOR_TAG, bytes, len), transportProtocolLabel(0) {}

TDIILocationDescriptor::TDIILocationDescriptor(const TDIILocationDescriptor* src)
    : TISDBTDescriptor(*src), transportProtocolLabel(src->transportProtocolLabel) {
    owned::copyAll(src->items, items);
}

TDIILocationDescriptor::~TDIILocationDescriptor() {
    owned::deleteAll(items);
}

TDIILocationDescriptor* TDIILocationDescriptor::parse(unsigned char* data, unsigned int len,
                                                      unsigned int* bytesRead,
                                                      unsigned short* err) {
    // transport_protocol_label, then items up to the end
    if (!parseCommonHeader(data, len, err, 4, DESCRIPTOR_TAG))
        return nullptr;
    TDIILocationDescriptor* d = new TDIILocationDescriptor(data, len);
    d->transportProtocolLabel = data[2];
    auto store = [d](TDIILocationDescriptorItem* item) { d->items.push_back(item); };
    return parseItems<TDIILocationDescriptorItem>(d, "TDIILocationDescriptor", data + 3,
                                                  data[1] - 1u, bytesRead, err, store);
}

void TDIILocationDescriptor::add(TDIILocationDescriptorItem* item) {
    if (item != nullptr)
        items.push_back(item);
}

TDIILocationDescriptorItem* TDIILocationDescriptor::get(unsigned int index) const {
    return owned::at(items, index);
}

}  // namespace Sarn
