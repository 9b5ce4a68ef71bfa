#include "TContentAvailabilityDescriptor.h"

#include <memory>

#include "Json.h"
#include "Parse.h"
#include "Reader.h"

namespace Sarn {

TContentAvailabilityDescriptor::TContentAvailabilityDescriptor(unsigned char* bytes,
                                                               unsigned int length)
    : TISDBTDescriptor(0xDE, bytes, length),
      imageConstrained(0),
      retentionAllowed(0),
      retentionState(0),
      encryptionModeEnabled(0) {}

TContentAvailabilityDescriptor::~TContentAvailabilityDescriptor() {}

TContentAvailabilityDescriptor* TContentAvailabilityDescriptor::parse(unsigned char* bytes,
                                                                      unsigned int length,
                                                                      unsigned int* bytesRead,
                                                                      unsigned short* error) {
    if (!parseCommonHeader(bytes, length, error, 1, 0xDE))
        return nullptr;
    std::unique_ptr<TContentAvailabilityDescriptor> d(
        new TContentAvailabilityDescriptor(bytes, length));
    bytes::Reader r(bytes, length);
    r.skip(2);
    const unsigned char b = r.u8();
    d->imageConstrained = (b & 0x20) == 0;
    d->retentionAllowed = (b & 0x10) == 0;
    d->retentionState = (b >> 1) & 0x07;
    d->encryptionModeEnabled = (b & 0x01) == 0;
    if (bytesRead != nullptr)
        *bytesRead = length;
    return parse::done(error, d);
}

std::string TContentAvailabilityDescriptor::toJSON() const {
    std::string out;
    json::Out o(out);
    // The keys are named after the wire fields but carry the inverted values.
    o << "\"name\":\"contentAvailabilityDescriptor\",\"imageConstraintToken\":" << imageConstrained
      << ",\"retentionMode\":" << retentionAllowed << ",\"retentionState\":" << retentionState
      << ",\"encryptionMode\":" << encryptionModeEnabled;
    return out;
}

}  // namespace Sarn
