#include "TCarouselIdentifierDescriptor.h"

#include <memory>

#include "DescriptorFields.h"
#include "DescriptorParse.h"
#include "Json.h"

namespace Sarn {

TCarouselIdentifierDescriptor::TCarouselIdentifierDescriptor(unsigned char* bytes,
                                                             unsigned int length)
    : TISDBTDescriptor(0x13, bytes, length) {}

TCarouselIdentifierDescriptor::~TCarouselIdentifierDescriptor() {
    delete[] objectKeyData;
    releaseObject(privateData);
}

SARN_DESCRIPTOR_PARSE(TCarouselIdentifierDescriptor, arena, bytes, length, bytesRead, error) {
    SARN_OPEN_OR_RETURN(arena, d, r, TCarouselIdentifierDescriptor, bytes, length, error, 4, 0x13);
    d->carouselId = r.u32();
    // Everything after carousel_id is kept undecoded. The size field is 8
    // bits wide, so only that many bytes are kept from an oversized buffer.
    d->privateData = fields::copyRest8(arena, r, d->privateDataSize);
    return parse::done(error, d, bytesRead, length - 2);
}

void TCarouselIdentifierDescriptor::appendJSON(std::string& out) const {
    json::Out(out) << "\"name\":\"carouselIdentifierDescriptor\",\"carouselId\":" << carouselId;
}

std::string TCarouselIdentifierDescriptor::toJSON() const {
    return TISDBTDescriptor::toJSON();
}

}  // namespace Sarn
