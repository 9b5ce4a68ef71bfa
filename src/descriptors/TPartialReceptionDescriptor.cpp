#include "TPartialReceptionDescriptor.h"

#include "DescriptorFields.h"
#include "DescriptorParse.h"
#include "Reader.h"

namespace Sarn {

TPartialReceptionDescriptor::TPartialReceptionDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(0xFB, bytes, length) {}

TPartialReceptionDescriptor::~TPartialReceptionDescriptor() {
    releaseObject(serviceIds);
}

SARN_DESCRIPTOR_PARSE(TPartialReceptionDescriptor, arena, bytes, length, bytesRead, error) {
    // Two bytes per service_id up to the end of the bytes handed in; the count
    // is kept in 8 bits (and only that many are read).
    SARN_OPEN_OR_RETURN(arena, d, r, TPartialReceptionDescriptor, bytes, length, error, 0, 0xFB);
    const unsigned int payload = r.remaining();
    d->serviceIds = fields::readRest16(arena, r, d->serviceIdCount);
    return parse::done(error, d, bytesRead, payload);
}

void TPartialReceptionDescriptor::appendJSON(std::string& out) const {
    appendBaseJSON(out, 0);
    json::Out o(out);
    o << ",\"name\":\"partialReceptionDescriptor\",\"service_id\":[";
    json::appendNumbers(o, serviceIds, serviceIdCount);
    o << ']';
}

std::string TPartialReceptionDescriptor::toJSON() const {
    return TISDBTDescriptor::toJSON();
}

}  // namespace Sarn
