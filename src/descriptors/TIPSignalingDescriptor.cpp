#include "TIPSignalingDescriptor.h"

#include <memory>

#include "ISDBTUtils.h"
#include "Parse.h"
#include "Reader.h"

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
    // platform_id (24)
    std::unique_ptr<TIPSignalingDescriptor> d(new TIPSignalingDescriptor(data, len));
    bytes::Reader r(data, len);
    r.skip(2);
    d->platformId = r.u24();
    if (bytesRead != nullptr)
        *bytesRead = 3;
    return parse::done(err, d);
}

}  // namespace Sarn
