#include "TTransportProtocolDescriptorIC.h"

#include "BodyParse.h"
#include "ISDBTUtils.h"
#include "Log.h"
#include "Reader.h"

namespace Sarn {

TTransportProtocolDescriptorIC::TTransportProtocolDescriptorIC(unsigned char* bytes,
                                                               unsigned int len)
    : TTransportProtocolDescriptor(TYPE_DC, 4, bytes, len) {}

TTransportProtocolDescriptorIC::TTransportProtocolDescriptorIC(
    const TTransportProtocolDescriptorIC* src)
    : TTransportProtocolDescriptor(*src), urls(src->urls) {}

TTransportProtocolDescriptorIC::~TTransportProtocolDescriptorIC() {}

int TTransportProtocolDescriptorIC::parseData(unsigned char* data, unsigned int len,
                                              unsigned int* bytesRead, unsigned short* err) {
    // 0-1 protocol_id, 2 transport_protocol_label, then up to the end:
    // URL_base (length-prefixed), URL_extension_count, and that many
    // length-prefixed URL extensions.
    if (data == nullptr || len < 3) {
        SARN_LOGW("%s: TTransportProtocolDescriptorIC::parse: Item length not valid: %u. Aborting!",
                  len);
        return parse::refuse(err, ERROR_DATA_TOO_SHORT);
    }
    bytes::Reader r(data, len);
    r.skip(2);
    transportProtocolLabel = r.u8();
    while (!r.atEnd()) {
        urls.emplace_back();
        if (r.string(urls.back().first, 0) < 0) {
            SARN_LOGW(
                "%s: TTransportProtocolDescriptorIC::parse: ERROR: parsing URL Base. Aborting!");
            return parse::refuse(err, ERROR_FIELD_PARSE);
        }
        // The extension count must follow the base inside the selector.
        if (r.atEnd()) {
            SARN_LOGW(
                "%s: TTransportProtocolDescriptorIC::parse: Item length not valid: %u. Aborting!",
                r.remaining());
            return parse::refuse(err, ERROR_DATA_TOO_SHORT);
        }
        std::vector<std::string>& extensions = urls.back().second;
        for (unsigned int count = r.u8(); count != 0; --count) {
            // An extension past the end reads as empty, as it always has.
            extensions.emplace_back();
            if (r.string(extensions.back(), 0) < 0) {
                SARN_LOGW(
                    "%s: TTransportProtocolDescriptorIC::parse: ERROR: parsing URL Extension. "
                    "Aborting!");
                return parse::refuse(err, ERROR_FIELD_PARSE);
            }
        }
    }
    return bodyDone(err, bytesRead, r.position());
}

std::string TTransportProtocolDescriptorIC::getURLBase(unsigned int index) const {
    return index < urls.size() ? urls[index].first : std::string();
}

unsigned int TTransportProtocolDescriptorIC::getURLExtensionCount(unsigned int index) const {
    return index < urls.size() ? static_cast<unsigned int>(urls[index].second.size()) : 0;
}

std::string TTransportProtocolDescriptorIC::getURLExtension(unsigned int index,
                                                            unsigned int extensionIndex) const {
    if (index >= urls.size() || extensionIndex >= urls[index].second.size())
        return std::string();
    return urls[index].second[extensionIndex];
}

}  // namespace Sarn
