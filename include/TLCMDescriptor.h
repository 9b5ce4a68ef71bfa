#ifndef SARN_TLCMDESCRIPTOR_H
#define SARN_TLCMDESCRIPTOR_H

#include "TISDBTDescriptor.h"

namespace Sarn {

/**
 * Libras control message (tag 0x7C): message identifier and length, the
 * resolution and geometry of the sign-language window and the content type.
 * The parser is lenient: it checks no header, writes neither the byte count
 * nor the error code, and renders through the base JSON.
 */
class TLCMDescriptor : public TISDBTDescriptor {
  public:
    /**
     * Null for 2 to 14 bytes; fewer than 2 bytes give an object whose fields
     * are all 0.
     */
    static TLCMDescriptor* parse(unsigned char* data, unsigned int length, unsigned int* bytesRead,
                                 unsigned short* error);

    TLCMDescriptor(unsigned char* data, unsigned int length);
    ~TLCMDescriptor() override;

    unsigned char getMessageId() const { return messageId; }
    unsigned short getMessageLength() const { return messageLength; }
    unsigned char getResolution() const { return resolution; }
    unsigned char getDictionaryVersion() const { return dictionaryVersion; }
    unsigned short getDph() const { return dph; }
    unsigned short getDpv() const { return dpv; }
    unsigned short getDfw() const { return dfw; }
    unsigned short getDfh() const { return dfh; }
    unsigned char getLibrasContentType() const { return librasContentType; }
    unsigned short getNetworkId() const { return networkId; }
    unsigned short getTransportStreamId() const { return transportStreamId; }
    unsigned short getServiceId() const { return serviceId; }

  private:
    SARN_DESCRIPTOR_BUILD(TLCMDescriptor)
    unsigned char messageId = 0;
    unsigned short messageLength = 0;
    unsigned char resolution = 0;
    unsigned char dictionaryVersion = 0;
    unsigned short dph = 0;
    unsigned short dpv = 0;
    unsigned short dfw = 0;
    unsigned short dfh = 0;
    unsigned char librasContentType = 0;
    unsigned short networkId = 0;
    unsigned short transportStreamId = 0;
    unsigned short serviceId = 0;
};

}  // namespace Sarn

#endif
