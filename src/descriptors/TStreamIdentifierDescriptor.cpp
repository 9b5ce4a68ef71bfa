#include "TStreamIdentifierDescriptor.h"

#include "ISDBTUtils.h"
#include "Json.h"

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
    TStreamIdentifierDescriptor* d = new TStreamIdentifierDescriptor(bytes, length);
    d->componentTag = bytes[2];
    if (bytesRead != nullptr)
        *bytesRead = 1;
    ISDBTUtils::setErrorCode(error, ERROR_NONE);
    return d;
}

std::string TStreamIdentifierDescriptor::toJSON() const {
    std::string out;
    json::Out(out) << "\"name\":\"streamIdentifierDescriptor\",\"component_tag\":" << componentTag;
    return out;
}

}  // namespace Sarn
