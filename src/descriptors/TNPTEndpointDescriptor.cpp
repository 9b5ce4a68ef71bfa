#include "TNPTEndpointDescriptor.h"

#include "Parse.h"
#include "Reader.h"

namespace Sarn {

TNPTEndpointDescriptor::TNPTEndpointDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(DESCRIPTOR_TAG, bytes, length) {}

TNPTEndpointDescriptor::~TNPTEndpointDescriptor() {}

TNPTEndpointDescriptor* TNPTEndpointDescriptor::parse(unsigned char* bytes, unsigned int length,
                                                      unsigned int* /*bytesRead*/,
                                                      unsigned short* error) {
    if (!parseCommonHeader(bytes, length, error, 14, DESCRIPTOR_TAG))
        return nullptr;
    // reserved(15) start_NPT(33), reserved(31) stop_NPT(33).
    std::unique_ptr<TNPTEndpointDescriptor> d(new TNPTEndpointDescriptor(bytes, length));
    bytes::Reader r(bytes, length);
    r.skip(3);
    d->startNptH = r.u8() & 0x01;
    d->startNptL = r.u32();
    r.skip(3);
    d->stopNptH = r.u8() & 0x01;
    d->stopNptL = r.u32();
    return parse::done(error, d);
}

}  // namespace Sarn
