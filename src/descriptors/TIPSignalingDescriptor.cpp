#include "TIPSignalingDescriptor.h"

#include "Bytes.h"
#include "ISDBTUtils.h"

namespace Sarn {

TIPSignalingDescriptor::TIPSignalingDescriptor(unsigned char* bytes, unsigned int len)
    : TISDBTDescriptor(DESCRIPTOR_TAG, bytes, len), platformId(0) {}

TIPSignalingDescriptor::TIPSignalingDescriptor(const TIPSignalingDescriptor* src)
    : TISDBTDescriptor(*src), platformId(src->platformId) {}

TIPSignalingDescriptor::~TIPSignalingDescriptor() {}

TIPSignalingDescriptor* TIPSignalingDescriptor::parse(unsigned char* data, unsigned int len,
                                                      unsigned int* bytesRead,
                                                      unsigned short* err) {
    if (!parseCommonHeader(data, len, err, 3, DESCRIPTOR_TAG))
        return nullptr;
    TIPSignalingDescriptor* d = new TIPSignalingDescriptor(data, len);
    d->platformId = bytes::be24(data + 2);
    if (bytesRead != nullptr)
        *bytesRead = 3;
    return d;
}

}  // namespace Sarn
