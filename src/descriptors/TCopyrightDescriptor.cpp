#include "TCopyrightDescriptor.h"

#include "DescriptorFields.h"

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
    TCopyrightDescriptor* d = new TCopyrightDescriptor(bytes, length);
    d->copyrightId = bytes::be32(bytes + 2);
    // Additional info runs to the end of the bytes handed in; size kept in 8 bits.
    d->additionalInfoSize = static_cast<unsigned char>(length - 6);
    d->additionalInfo = fields::copyBytes(bytes + 6, d->additionalInfoSize);
    if (bytesRead != nullptr)
        *bytesRead = d->additionalInfoSize + 4u;
    return d;
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
