#include "TStreamModeDescriptor.h"

#include "Parse.h"
#include "Reader.h"

namespace Sarn {

TStreamModeDescriptor::TStreamModeDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(DESCRIPTOR_TAG, bytes, length), streamMode(0) {}

TStreamModeDescriptor::~TStreamModeDescriptor() {}

TStreamModeDescriptor* TStreamModeDescriptor::parse(unsigned char* bytes, unsigned int length,
                                                    unsigned int* /*bytesRead*/,
                                                    unsigned short* error) {
    // stream_mode(8) and one reserved byte.
    if (!parseCommonHeader(bytes, length, error, 2, DESCRIPTOR_TAG))
        return nullptr;
    std::unique_ptr<TStreamModeDescriptor> d(new TStreamModeDescriptor(bytes, length));
    bytes::Reader r(bytes, length);
    r.skip(2);
    d->streamMode = r.u8();
    return parse::done(error, d);
}

}  // namespace Sarn
