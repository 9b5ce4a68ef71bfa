#include "TDIILocationDescriptor.h"

#include <memory>

#include "DescriptorParse.h"
#include "ISDBTUtils.h"
#include "ItemLoop.h"
#include "Log.h"
#include "Owned.h"
#include "Reader.h"

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
        return parse::fail(err, ERROR_DATA_TOO_SHORT);
    }
    bytes::Reader r(data, len);
    const unsigned short dii = static_cast<unsigned short>(r.u16() & 0x7FFF);
    const unsigned short associationTag = r.u16();
    if (bytesRead != nullptr)
        *bytesRead = r.position();
    return new TDIILocationDescriptorItem(dii, associationTag);  // the code is left as it stands
}

TDIILocationDescriptor::TDIILocationDescriptor(unsigned char* bytes, unsigned int len)
    : TISDBTDescriptor(DESCRIPTOR_TAG, bytes, len) {}

TDIILocationDescriptor::TDIILocationDescriptor(const TDIILocationDescriptor* src)
    : TISDBTDescriptor(*src), transportProtocolLabel(src->transportProtocolLabel) {
    owned::copyAll(src->items, items);
}

TDIILocationDescriptor::~TDIILocationDescriptor() {
    owned::deleteAll(items);
}

SARN_DESCRIPTOR_PARSE(TDIILocationDescriptor, arena, data, len, bytesRead, err) {
    // transport_protocol_label, then items up to the end
    SARN_OPEN_OR_RETURN(arena, d, r, TDIILocationDescriptor, data, len, err, 4, DESCRIPTOR_TAG);
    bytes::Reader body = r.sub(d->getDescriptorLength());
    d->transportProtocolLabel = body.u8();
    TDIILocationDescriptor* location = d.get();
    auto store = [location](TDIILocationDescriptorItem* item) { location->items.push_back(item); };
    return parseItems<TDIILocationDescriptorItem>(d, "TDIILocationDescriptor", body.rest(),
                                                  bytesRead, err, store);
}

void TDIILocationDescriptor::add(TDIILocationDescriptorItem* item) {
    if (item != nullptr)
        items.push_back(item);
}

TDIILocationDescriptorItem* TDIILocationDescriptor::get(unsigned int index) const {
    return owned::at(items, index);
}

}  // namespace Sarn
