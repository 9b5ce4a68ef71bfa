#include "TCAIdentifierDescriptor.h"

#include <memory>

#include "DescriptorFields.h"
#include "Parse.h"

namespace Sarn {

TCAIdentifierDescriptor::TCAIdentifierDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(0x53, bytes, length), caSystemIdCount(0), caSystemIds(nullptr) {}

TCAIdentifierDescriptor::~TCAIdentifierDescriptor() {
    delete[] caSystemIds;
}

TCAIdentifierDescriptor* TCAIdentifierDescriptor::parse(unsigned char* bytes, unsigned int length,
                                                        unsigned int* bytesRead,
                                                        unsigned short* error) {
    if (!parseCommonHeader(bytes, length, error, 2, 0x53))
        return nullptr;
    std::unique_ptr<TCAIdentifierDescriptor> d(new TCAIdentifierDescriptor(bytes, length));
    bytes::Reader r(bytes, length);
    r.skip(2);
    // Two bytes per CA_system_id up to the end of the bytes handed in; an odd
    // trailing byte is ignored and the count is kept in 8 bits.
    const unsigned int payload = r.remaining();
    if (payload != 0) {
        d->caSystemIdCount = static_cast<unsigned char>(payload / 2);
        d->caSystemIds = fields::readBe16Array(r, d->caSystemIdCount, payload);
    }
    if (bytesRead != nullptr)
        *bytesRead = payload;
    return parse::done(error, d);
}

std::string TCAIdentifierDescriptor::toJSON() const {
    std::string out;
    json::Out o(out);
    o << "\"name\":\"caIdentifierDescriptor\",\"caSystemId\":[";
    json::appendNumbers(o, caSystemIds, caSystemIdCount);
    o << ']';
    return out;
}

}  // namespace Sarn
