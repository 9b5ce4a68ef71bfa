#include "TCopyrightDescriptor.h"

#include <memory>

#include "DescriptorFields.h"
#include "DescriptorParse.h"

namespace Sarn {

TCopyrightDescriptor::TCopyrightDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(0x0D, bytes, length) {}

TCopyrightDescriptor::~TCopyrightDescriptor() {
    releaseObject(additionalInfo);
}

SARN_DESCRIPTOR_PARSE(TCopyrightDescriptor, arena, bytes, length, bytesRead, error) {
    SARN_OPEN_OR_RETURN(arena, d, r, TCopyrightDescriptor, bytes, length, error, 4, 0x0D);
    d->copyrightId = r.u32();
    // Additional info runs to the end of the bytes handed in; size kept in 8 bits.
    d->additionalInfo = fields::copyRest8(arena, r, d->additionalInfoSize);
    return parse::done(error, d, bytesRead, d->additionalInfoSize + 4u);
}

void TCopyrightDescriptor::appendJSON(std::string& out) const {
    json::Out o(out);
    o << "\"name:\":\"copyrightDescriptor\",\"copyrightId\":" << static_cast<int>(copyrightId)
      << ",\"copyrightAdditionalInfo\":\"";
    json::appendTextUpToZero(o, additionalInfo, additionalInfoSize);
    o << '"';
}

std::string TCopyrightDescriptor::toJSON() const {
    return TISDBTDescriptor::toJSON();
}

}  // namespace Sarn
