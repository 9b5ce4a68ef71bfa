#include "TStreamIdentifierDescriptor.h"

#include "DescriptorParse.h"
#include "Json.h"
#include "Reader.h"

namespace Sarn {

TStreamIdentifierDescriptor::TStreamIdentifierDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(0x52, bytes, length) {}

TStreamIdentifierDescriptor::~TStreamIdentifierDescriptor() {}

SARN_DESCRIPTOR_PARSE(TStreamIdentifierDescriptor, arena, bytes, length, bytesRead, error) {
    SARN_OPEN_OR_RETURN(arena, d, r, TStreamIdentifierDescriptor, bytes, length, error, 1, 0x52);
    d->componentTag = r.u8();
    return parse::done(error, d, bytesRead, 1);
}

void TStreamIdentifierDescriptor::appendJSON(std::string& out) const {
    json::Out(out) << "\"name\":\"streamIdentifierDescriptor\",\"component_tag\":" << componentTag;
}

std::string TStreamIdentifierDescriptor::toJSON() const {
    return TISDBTDescriptor::toJSON();
}

}  // namespace Sarn
