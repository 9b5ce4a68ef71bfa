#include "TContentAvailabilityDescriptor.h"

#include <memory>

#include "DescriptorParse.h"
#include "Json.h"
#include "Reader.h"

namespace Sarn {

TContentAvailabilityDescriptor::TContentAvailabilityDescriptor(unsigned char* bytes,
                                                               unsigned int length)
    : TISDBTDescriptor(0xDE, bytes, length) {}

TContentAvailabilityDescriptor::~TContentAvailabilityDescriptor() {}

SARN_DESCRIPTOR_PARSE(TContentAvailabilityDescriptor, arena, bytes, length, bytesRead, error) {
    SARN_OPEN_OR_RETURN(arena, d, r, TContentAvailabilityDescriptor, bytes, length, error, 1, 0xDE);
    const unsigned char b = r.u8();
    d->imageConstrained = (b & 0x20) == 0;
    d->retentionAllowed = (b & 0x10) == 0;
    d->retentionState = (b >> 1) & 0x07;
    d->encryptionModeEnabled = (b & 0x01) == 0;
    return parse::done(error, d, bytesRead, length);
}

void TContentAvailabilityDescriptor::appendJSON(std::string& out) const {
    json::Out o(out);
    // The keys are named after the wire fields but carry the inverted values.
    o << "\"name\":\"contentAvailabilityDescriptor\",\"imageConstraintToken\":" << imageConstrained
      << ",\"retentionMode\":" << retentionAllowed << ",\"retentionState\":" << retentionState
      << ",\"encryptionMode\":" << encryptionModeEnabled;
}

std::string TContentAvailabilityDescriptor::toJSON() const {
    return TISDBTDescriptor::toJSON();
}

}  // namespace Sarn
