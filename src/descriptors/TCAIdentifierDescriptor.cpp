#include "TCAIdentifierDescriptor.h"

#include <memory>

#include "DescriptorFields.h"
#include "DescriptorParse.h"

namespace Sarn {

TCAIdentifierDescriptor::TCAIdentifierDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(0x53, bytes, length) {}

TCAIdentifierDescriptor::~TCAIdentifierDescriptor() {
    releaseObject(caSystemIds);
}

SARN_DESCRIPTOR_PARSE(TCAIdentifierDescriptor, arena, bytes, length, bytesRead, error) {
    SARN_OPEN_OR_RETURN(arena, d, r, TCAIdentifierDescriptor, bytes, length, error, 2, 0x53);
    // Two bytes per CA_system_id up to the end of the bytes handed in; an odd
    // trailing byte is ignored and the count is kept in 8 bits.
    const unsigned int payload = r.remaining();
    d->caSystemIds = fields::readRest16(arena, r, d->caSystemIdCount);
    return parse::done(error, d, bytesRead, payload);
}

void TCAIdentifierDescriptor::appendJSON(std::string& out) const {
    json::Out o(out);
    o << "\"name\":\"caIdentifierDescriptor\",\"caSystemId\":[";
    json::appendNumbers(o, caSystemIds, caSystemIdCount);
    o << ']';
}

std::string TCAIdentifierDescriptor::toJSON() const {
    return TISDBTDescriptor::toJSON();
}

}  // namespace Sarn
