#include "TTransportProtocolDescriptor.h"

#include "BodyParse.h"
#include "Bytes.h"
#include "ISDBTUtils.h"
#include "Json.h"
#include "Log.h"
#include "ParserUtils.h"
#include "TTransportProtocolDescriptorDC.h"
#include "TTransportProtocolDescriptorIC.h"
#include "TTransportProtocolDescriptorIP.h"
#include "TTransportProtocolDescriptorOC.h"
#include "TTransportProtocolDescriptorPC.h"

namespace Sarn {

// Body layout shared by every protocol (offsets from protocol_id):
//   0-1 protocol_id, 2 transport_protocol_label, 3... selector bytes.

TTransportProtocolDescriptor::TTransportProtocolDescriptor(Type kind, unsigned short protocol,
                                                           unsigned char* bytes, unsigned int len)
    : TISDBTDescriptor(DESCRIPTOR_TAG, bytes, len),
      type(kind),
      protocolId(protocol),
      transportProtocolLabel(0) {}

TTransportProtocolDescriptor::~TTransportProtocolDescriptor() {}

TTransportProtocolDescriptor* TTransportProtocolDescriptor::parse(unsigned char* data,
                                                                  unsigned int len,
                                                                  unsigned int* bytesRead,
                                                                  unsigned short* err) {
    if (!parseCommonHeader(data, len, err, 3, DESCRIPTOR_TAG))
        return nullptr;
    const unsigned short protocol = bytes::be16(data + 2);
    TTransportProtocolDescriptor* d = nullptr;
    switch (protocol) {
        case 0x0001:
        case 0x0005:  // read with the object carousel selector, keeping protocol_id 5
            d = new TTransportProtocolDescriptorOC(data, len);
            break;
        case 0x0002:
            d = new TTransportProtocolDescriptorIP(data, len);
            break;
        case 0x0003:
            // Applications over the interaction channel are not taken: no
            // descriptor, no message, and the code of the header check stays.
            return nullptr;
        case 0x0004:
            d = new TTransportProtocolDescriptorDC(data, len);
            break;
        default:
            SARN_LOGW(
                "%s: TTransportProtocolDescriptor::parse: Unknown protocol ID: 0x%04X. Aborting!",
                static_cast<unsigned int>(protocol));
            return nullptr;
    }
    d->protocolId = protocol;
    return parseBody(d, data, bytesRead, err);
}

TTransportProtocolDescriptor* TTransportProtocolDescriptor::clone(
    TTransportProtocolDescriptor* src) {
    if (src == nullptr)
        return nullptr;
    // The type says which class to copy as. Interaction channel objects carry
    // the data carousel's type and the protocol 5 class the object
    // carousel's, so the class is confirmed before copying; those two give
    // null.
    TTransportProtocolDescriptor* copy = nullptr;
    switch (src->type) {
        case TYPE_OC:
            if (auto* oc = dynamic_cast<TTransportProtocolDescriptorOC*>(src))
                copy = new TTransportProtocolDescriptorOC(oc);
            break;
        case TYPE_IP:
            if (auto* ip = dynamic_cast<TTransportProtocolDescriptorIP*>(src))
                copy = new TTransportProtocolDescriptorIP(ip);
            break;
        case TYPE_IC:
            if (auto* ic = dynamic_cast<TTransportProtocolDescriptorIC*>(src))
                copy = new TTransportProtocolDescriptorIC(ic);
            break;
        case TYPE_DC:
            if (auto* dc = dynamic_cast<TTransportProtocolDescriptorDC*>(src))
                copy = new TTransportProtocolDescriptorDC(dc);
            break;
        case TYPE_PC:
            if (auto* pc = dynamic_cast<TTransportProtocolDescriptorPC*>(src))
                copy = new TTransportProtocolDescriptorPC(pc);
            break;
        default:
            SARN_LOGW(
                "%s: TTransportProtocolDescriptor::clone: Unknown protocol ID: 0x%04X. Aborting!",
                static_cast<unsigned int>(src->type));
            return nullptr;
    }
    if (copy != nullptr)
        copy->transportProtocolLabel = src->transportProtocolLabel;
    return copy;
}

std::string TTransportProtocolDescriptor::toJSON() const {
    std::string out;
    appendBaseJSON(out, 0);
    json::Out(out) << ",\"protocol_id\":" << protocolId
                   << ",\"transport_protocol_label\":" << transportProtocolLabel;
    return out;
}

// --- carousel selector (OC, DC, PC) -----------------------------------------

TCarouselSelector::TCarouselSelector()
    : remoteConnection(0),
      originalNetworkId(0),
      transportStreamId(0),
      serviceId(0),
      componentTag(0) {}

bool TCarouselSelector::readSelector(const char* kind, const unsigned char* data, unsigned int len,
                                     unsigned int* consumed, unsigned short* err) {
    // 3: remote_connection (bit 7); remote: 4-9 original_network_id,
    // transport_stream_id, service_id, then component_tag.
    if (data == nullptr || len < 5) {
        SARN_LOGW("%s: TTransportProtocolDescriptor%s::parse: Item length not valid: %u. Aborting!",
                  kind, len);
        ISDBTUtils::setErrorCode(err, ERROR_DATA_TOO_SHORT);
        return false;
    }
    remoteConnection = (data[3] >> 7) & 0x01;
    if (remoteConnection) {
        if (len - 4 < 7) {
            SARN_LOGW(
                "%s: TTransportProtocolDescriptor%s::parse: Item length not valid: %u. Aborting!",
                kind, len - 4);
            ISDBTUtils::setErrorCode(err, ERROR_DATA_TOO_SHORT);
            return false;
        }
        originalNetworkId = bytes::be16(data + 4);
        transportStreamId = bytes::be16(data + 6);
        serviceId = bytes::be16(data + 8);
        componentTag = data[10];
    } else {
        componentTag = data[4];
    }
    if (consumed != nullptr)
        *consumed = remoteConnection ? 11 : 5;
    ISDBTUtils::setErrorCode(err, ERROR_NONE);
    return true;
}

TTransportProtocolDescriptorOC::TTransportProtocolDescriptorOC(unsigned char* bytes,
                                                               unsigned int len)
    : TTransportProtocolDescriptor(TYPE_OC, 1, bytes, len) {}

TTransportProtocolDescriptorOC::TTransportProtocolDescriptorOC(
    const TTransportProtocolDescriptorOC* src)
    : TTransportProtocolDescriptor(*src), TCarouselSelector(*src) {}

TTransportProtocolDescriptorOC::~TTransportProtocolDescriptorOC() {}

int TTransportProtocolDescriptorOC::parseData(unsigned char* data, unsigned int len,
                                              unsigned int* bytesRead, unsigned short* err) {
    if (!readSelector("OC", data, len, bytesRead, err))
        return 0;
    transportProtocolLabel = data[2];
    return 1;
}

TTransportProtocolDescriptorDC::TTransportProtocolDescriptorDC(unsigned char* bytes,
                                                               unsigned int len)
    : TTransportProtocolDescriptor(TYPE_DC, 4, bytes, len) {}

TTransportProtocolDescriptorDC::TTransportProtocolDescriptorDC(
    const TTransportProtocolDescriptorDC* src)
    : TTransportProtocolDescriptor(*src), TCarouselSelector(*src) {}

TTransportProtocolDescriptorDC::~TTransportProtocolDescriptorDC() {}

int TTransportProtocolDescriptorDC::parseData(unsigned char* data, unsigned int len,
                                              unsigned int* bytesRead, unsigned short* err) {
    if (!readSelector("DC", data, len, bytesRead, err))
        return 0;
    transportProtocolLabel = data[2];
    return 1;
}

TTransportProtocolDescriptorPC::TTransportProtocolDescriptorPC(unsigned char* bytes,
                                                               unsigned int len)
    : TTransportProtocolDescriptor(TYPE_OC, 1, bytes, len) {
    // Constructed as an object carousel, then given its own protocol_id.
    protocolId = 5;
}

TTransportProtocolDescriptorPC::TTransportProtocolDescriptorPC(
    const TTransportProtocolDescriptorPC* src)
    : TTransportProtocolDescriptor(*src), TCarouselSelector(*src) {}

TTransportProtocolDescriptorPC::~TTransportProtocolDescriptorPC() {}

int TTransportProtocolDescriptorPC::parseData(unsigned char* data, unsigned int len,
                                              unsigned int* bytesRead, unsigned short* err) {
    if (!readSelector("PC", data, len, bytesRead, err))
        return 0;
    transportProtocolLabel = data[2];
    return 1;
}

// --- IP ---------------------------------------------------------------------

TTransportProtocolDescriptorIP::TTransportProtocolDescriptorIP(unsigned char* bytes,
                                                               unsigned int len)
    : TTransportProtocolDescriptor(TYPE_IP, 2, bytes, len),
      remoteConnection(0),
      originalNetworkId(0),
      transportStreamId(0),
      serviceId(0),
      alignmentIndicator(0) {}

TTransportProtocolDescriptorIP::TTransportProtocolDescriptorIP(
    const TTransportProtocolDescriptorIP* src)
    : TTransportProtocolDescriptor(*src),
      remoteConnection(src->remoteConnection),
      originalNetworkId(src->originalNetworkId),
      transportStreamId(src->transportStreamId),
      serviceId(src->serviceId),
      alignmentIndicator(src->alignmentIndicator),
      urls(src->urls) {}

TTransportProtocolDescriptorIP::~TTransportProtocolDescriptorIP() {}

int TTransportProtocolDescriptorIP::parseData(unsigned char* data, unsigned int len,
                                              unsigned int* bytesRead, unsigned short* err) {
    // 3: remote_connection (bit 7); remote: original_network_id,
    // transport_stream_id, service_id; then alignment_indicator (bit 7) and
    // length-prefixed URLs up to the end.
    if (data == nullptr || len < 5) {
        SARN_LOGW("%s: TTransportProtocolDescriptorIP::parse: Item length not valid: %u. Aborting!",
                  len);
        ISDBTUtils::setErrorCode(err, ERROR_DATA_TOO_SHORT);
        return 0;
    }
    transportProtocolLabel = data[2];
    remoteConnection = (data[3] >> 7) & 0x01;
    unsigned int remaining = len - 4;
    unsigned int p = 4;
    if (remoteConnection) {
        if (remaining < 7) {
            SARN_LOGW(
                "%s: TTransportProtocolDescriptorIP::parse: Item length not valid: %u. Aborting!",
                remaining);
            ISDBTUtils::setErrorCode(err, ERROR_DATA_TOO_SHORT);
            return 0;
        }
        originalNetworkId = bytes::be16(data + 4);
        transportStreamId = bytes::be16(data + 6);
        serviceId = bytes::be16(data + 8);
        p += 6;
        remaining -= 6;
    }
    alignmentIndicator = (data[p] >> 7) & 0x01;
    ++p;
    --remaining;
    std::string url;
    while (remaining != 0) {
        const int n = ParserUtils::parseStr(data + p, url, 0, remaining);
        if (n < 0) {
            // The IP selector has always reported its URL failures with the
            // name item's message.
            SARN_LOGW("%s: TApplicationNameDescriptorItem:: parse: ERROR: parsing Name. Aborting!");
            ISDBTUtils::setErrorCode(err, ERROR_FIELD_PARSE);
            return 0;
        }
        urls.push_back(url);
        p += static_cast<unsigned int>(n);
        remaining -= static_cast<unsigned int>(n);
    }
    if (bytesRead != nullptr)
        *bytesRead = p;
    ISDBTUtils::setErrorCode(err, ERROR_NONE);
    return 1;
}

std::string TTransportProtocolDescriptorIP::getURL(unsigned char index) const {
    return index < urls.size() ? urls[index] : std::string();
}

bool TTransportProtocolDescriptorIP::removeURL(unsigned char index) {
    if (index >= urls.size())
        return false;
    urls.erase(urls.begin() + index);
    return true;
}

void TTransportProtocolDescriptorIP::addURL(std::string url) {
    urls.push_back(std::move(url));
}

// --- IC ---------------------------------------------------------------------

TTransportProtocolDescriptorIC::TTransportProtocolDescriptorIC(unsigned char* bytes,
                                                               unsigned int len)
    : TTransportProtocolDescriptor(TYPE_DC, 4, bytes, len) {}

TTransportProtocolDescriptorIC::TTransportProtocolDescriptorIC(
    const TTransportProtocolDescriptorIC* src)
    : TTransportProtocolDescriptor(*src), urls(src->urls) {}

TTransportProtocolDescriptorIC::~TTransportProtocolDescriptorIC() {}

int TTransportProtocolDescriptorIC::parseData(unsigned char* data, unsigned int len,
                                              unsigned int* bytesRead, unsigned short* err) {
    // Up to the end: URL_base (length-prefixed), URL_extension_count, and
    // that many length-prefixed URL extensions.
    if (data == nullptr || len < 3) {
        SARN_LOGW("%s: TTransportProtocolDescriptorIC::parse: Item length not valid: %u. Aborting!",
                  len);
        ISDBTUtils::setErrorCode(err, ERROR_DATA_TOO_SHORT);
        return 0;
    }
    transportProtocolLabel = data[2];
    unsigned int p = 3;
    unsigned int remaining = len - 3;
    while (remaining != 0) {
        urls.emplace_back();
        std::string& base = urls.back().first;
        int n = ParserUtils::parseStr(data + p, base, 0, remaining);
        if (n < 0) {
            SARN_LOGW(
                "%s: TTransportProtocolDescriptorIC::parse: ERROR: parsing URL Base. Aborting!");
            ISDBTUtils::setErrorCode(err, ERROR_FIELD_PARSE);
            return 0;
        }
        p += static_cast<unsigned int>(n);
        remaining -= static_cast<unsigned int>(n);
        // The extension count must follow the base inside the selector.
        if (remaining == 0) {
            SARN_LOGW(
                "%s: TTransportProtocolDescriptorIC::parse: Item length not valid: %u. Aborting!",
                remaining);
            ISDBTUtils::setErrorCode(err, ERROR_DATA_TOO_SHORT);
            return 0;
        }
        unsigned int extensions = data[p];
        ++p;
        --remaining;
        std::vector<std::string>& list = urls.back().second;
        for (; extensions != 0; --extensions) {
            list.emplace_back();
            n = ParserUtils::parseStr(data + p, list.back(), 0, remaining);
            if (n < 0) {
                SARN_LOGW(
                    "%s: TTransportProtocolDescriptorIC::parse: ERROR: parsing URL Extension. "
                    "Aborting!");
                ISDBTUtils::setErrorCode(err, ERROR_FIELD_PARSE);
                return 0;
            }
            p += static_cast<unsigned int>(n);
            remaining -= static_cast<unsigned int>(n);
        }
    }
    if (bytesRead != nullptr)
        *bytesRead = p;
    ISDBTUtils::setErrorCode(err, ERROR_NONE);
    return 1;
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
