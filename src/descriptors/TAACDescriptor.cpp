#include "TAACDescriptor.h"

#include "DescriptorFields.h"
#include "ISDBTUtils.h"
#include "Log.h"

namespace Sarn {

TAACDescriptor::TAACDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(0x7C, bytes, length),
      profileAndLevel(0),
      aacTypeFlag(0),
      aacType(0),
      additionalInfoSize(0),
      additionalInfo(nullptr) {}

TAACDescriptor::~TAACDescriptor() {
    delete[] additionalInfo;
}

TAACDescriptor* TAACDescriptor::parse(unsigned char* bytes, unsigned int length,
                                      unsigned int* bytesRead, unsigned short* error) {
    if (!parseCommonHeader(bytes, length, error, 2, 0x7C))
        return nullptr;
    TAACDescriptor* d = new TAACDescriptor(bytes, length);
    d->profileAndLevel = bytes[2];
    d->aacTypeFlag = (bytes[3] >> 7) & 1;
    // The payload size is taken from the bytes handed in; the additional info
    // runs to their end and its size is kept in 8 bits.
    unsigned int p = 4;
    if (d->aacTypeFlag) {
        if (length == 4) {
            SARN_LOGW(
                "%s: TAACDescriptor::parse: Longer data length is required: %u < %u. Aborting!", 0u,
                1u);
            ISDBTUtils::setErrorCode(error, ERROR_DESCRIPTOR_LENGTH);
            delete d;
            return nullptr;
        }
        d->aacType = bytes[4];
        p = 5;
    }
    d->additionalInfoSize = static_cast<unsigned char>(length - p);
    d->additionalInfo = fields::copyBytes(bytes + p, d->additionalInfoSize);
    if (bytesRead != nullptr)
        *bytesRead = 2u + (d->aacTypeFlag ? 1u : 0u) + d->additionalInfoSize;
    return d;
}

std::string TAACDescriptor::toJSON() const {
    std::string out;
    appendBaseJSON(out, 0);
    json::Out o(out);
    o << ",\"profile_and_level\":" << profileAndLevel << ",\"AAC_type_flag\":" << aacTypeFlag;
    if (aacTypeFlag)
        o << ",\"AAC_type\":" << aacType;
    if (additionalInfoSize != 0) {
        o << ",\"additional_info\":\"0x";
        json::appendHexBytes(o, additionalInfo, additionalInfoSize);
        o << '"';
    }
    return out;
}

}  // namespace Sarn
