#include "TNPTEndpointDescriptor.h"

#include "Bytes.h"

namespace Sarn {

TNPTEndpointDescriptor::TNPTEndpointDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(DESCRIPTOR_TAG, bytes, length),
      startNptH(0),
      startNptL(0),
      stopNptH(0),
      stopNptL(0) {}

TNPTEndpointDescriptor::~TNPTEndpointDescriptor() {}

TNPTEndpointDescriptor* TNPTEndpointDescriptor::parse(unsigned char* bytes, unsigned int length,
                                                      unsigned int* /*bytesRead*/,
                                                      unsigned short* error) {
    if (!parseCommonHeader(bytes, length, error, 14, DESCRIPTOR_TAG))
        return nullptr;
    // reserved(15) start_NPT(33), reserved(31) stop_NPT(33).
    TNPTEndpointDescriptor* d = new TNPTEndpointDescriptor(bytes, length);
    d->startNptH = bytes[3] & 0x01;
    d->startNptL = bytes::be32(bytes + 4);
    d->stopNptH = bytes[11] & 0x01;
    d->stopNptL = bytes::be32(bytes + 12);
    return d;
}

}  // namespace Sarn
