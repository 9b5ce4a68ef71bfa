#ifndef SARN_TTRANSPORTPROTOCOLDESCRIPTOROC_H
#define SARN_TTRANSPORTPROTOCOLDESCRIPTOROC_H

#include "TCarouselSelector.h"
#include "TTransportProtocolDescriptor.h"

namespace Sarn {

/** Object carousel transport (protocol_id 1; also taken for protocol_id 5). */
class TTransportProtocolDescriptorOC : public TTransportProtocolDescriptor,
                                       public TCarouselSelector {
  public:
    TTransportProtocolDescriptorOC(unsigned char* data, unsigned int len);
    explicit TTransportProtocolDescriptorOC(const TTransportProtocolDescriptorOC* src);
    ~TTransportProtocolDescriptorOC() override;

    int parseData(unsigned char* data, unsigned int len, unsigned int* bytesRead,
                  unsigned short* err) override;
};

}  // namespace Sarn

#endif
