#include "TLCMDescriptor.h"

#include "Bytes.h"

namespace Sarn {

TLCMDescriptor::TLCMDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(0x7C, bytes, length),
      messageId(0),
      messageLength(0),
      resolution(0),
      dictionaryVersion(0),
      dph(0),
      dpv(0),
      dfw(0),
      dfh(0),
      librasContentType(0),
      networkId(0),
      transportStreamId(0),
      serviceId(0) {}

TLCMDescriptor::~TLCMDescriptor() {}

TLCMDescriptor* TLCMDescriptor::parse(unsigned char* bytes, unsigned int length, unsigned int*,
                                      unsigned short*) {
    // Fewer than two bytes carry no message at all: such a descriptor is
    // taken as an empty one. From two bytes on the whole fixed part (15
    // bytes) must be there.
    if (length < 2)
        return new TLCMDescriptor(bytes, length);
    if (length < 15 || bytes == nullptr)
        return nullptr;
    TLCMDescriptor* d = new TLCMDescriptor(bytes, length);
    d->messageId = bytes[2];
    d->messageLength = bytes::be16(bytes + 3);
    d->resolution = bytes[5] & 0x0F;
    d->dph = bytes::be16(bytes + 6);
    d->dpv = bytes::be16(bytes + 8);
    d->dfw = bytes::be16(bytes + 10);
    d->dfh = bytes::be16(bytes + 12);
    d->librasContentType = bytes[14];
    return d;
}

}  // namespace Sarn
