#ifndef SARN_TSTREAMEVENTDESCRIPTOR_H
#define SARN_TSTREAMEVENTDESCRIPTOR_H

#include "TISDBTDescriptor.h"

namespace Sarn {

/**
 * DSM-CC stream event descriptor: an event identifier, the normal play time
 * at which the event fires (33 bits split into bit 32 (H) and bits 31-0 (L))
 * and the private data that the data broadcast application receives with it.
 * The standard tag 0x1A is mapped onto 0x04 by the DSM-CC section table.
 * Renders as the base descriptor.
 */
class TStreamEventDescriptor : public TISDBTDescriptor {
  public:
    static constexpr unsigned char DESCRIPTOR_TAG = 0x04;

    /**
     * Needs a descriptor_length of at least 10. Everything after the fixed
     * ten bytes of the given length is private data; *bytesRead (when asked)
     * receives length - 2.
     */
    static TStreamEventDescriptor* parse(unsigned char* data, unsigned int length,
                                         unsigned int* bytesRead, unsigned short* error);

    TStreamEventDescriptor(unsigned char* data, unsigned int length);
    TStreamEventDescriptor(const TStreamEventDescriptor&) = delete;
    TStreamEventDescriptor& operator=(const TStreamEventDescriptor&) = delete;
    ~TStreamEventDescriptor() override;

    unsigned short getEventID() const { return eventId; }
    unsigned char getEventNPTH() const { return eventNptH; }
    unsigned int getEventNPTL() const { return eventNptL; }
    unsigned char getPrivateDataSize() const { return privateDataSize; }
    /** The private data bytes (owned by the descriptor), or null when there are none. */
    unsigned char* getPrivateData() const { return privateData; }

  private:
    SARN_DESCRIPTOR_BUILD(TStreamEventDescriptor)
    unsigned short eventId = 0;
    unsigned char eventNptH = 0;
    unsigned int eventNptL = 0;
    unsigned char privateDataSize = 0;
    unsigned char* privateData = nullptr;
};

}  // namespace Sarn

#endif
