#include "TISDBTDescriptor.h"

#include "ISDBTUtils.h"
#include "Json.h"
#include "Log.h"

namespace Sarn {

TISDBTDescriptor::TISDBTDescriptor(unsigned char tag, unsigned char* bytes, unsigned int length)
    : TISDBTDataHolder(bytes, length, 0),
      descriptorTag(tag),
      descriptorLength(bytes != nullptr && length >= 2 ? bytes[1] : 0),
      errors(0) {}

TISDBTDescriptor::~TISDBTDescriptor() {}

bool TISDBTDescriptor::parseCommonHeader(unsigned char* bytes, unsigned int length,
                                         unsigned short* error, unsigned char minDescriptorLength,
                                         unsigned short expectedTag) {
    if (bytes == nullptr) {
        SARN_LOGW("%s: TISDBTDescriptor::parseCommonHeader: (1) Invalid data. Aborting!");
        ISDBTUtils::setErrorCode(error, ERROR_INVALID_DATA);
        return false;
    }
    // The required size is taken modulo 256, as an 8-bit sum: a minimum of 254
    // or 255 demands nothing here. The header bytes themselves must still be
    // there before they are read, so such a short buffer fails the same way.
    const unsigned char required = static_cast<unsigned char>(minDescriptorLength + 2);
    if (length < required || length < 2) {
        SARN_LOGW(
            "%s: TISDBTDescriptor::parseCommonHeader: (2) Longer data length is required: %u < "
            "%u. Aborting!",
            length, static_cast<unsigned int>(required));
        ISDBTUtils::setErrorCode(error, ERROR_DESCRIPTOR_LENGTH);
        return false;
    }
    if (bytes[0] != expectedTag) {
        SARN_LOGW(
            "%s: TISDBTDescriptor::parseCommonHeader: (3) Unexpected Descriptor Tag. Got 0x%02X, "
            "instead of 0x%02X. Aborting!",
            static_cast<unsigned int>(bytes[0]), static_cast<unsigned int>(expectedTag));
        ISDBTUtils::setErrorCode(error, ERROR_UNEXPECTED_DESCRIPTOR_TAG);
        return false;
    }
    const unsigned int whole = bytes[1] + 2u;
    if (length < whole) {
        SARN_LOGW(
            "%s: TISDBTDescriptor::parseCommonHeader: (4) Longer data length is required: %u < "
            "%u. Aborting!",
            whole, length);
        ISDBTUtils::setErrorCode(error, ERROR_DESCRIPTOR_LENGTH);
        return false;
    }
    if (bytes[1] < minDescriptorLength) {
        SARN_LOGW(
            "%s: TISDBTDescriptor::parseCommonHeader: (5) Longer descriptor length is required: "
            "%u < %u. Aborting!",
            static_cast<unsigned int>(bytes[1]), static_cast<unsigned int>(minDescriptorLength));
        ISDBTUtils::setErrorCode(error, ERROR_DESCRIPTOR_LENGTH);
        return false;
    }
    ISDBTUtils::setErrorCode(error, ERROR_NONE);
    return true;
}

void TISDBTDescriptor::appendBaseJSON(std::string& out, int withContent) const {
    json::Out o(out);
    o << "\"errors\":" << errors << ",\"descriptor_tag\":" << descriptorTag
      << ",\"descriptor_length\":" << descriptorLength;
    if (withContent && descriptorLength != 0 && data != nullptr) {
        // Never past the bytes this descriptor was given.
        const unsigned int available = dataLength >= 2 ? dataLength - 2 : 0;
        const unsigned int n = descriptorLength < available ? descriptorLength : available;
        o << ",\"descriptor_content\":\"0x";
        for (unsigned int i = 0; i < n; ++i)
            o.hex2(data[2 + i]);
        o << '"';
    }
}

std::string TISDBTDescriptor::toJSONInternal(int withContent) const {
    std::string out;
    appendBaseJSON(out, withContent);
    return out;
}

std::string TISDBTDescriptor::toJSON() const {
    return toJSONInternal(1);
}

}  // namespace Sarn
