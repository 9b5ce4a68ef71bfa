#ifndef SARN_TTRANSPORTPROTOCOLDESCRIPTORDC_H
#define SARN_TTRANSPORTPROTOCOLDESCRIPTORDC_H

#include "TCarouselSelector.h"
#include "TTransportProtocolDescriptor.h"

namespace Sarn {

/** Data carousel transport (protocol_id 4). */
class TTransportProtocolDescriptorDC : public TTransportProtocolDescriptor,
                                       public TCarouselSelector {
  public:
    TTransportProtocolDescriptorDC(unsigned char* data, unsigned int len);
    explicit TTransportProtocolDescriptorDC(const TTransportProtocolDescriptorDC* src);
    ~TTransportProtocolDescriptorDC() override;

    int parseData(unsigned char* data, unsigned int len, unsigned int* bytesRead,
                  unsigned short* err) override;
};

}  // namespace Sarn

#endif
