#include "TISDBTDescriptor.h"

#include "ISDBTUtils.h"
#include "Json.h"
#include "Log.h"
#include "Parse.h"
#include "Reader.h"

namespace Sarn {

TISDBTDescriptor::TISDBTDescriptor(unsigned char tag, unsigned char* bytes, unsigned int length)
    : TISDBTDataHolder(bytes, length, 0),
      descriptorTag(tag),
      descriptorLength(bytes::Reader(bytes, length).peek(1)),
      errors(0) {}

TISDBTDescriptor::~TISDBTDescriptor() {}

bool TISDBTDescriptor::parseCommonHeader(unsigned char* bytes, unsigned int length,
                                         unsigned short* error, unsigned char minDescriptorLength,
                                         unsigned short expectedTag) {
    if (bytes == nullptr) {
        SARN_LOGW("%s: TISDBTDescriptor::parseCommonHeader: (1) Invalid data. Aborting!");
        return parse::refuse(error, ERROR_INVALID_DATA);
    }
    // The required size is taken modulo 256, as an 8-bit sum: a minimum of 254
    // or 255 demands nothing here. The header bytes themselves must still be
    // there before they are read, so such a short buffer fails the same way.
    const unsigned char required = static_cast<unsigned char>(minDescriptorLength + 2);
    bytes::Reader in(bytes, length);
    if (length < required || !in.has(2)) {
        SARN_LOGW(
            "%s: TISDBTDescriptor::parseCommonHeader: (2) Longer data length is required: %u < "
            "%u. Aborting!",
            length, static_cast<unsigned int>(required));
        return parse::refuse(error, ERROR_DESCRIPTOR_LENGTH);
    }
    const unsigned char tag = in.u8();
    const unsigned char size = in.u8();
    if (tag != expectedTag) {
        SARN_LOGW(
            "%s: TISDBTDescriptor::parseCommonHeader: (3) Unexpected Descriptor Tag. Got 0x%02X, "
            "instead of 0x%02X. Aborting!",
            static_cast<unsigned int>(tag), static_cast<unsigned int>(expectedTag));
        return parse::refuse(error, ERROR_UNEXPECTED_DESCRIPTOR_TAG);
    }
    if (!in.has(size)) {
        SARN_LOGW(
            "%s: TISDBTDescriptor::parseCommonHeader: (4) Longer data length is required: %u < "
            "%u. Aborting!",
            size + 2u, length);
        return parse::refuse(error, ERROR_DESCRIPTOR_LENGTH);
    }
    if (size < minDescriptorLength) {
        SARN_LOGW(
            "%s: TISDBTDescriptor::parseCommonHeader: (5) Longer descriptor length is required: "
            "%u < %u. Aborting!",
            static_cast<unsigned int>(size), static_cast<unsigned int>(minDescriptorLength));
        return parse::refuse(error, ERROR_DESCRIPTOR_LENGTH);
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
        bytes::Reader content(data, dataLength);
        content.skip(2);
        const unsigned int n =
            descriptorLength < content.remaining() ? descriptorLength : content.remaining();
        o << ",\"descriptor_content\":\"0x";
        const unsigned char* p = content.bytes(n);
        for (unsigned int i = 0; i < n; ++i)
            o.hex2(p[i]);
        o << '"';
    }
}

std::string TISDBTDescriptor::toJSONInternal(int withContent) const {
    std::string out;
    appendBaseJSON(out, withContent);
    return out;
}

void TISDBTDescriptor::appendJSON(std::string& out) const {
    appendBaseJSON(out, 1);
}

std::string TISDBTDescriptor::toJSON() const {
    std::string out;
    appendJSON(out);
    return out;
}

}  // namespace Sarn
