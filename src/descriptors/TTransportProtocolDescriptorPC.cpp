#include "TTransportProtocolDescriptorPC.h"

namespace Sarn {

TTransportProtocolDescriptorPC::TTransportProtocolDescriptorPC(unsigned char* bytes,
                                                               unsigned int len)
    : TTransportProtocolDescriptor(TYPE_OC, 1, bytes, len) {
    // Constructed as an object carousel, then given its own protocol_id.
    protocolId = 5;
}

TTransportProtocolDescriptorPC::TTransportProtocolDescriptorPC(
    const TTransportProtocolDescriptorPC* src)
    : TTransportProtocolDescriptor(*src), TCarouselSelector(*src) {}

TTransportProtocolDescriptorPC::~TTransportProtocolDescriptorPC() {}

int TTransportProtocolDescriptorPC::parseData(unsigned char* data, unsigned int len,
                                              unsigned int* bytesRead, unsigned short* err) {
    return readSelector("PC", data, len, bytesRead, err, &transportProtocolLabel) ? 1 : 0;
}

}  // namespace Sarn
