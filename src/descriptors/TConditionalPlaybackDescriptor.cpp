#include "TConditionalPlaybackDescriptor.h"

#include <memory>

#include "DescriptorFields.h"
#include "DescriptorParse.h"

namespace Sarn {

TConditionalPlaybackDescriptor::TConditionalPlaybackDescriptor(unsigned char* bytes,
                                                               unsigned int length)
    : TISDBTDescriptor(0xF8, bytes, length) {}

TConditionalPlaybackDescriptor::~TConditionalPlaybackDescriptor() {
    releaseObject(privateData);
}

SARN_DESCRIPTOR_PARSE(TConditionalPlaybackDescriptor, arena, bytes, length, bytesRead, error) {
    SARN_OPEN_OR_RETURN(arena, d, r, TConditionalPlaybackDescriptor, bytes, length, error, 4, 0xF8);
    d->caSystemId = r.u16();
    d->caPid = r.pid();
    // Private data runs to the end of the bytes handed in; size kept in 8 bits.
    d->privateData = fields::copyRest8(arena, r, d->privateDataSize);
    return parse::done(error, d, bytesRead, length - 2);
}

void TConditionalPlaybackDescriptor::appendJSON(std::string& out) const {
    json::Out o(out);
    // The colon inside the first key is part of our JSON interface: clients
    // match the key as written.
    o << "\"name:\":\"conditionalPlaybackDescriptor\",\"caSystemId\":" << caSystemId
      << ",\"caPid\":" << caPid << ",\"privateData\":\"";
    json::appendTextUpToZero(o, privateData, privateDataSize);
    o << '"';
}

std::string TConditionalPlaybackDescriptor::toJSON() const {
    return TISDBTDescriptor::toJSON();
}

}  // namespace Sarn
