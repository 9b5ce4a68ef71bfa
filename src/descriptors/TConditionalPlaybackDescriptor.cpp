#include "TConditionalPlaybackDescriptor.h"

#include "DescriptorFields.h"

namespace Sarn {

TConditionalPlaybackDescriptor::TConditionalPlaybackDescriptor(unsigned char* bytes,
                                                               unsigned int length)
    : TISDBTDescriptor(0xF8, bytes, length),
      caSystemId(0),
      caPid(0),
      privateDataSize(0),
      privateData(nullptr) {}

TConditionalPlaybackDescriptor::~TConditionalPlaybackDescriptor() {
    delete[] privateData;
}

TConditionalPlaybackDescriptor* TConditionalPlaybackDescriptor::parse(unsigned char* bytes,
                                                                      unsigned int length,
                                                                      unsigned int* bytesRead,
                                                                      unsigned short* error) {
    if (!parseCommonHeader(bytes, length, error, 4, 0xF8))
        return nullptr;
    TConditionalPlaybackDescriptor* d = new TConditionalPlaybackDescriptor(bytes, length);
    d->caSystemId = bytes::be16(bytes + 2);
    d->caPid = bytes::pid13(bytes + 4);
    // Private data runs to the end of the bytes handed in; size kept in 8 bits.
    d->privateDataSize = static_cast<unsigned char>(length - 6);
    d->privateData = fields::copyBytes(bytes + 6, d->privateDataSize);
    if (bytesRead != nullptr)
        *bytesRead = length - 2;
    return d;
}

std::string TConditionalPlaybackDescriptor::toJSON() const {
    std::string out;
    json::Out o(out);
    // The colon inside the first key is part of our JSON interface: clients
    // match the key as written.
    o << "\"name:\":\"conditionalPlaybackDescriptor\",\"caSystemId\":" << caSystemId
      << ",\"caPid\":" << caPid << ",\"privateData\":\"";
    json::appendTextUpToZero(o, privateData, privateDataSize);
    o << '"';
    return out;
}

}  // namespace Sarn
