#ifndef SARN_TNPTENDPOINTDESCRIPTOR_H
#define SARN_TNPTENDPOINTDESCRIPTOR_H

#include "TISDBTDescriptor.h"

namespace Sarn {

/**
 * DSM-CC NPT endpoint descriptor: the normal play time at which an event
 * stream starts and stops, each 33 bits split into bit 32 (H) and bits 31-0
 * (L). Renders as the base descriptor.
 */
class TNPTEndpointDescriptor : public TISDBTDescriptor {
  public:
    static constexpr unsigned char DESCRIPTOR_TAG = 0x02;

    /** Needs a descriptor_length of at least 14; never writes *bytesRead. */
    static TNPTEndpointDescriptor* parse(unsigned char* data, unsigned int length,
                                         unsigned int* bytesRead, unsigned short* error);

    TNPTEndpointDescriptor(unsigned char* data, unsigned int length);
    ~TNPTEndpointDescriptor() override;

    unsigned char getNPTStartH() const { return startNptH; }
    unsigned int getNPTStartL() const { return startNptL; }
    unsigned char getNPTStopH() const { return stopNptH; }
    unsigned int getNPTStopL() const { return stopNptL; }

  private:
    SARN_DESCRIPTOR_BUILD(TNPTEndpointDescriptor)
    unsigned char startNptH = 0;
    unsigned int startNptL = 0;
    unsigned char stopNptH = 0;
    unsigned int stopNptL = 0;
};

}  // namespace Sarn

#endif
