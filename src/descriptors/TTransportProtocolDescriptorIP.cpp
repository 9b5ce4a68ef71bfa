#include "TTransportProtocolDescriptorIP.h"

#include <utility>

#include "BodyParse.h"
#include "ISDBTUtils.h"
#include "Log.h"
#include "Reader.h"

namespace Sarn {

TTransportProtocolDescriptorIP::TTransportProtocolDescriptorIP(unsigned char* bytes,
                                                               unsigned int len)
    : TTransportProtocolDescriptor(TYPE_IP, 2, bytes, len) {}

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
    // 0-1 protocol_id, 2 transport_protocol_label, 3 remote_connection
    // (bit 7); remote: original_network_id, transport_stream_id, service_id;
    // then alignment_indicator (bit 7) and length-prefixed URLs up to the end.
    if (data == nullptr || len < 5) {
        SARN_LOGW("%s: TTransportProtocolDescriptorIP::parse: Item length not valid: %u. Aborting!",
                  len);
        return parse::refuse(err, ERROR_DATA_TOO_SHORT);
    }
    bytes::Reader r(data, len);
    r.skip(2);
    transportProtocolLabel = r.u8();
    remoteConnection = (r.u8() >> 7) & 0x01;
    if (remoteConnection) {
        if (r.remaining() < 7) {
            SARN_LOGW(
                "%s: TTransportProtocolDescriptorIP::parse: Item length not valid: %u. Aborting!",
                r.remaining());
            return parse::refuse(err, ERROR_DATA_TOO_SHORT);
        }
        originalNetworkId = r.u16();
        transportStreamId = r.u16();
        serviceId = r.u16();
    }
    alignmentIndicator = (r.u8() >> 7) & 0x01;
    std::string url;
    while (!r.atEnd()) {
        if (r.string(url, 0) < 0) {
            // The IP selector has always reported its URL failures with the
            // name item's message.
            SARN_LOGW("%s: TApplicationNameDescriptorItem:: parse: ERROR: parsing Name. Aborting!");
            return parse::refuse(err, ERROR_FIELD_PARSE);
        }
        urls.push_back(url);
    }
    return bodyDone(err, bytesRead, r.position());
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

}  // namespace Sarn
