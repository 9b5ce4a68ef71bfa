#include "TNPTEndpointDescriptor.h"

#include "DescriptorParse.h"
#include "Reader.h"

namespace Sarn {

TNPTEndpointDescriptor::TNPTEndpointDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(DESCRIPTOR_TAG, bytes, length) {}

TNPTEndpointDescriptor::~TNPTEndpointDescriptor() {}

SARN_DESCRIPTOR_PARSE(TNPTEndpointDescriptor, arena, bytes, length, bytesRead, error) {
    // reserved(15) start_NPT(33), reserved(31) stop_NPT(33).
    SARN_OPEN_OR_RETURN(arena, d, r, TNPTEndpointDescriptor, bytes, length, error, 14,
                        DESCRIPTOR_TAG);
    r.skip(1);
    d->startNptH = r.u8() & 0x01;
    d->startNptL = r.u32();
    r.skip(3);
    d->stopNptH = r.u8() & 0x01;
    d->stopNptL = r.u32();
    return parse::done(error, d);
}

}  // namespace Sarn
