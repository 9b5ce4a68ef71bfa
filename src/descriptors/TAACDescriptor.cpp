#include "TAACDescriptor.h"

#include <memory>

#include "DescriptorFields.h"
#include "DescriptorParse.h"
#include "Log.h"

namespace Sarn {

TAACDescriptor::TAACDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(0x7C, bytes, length) {}

TAACDescriptor::~TAACDescriptor() {
    releaseObject(additionalInfo);
}

SARN_DESCRIPTOR_PARSE(TAACDescriptor, arena, bytes, length, bytesRead, error) {
    SARN_OPEN_OR_RETURN(arena, d, r, TAACDescriptor, bytes, length, error, 2, 0x7C);
    d->profileAndLevel = r.u8();
    d->aacTypeFlag = (r.u8() >> 7) & 1;
    // The payload size is taken from the bytes handed in; the additional info
    // runs to their end and its size is kept in 8 bits.
    if (d->aacTypeFlag) {
        if (r.atEnd()) {
            SARN_LOGW(
                "%s: TAACDescriptor::parse: Longer data length is required: %u < %u. Aborting!", 0u,
                1u);
            return parse::fail(error, ERROR_DESCRIPTOR_LENGTH);
        }
        d->aacType = r.u8();
    }
    d->additionalInfo = fields::copyRest8(arena, r, d->additionalInfoSize);
    return parse::done(error, d, bytesRead,
                       2u + (d->aacTypeFlag ? 1u : 0u) + d->additionalInfoSize);
}

void TAACDescriptor::appendJSON(std::string& out) const {
    appendBaseJSON(out, 0);
    json::Out o(out);
    o << ",\"profile_and_level\":" << profileAndLevel << ",\"AAC_type_flag\":" << aacTypeFlag;
    if (aacTypeFlag)
        o << ",\"AAC_type\":" << aacType;
    if (additionalInfoSize != 0) {
        o << ",\"additional_info\":\"0x";
        json::appendHexBytes(o, additionalInfo, additionalInfoSize);
        o << '"';
    }
}

std::string TAACDescriptor::toJSON() const {
    return TISDBTDescriptor::toJSON();
}

}  // namespace Sarn
