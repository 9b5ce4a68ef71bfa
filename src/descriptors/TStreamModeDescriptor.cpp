#include "TStreamModeDescriptor.h"

#include "DescriptorParse.h"
#include "Reader.h"

namespace Sarn {

TStreamModeDescriptor::TStreamModeDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(DESCRIPTOR_TAG, bytes, length) {}

TStreamModeDescriptor::~TStreamModeDescriptor() {}

SARN_DESCRIPTOR_PARSE(TStreamModeDescriptor, arena, bytes, length, bytesRead, error) {
    // stream_mode(8) and one reserved byte.
    SARN_OPEN_OR_RETURN(arena, d, r, TStreamModeDescriptor, bytes, length, error, 2,
                        DESCRIPTOR_TAG);
    d->streamMode = r.u8();
    return parse::done(error, d);
}

}  // namespace Sarn
