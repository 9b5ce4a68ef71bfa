#ifndef SARN_TTRANSPORTPROTOCOLDESCRIPTORPC_H
#define SARN_TTRANSPORTPROTOCOLDESCRIPTORPC_H

#include "TCarouselSelector.h"
#include "TTransportProtocolDescriptor.h"

namespace Sarn {

/**
 * Carousel transport with protocol_id 5 and the object carousel's type.
 * parse() reads protocol_id 5 as a TTransportProtocolDescriptorOC; this class
 * is for callers that build such a descriptor themselves.
 */
class TTransportProtocolDescriptorPC : public TTransportProtocolDescriptor,
                                       public TCarouselSelector {
  public:
    TTransportProtocolDescriptorPC(unsigned char* data, unsigned int len);
    explicit TTransportProtocolDescriptorPC(const TTransportProtocolDescriptorPC* src);
    ~TTransportProtocolDescriptorPC() override;

    int parseData(unsigned char* data, unsigned int len, unsigned int* bytesRead,
                  unsigned short* err) override;
};

}  // namespace Sarn

#endif
