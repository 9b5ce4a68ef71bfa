#include "TTransportProtocolDescriptorDC.h"

namespace Sarn {

TTransportProtocolDescriptorDC::TTransportProtocolDescriptorDC(unsigned char* bytes,
                                                               unsigned int len)
    : TTransportProtocolDescriptor(TYPE_DC, 4, bytes, len) {}

TTransportProtocolDescriptorDC::TTransportProtocolDescriptorDC(
    const TTransportProtocolDescriptorDC* src)
    : TTransportProtocolDescriptor(*src), TCarouselSelector(*src) {}

TTransportProtocolDescriptorDC::~TTransportProtocolDescriptorDC() {}

int TTransportProtocolDescriptorDC::parseData(unsigned char* data, unsigned int len,
                                              unsigned int* bytesRead, unsigned short* err) {
    return readSelector("DC", data, len, bytesRead, err, &transportProtocolLabel) ? 1 : 0;
}

}  // namespace Sarn
