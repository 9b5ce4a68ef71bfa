#include "TDataComponentDescriptor.h"

#include <cstring>
#include <memory>

#include "DescriptorFields.h"
#include "Json.h"
#include "Parse.h"

namespace Sarn {

TDataComponentDescriptor::TDataComponentDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(0xFD, bytes, length),
      dataComponentId(0),
      additionalDataSize(0),
      additionalData(nullptr) {}

TDataComponentDescriptor::~TDataComponentDescriptor() {
    delete[] additionalData;
}

TDataComponentDescriptor* TDataComponentDescriptor::parse(unsigned char* bytes, unsigned int length,
                                                          unsigned int* bytesRead,
                                                          unsigned short* error) {
    if (!parseCommonHeader(bytes, length, error, 2, 0xFD))
        return nullptr;
    std::unique_ptr<TDataComponentDescriptor> d(new TDataComponentDescriptor(bytes, length));
    bytes::Reader r(bytes, length);
    r.skip(2);
    d->dataComponentId = r.u16();
    // additional_data_component_info: the rest of the bytes, as many as the
    // 8-bit size can count.
    d->additionalData = fields::copyRest8(r, d->additionalDataSize);
    if (bytesRead != nullptr)
        *bytesRead = length - 2;
    return parse::done(error, d);
}

std::string TDataComponentDescriptor::toJSON() const {
    std::string out;
    json::Out o(out);
    o << "\"name\":\"dataComponentDescriptor\",\"dataComponentId\":" << dataComponentId
      << ",\"additionalDataComponentInfo\":\"";
    // The info bytes are written as raw characters up to the first zero
    // byte; they carry no terminator of their own, so the array's end stops
    // the text as well.
    if (additionalData != nullptr) {
        const void* zero = std::memchr(additionalData, 0, additionalDataSize);
        const size_t n =
            zero != nullptr
                ? static_cast<size_t>(static_cast<const unsigned char*>(zero) - additionalData)
                : additionalDataSize;
        out.append(reinterpret_cast<const char*>(additionalData), n);
    }
    o << '"';
    return out;
}

}  // namespace Sarn
