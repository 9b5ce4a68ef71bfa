#include "TStreamEventDescriptor.h"

#include "DescriptorFields.h"
#include "DescriptorParse.h"
#include "Reader.h"

namespace Sarn {

TStreamEventDescriptor::TStreamEventDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(DESCRIPTOR_TAG, bytes, length) {}

TStreamEventDescriptor::~TStreamEventDescriptor() {
    releaseObject(privateData);
}

SARN_DESCRIPTOR_PARSE(TStreamEventDescriptor, arena, bytes, length, bytesRead, error) {
    // event_id(16), reserved(31) eventNPT(33), then private data up to the end
    // of the bytes given (the section table gives exactly the descriptor).
    SARN_OPEN_OR_RETURN(arena, d, r, TStreamEventDescriptor, bytes, length, error, 10,
                        DESCRIPTOR_TAG);
    d->eventId = r.u16();
    r.skip(3);
    d->eventNptH = r.u8() & 0x01;
    d->eventNptL = r.u32();
    // The size is kept in one byte, like descriptor_length; the copy never
    // holds more than that byte says.
    d->privateData = fields::copyRest8(arena, r, d->privateDataSize);
    return parse::done(error, d, bytesRead, length - 2);
}

}  // namespace Sarn
