#include "TCarouselIdentifierDescriptor.h"

#include <memory>

#include "DescriptorFields.h"
#include "Json.h"
#include "Parse.h"

namespace Sarn {

TCarouselIdentifierDescriptor::TCarouselIdentifierDescriptor(unsigned char* bytes,
                                                             unsigned int length)
    : TISDBTDescriptor(0x13, bytes, length),
      carouselId(0),
      formatId(0),
      moduleVersion(0),
      moduleId(0),
      blockSize(0),
      moduleSize(0),
      compressionMethod(0),
      originalSize(0),
      timeOut(0),
      objectKeyLength(0),
      objectKeyData(nullptr),
      privateDataSize(0),
      privateData(nullptr) {}

TCarouselIdentifierDescriptor::~TCarouselIdentifierDescriptor() {
    delete[] objectKeyData;
    delete[] privateData;
}

TCarouselIdentifierDescriptor* TCarouselIdentifierDescriptor::parse(unsigned char* bytes,
                                                                    unsigned int length,
                                                                    unsigned int* bytesRead,
                                                                    unsigned short* error) {
    if (!parseCommonHeader(bytes, length, error, 4, 0x13))
        return nullptr;
    std::unique_ptr<TCarouselIdentifierDescriptor> d(
        new TCarouselIdentifierDescriptor(bytes, length));
    bytes::Reader r(bytes, length);
    r.skip(2);
    d->carouselId = r.u32();
    // Everything after carousel_id is kept undecoded. The size field is 8
    // bits wide, so only that many bytes are kept from an oversized buffer.
    d->privateData = fields::copyRest8(r, d->privateDataSize);
    if (bytesRead != nullptr)
        *bytesRead = length - 2;
    return parse::done(error, d);
}

std::string TCarouselIdentifierDescriptor::toJSON() const {
    std::string out;
    json::Out(out) << "\"name\":\"carouselIdentifierDescriptor\",\"carouselId\":" << carouselId;
    return out;
}

}  // namespace Sarn
