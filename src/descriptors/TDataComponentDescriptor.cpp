#include "TDataComponentDescriptor.h"

#include <cstring>
#include <memory>

#include "DescriptorFields.h"
#include "DescriptorParse.h"
#include "Json.h"

namespace Sarn {

TDataComponentDescriptor::TDataComponentDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(0xFD, bytes, length) {}

TDataComponentDescriptor::~TDataComponentDescriptor() {
    releaseObject(additionalData);
}

SARN_DESCRIPTOR_PARSE(TDataComponentDescriptor, arena, bytes, length, bytesRead, error) {
    SARN_OPEN_OR_RETURN(arena, d, r, TDataComponentDescriptor, bytes, length, error, 2, 0xFD);
    d->dataComponentId = r.u16();
    // additional_data_component_info: the rest of the bytes, as many as the
    // 8-bit size can count.
    d->additionalData = fields::copyRest8(arena, r, d->additionalDataSize);
    return parse::done(error, d, bytesRead, length - 2);
}

void TDataComponentDescriptor::appendJSON(std::string& out) const {
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
}

std::string TDataComponentDescriptor::toJSON() const {
    return TISDBTDescriptor::toJSON();
}

}  // namespace Sarn
