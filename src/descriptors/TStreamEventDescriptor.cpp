#include "TStreamEventDescriptor.h"

#include "DescriptorFields.h"
#include "Parse.h"
#include "Reader.h"

namespace Sarn {

TStreamEventDescriptor::TStreamEventDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(DESCRIPTOR_TAG, bytes, length),
      eventId(0),
      eventNptH(0),
      eventNptL(0),
      privateDataSize(0),
      privateData(nullptr) {}

TStreamEventDescriptor::~TStreamEventDescriptor() {
    delete[] privateData;
}

TStreamEventDescriptor* TStreamEventDescriptor::parse(unsigned char* bytes, unsigned int length,
                                                      unsigned int* bytesRead,
                                                      unsigned short* error) {
    if (!parseCommonHeader(bytes, length, error, 10, DESCRIPTOR_TAG))
        return nullptr;
    // event_id(16), reserved(31) eventNPT(33), then private data up to the end
    // of the bytes given (the section table gives exactly the descriptor).
    std::unique_ptr<TStreamEventDescriptor> d(new TStreamEventDescriptor(bytes, length));
    bytes::Reader r(bytes, length);
    r.skip(2);
    d->eventId = r.u16();
    r.skip(3);
    d->eventNptH = r.u8() & 0x01;
    d->eventNptL = r.u32();
    // The size is kept in one byte, like descriptor_length; the copy never
    // holds more than that byte says.
    d->privateData = fields::copyRest8(r, d->privateDataSize);
    if (bytesRead != nullptr)
        *bytesRead = length - 2;
    return parse::done(error, d);
}

}  // namespace Sarn
