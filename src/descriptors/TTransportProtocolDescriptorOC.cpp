#include "TTransportProtocolDescriptorOC.h"

namespace Sarn {

TTransportProtocolDescriptorOC::TTransportProtocolDescriptorOC(unsigned char* bytes,
                                                               unsigned int len)
    : TTransportProtocolDescriptor(TYPE_OC, 1, bytes, len) {}

TTransportProtocolDescriptorOC::TTransportProtocolDescriptorOC(
    const TTransportProtocolDescriptorOC* src)
    : TTransportProtocolDescriptor(*src), TCarouselSelector(*src) {}

TTransportProtocolDescriptorOC::~TTransportProtocolDescriptorOC() {}

int TTransportProtocolDescriptorOC::parseData(unsigned char* data, unsigned int len,
                                              unsigned int* bytesRead, unsigned short* err) {
    return readSelector("OC", data, len, bytesRead, err, &transportProtocolLabel) ? 1 : 0;
}

}  // namespace Sarn
