#include "TCarouselIdentifierDescriptor.h"

#include <cstring>

#include "Bytes.h"
#include "ISDBTUtils.h"
#include "Json.h"

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
    TCarouselIdentifierDescriptor* d = new TCarouselIdentifierDescriptor(bytes, length);
    d->carouselId = bytes::be32(bytes + 2);
    // Everything after carousel_id is kept undecoded. The size field is 8
    // bits wide, so only that many bytes are kept from an oversized buffer.
    d->privateDataSize = static_cast<unsigned char>(length - 6);
    if (d->privateDataSize != 0) {
        d->privateData = new unsigned char[d->privateDataSize];
        std::memcpy(d->privateData, bytes + 6, d->privateDataSize);
    }
    if (bytesRead != nullptr)
        *bytesRead = length - 2;
    ISDBTUtils::setErrorCode(error, ERROR_NONE);
    return d;
}

std::string TCarouselIdentifierDescriptor::toJSON() const {
    std::string out;
    json::Out(out) << "\"name\":\"carouselIdentifierDescriptor\",\"carouselId\":" << carouselId;
    return out;
}

}  // namespace Sarn
