#include "TLCMDescriptor.h"

#include "Arena.h"
#include "Reader.h"

namespace Sarn {

TLCMDescriptor::TLCMDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(0x7C, bytes, length) {}

TLCMDescriptor::~TLCMDescriptor() {}

SARN_DESCRIPTOR_PARSE(TLCMDescriptor, arena, bytes, length, bytesRead, error) {
    // Fewer than two bytes carry no message at all: such a descriptor is
    // taken as an empty one. From two bytes on the whole fixed part (15
    // bytes) must be there. Neither the tag nor descriptor_length is checked,
    // and the error code is never written.
    if (length < 2)
        return memory::make<TLCMDescriptor>(arena, bytes, length);
    bytes::Reader r(bytes, length);
    if (!r.has(15))
        return nullptr;
    TLCMDescriptor* d = memory::make<TLCMDescriptor>(arena, bytes, length);
    r.skip(2);
    d->messageId = r.u8();
    d->messageLength = r.u16();
    d->resolution = r.u8() & 0x0F;
    d->dph = r.u16();
    d->dpv = r.u16();
    d->dfw = r.u16();
    d->dfh = r.u16();
    d->librasContentType = r.u8();
    return d;
}

}  // namespace Sarn
