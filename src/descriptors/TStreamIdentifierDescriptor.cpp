#include "TStreamIdentifierDescriptor.h"

#include "Json.h"
#include "Parse.h"
#include "Reader.h"

namespace Sarn {

TStreamIdentifierDescriptor::TStreamIdentifierDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(0x52, bytes, length), componentTag(0) {}

TStreamIdentifierDescriptor::~TStreamIdentifierDescriptor() {}

TStreamIdentifierDescriptor* TStreamIdentifierDescriptor::parse(unsigned char* bytes,
                                                                unsigned int length,
                                                                unsigned int* bytesRead,
                                                                unsigned short* error) {
    if (!parseCommonHeader(bytes, length, error, 1, 0x52))
        return nullptr;
    std::unique_ptr<TStreamIdentifierDescriptor> d(new TStreamIdentifierDescriptor(bytes, length));
    bytes::Reader r(bytes, length);
    r.skip(2);
    d->componentTag = r.u8();
    if (bytesRead != nullptr)
        *bytesRead = 1;
    return parse::done(error, d);
}

std::string TStreamIdentifierDescriptor::toJSON() const {
    std::string out;
    json::Out(out) << "\"name\":\"streamIdentifierDescriptor\",\"component_tag\":" << componentTag;
    return out;
}

}  // namespace Sarn
