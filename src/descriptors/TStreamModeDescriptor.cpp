#include "TStreamModeDescriptor.h"

#include "DescriptorParse.h"
#include "Reader.h"

namespace Sarn {

TStreamModeDescriptor::TStreamModeDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(DESCRIPTOR_TAG, bytes, length) {}

TStreamModeDescriptor::~TStreamModeDescriptor() {}

TStreamModeDescriptor* TStreamModeDescriptor::parse(unsigned char* data, unsigned int length,
                                                    unsigned int* bytesRead,
                                                    unsigned short* error) {
    return build(nullptr, data, length, bytesRead, error);
}

TStreamModeDescriptor* TStreamModeDescriptor::build(memory::Arena* arena, unsigned char* bytes,
                                                    unsigned int length,
                                                    unsigned int* /*bytesRead*/,
                                                    unsigned short* error) {
    // stream_mode(8) and one reserved byte.
    SARN_OPEN_OR_RETURN(arena, d, r, TStreamModeDescriptor, bytes, length, error, 2,
                        DESCRIPTOR_TAG);
    d->streamMode = r.u8();
    return parse::done(error, d);
}

}  // namespace Sarn
