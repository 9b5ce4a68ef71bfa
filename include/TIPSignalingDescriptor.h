#ifndef SARN_TIPSIGNALINGDESCRIPTOR_H
#define SARN_TIPSIGNALINGDESCRIPTOR_H

#include "TISDBTDescriptor.h"

namespace Sarn {

/**
 * IP signalling descriptor (AIT tag 0x11): the 24-bit platform_id of the IP
 * platform that carries the applications. Renders with the base members and
 * the raw content.
 */
class TIPSignalingDescriptor : public TISDBTDescriptor {
  public:
    static constexpr unsigned char DESCRIPTOR_TAG = 0x11;

    static TIPSignalingDescriptor* parse(unsigned char* data, unsigned int len,
                                         unsigned int* bytesRead, unsigned short* err);

    TIPSignalingDescriptor(unsigned char* data, unsigned int len);
    explicit TIPSignalingDescriptor(const TIPSignalingDescriptor* src);
    ~TIPSignalingDescriptor() override;

    unsigned int getPlatformID() const { return platformId; }

  private:
    SARN_DESCRIPTOR_BUILD(TIPSignalingDescriptor)
    unsigned int platformId = 0;
};

}  // namespace Sarn

#endif
