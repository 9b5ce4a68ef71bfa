#include "TCopyrightDescriptor.h"

#include <memory>

#include "DescriptorFields.h"
#include "Parse.h"

namespace Sarn {

TCopyrightDescriptor::TCopyrightDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(0x0D, bytes, length),
      copyrightId(0),
      additionalInfoSize(0),
      additionalInfo(nullptr) {}

TCopyrightDescriptor::~TCopyrightDescriptor() {
    delete[] additionalInfo;
}

TCopyrightDescriptor* TCopyrightDescriptor::parse(unsigned char* bytes, unsigned int length,
                                                  unsigned int* bytesRead, unsigned short* error) {
    if (!parseCommonHeader(bytes, length, error, 4, 0x0D))
        return nullptr;
    std::unique_ptr<TCopyrightDescriptor> d(new TCopyrightDescriptor(bytes, length));
    bytes::Reader r(bytes, length);
    r.skip(2);
    d->copyrightId = r.u32();
    // Additional info runs to the end of the bytes handed in; size kept in 8 bits.
    d->additionalInfo = fields::copyRest8(r, d->additionalInfoSize);
    if (bytesRead != nullptr)
        *bytesRead = d->additionalInfoSize + 4u;
    return parse::done(error, d);
}

std::string TCopyrightDescriptor::toJSON() const {
    std::string out;
    json::Out o(out);
    o << "\"name:\":\"copyrightDescriptor\",\"copyrightId\":" << static_cast<int>(copyrightId)
      << ",\"copyrightAdditionalInfo\":\"";
    json::appendTextUpToZero(o, additionalInfo, additionalInfoSize);
    o << '"';
    return out;
}

}  // namespace Sarn
