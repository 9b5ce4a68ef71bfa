#ifndef SARN_TSTREAMMODEDESCRIPTOR_H
#define SARN_TSTREAMMODEDESCRIPTOR_H

#include "TISDBTDescriptor.h"

namespace Sarn {

/**
 * DSM-CC stream mode descriptor: the state of the stream's normal play time
 * (open, pause, transport and so on). Renders as the base descriptor.
 */
class TStreamModeDescriptor : public TISDBTDescriptor {
  public:
    static constexpr unsigned char DESCRIPTOR_TAG = 0x03;

    /** Needs a descriptor_length of at least 2; never writes *bytesRead. */
    static TStreamModeDescriptor* parse(unsigned char* data, unsigned int length,
                                        unsigned int* bytesRead, unsigned short* error);

    TStreamModeDescriptor(unsigned char* data, unsigned int length);
    ~TStreamModeDescriptor() override;

    unsigned char getStreamMode() const { return streamMode; }

  private:
    SARN_DESCRIPTOR_BUILD(TStreamModeDescriptor)
    unsigned char streamMode = 0;
};

}  // namespace Sarn

#endif
