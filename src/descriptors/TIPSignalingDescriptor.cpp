#include "TIPSignalingDescriptor.h"

#include <memory>

#include "DescriptorParse.h"
#include "ISDBTUtils.h"
#include "Reader.h"

namespace Sarn {

TIPSignalingDescriptor::TIPSignalingDescriptor(unsigned char* bytes, unsigned int len)
    : TISDBTDescriptor(DESCRIPTOR_TAG, bytes, len) {}

TIPSignalingDescriptor::TIPSignalingDescriptor(const TIPSignalingDescriptor* src)
    : TISDBTDescriptor(*src), platformId(src->platformId) {}

TIPSignalingDescriptor::~TIPSignalingDescriptor() {}

SARN_DESCRIPTOR_PARSE(TIPSignalingDescriptor, arena, data, len, bytesRead, err) {
    // platform_id (24)
    SARN_OPEN_OR_RETURN(arena, d, r, TIPSignalingDescriptor, data, len, err, 3, DESCRIPTOR_TAG);
    d->platformId = r.u24();
    return parse::done(err, d, bytesRead, 3);
}

}  // namespace Sarn
