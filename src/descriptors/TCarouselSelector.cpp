#include "TCarouselSelector.h"

#include "ISDBTUtils.h"
#include "Log.h"
#include "Parse.h"
#include "Reader.h"

namespace Sarn {

TCarouselSelector::TCarouselSelector() {}

bool TCarouselSelector::readSelector(const char* kind, const unsigned char* data, unsigned int len,
                                     unsigned int* consumed, unsigned short* err,
                                     unsigned char* label) {
    // 0-1 protocol_id, 2 transport_protocol_label, 3 remote_connection
    // (bit 7); remote: original_network_id, transport_stream_id, service_id;
    // then component_tag.
    if (data == nullptr || len < 5) {
        SARN_LOGW("%s: TTransportProtocolDescriptor%s::parse: Item length not valid: %u. Aborting!",
                  kind, len);
        return parse::refuse(err, ERROR_DATA_TOO_SHORT);
    }
    bytes::Reader r(data, len);
    r.skip(2);
    const unsigned char protocolLabel = r.u8();
    remoteConnection = (r.u8() >> 7) & 0x01;
    if (remoteConnection) {
        if (r.remaining() < 7) {
            SARN_LOGW(
                "%s: TTransportProtocolDescriptor%s::parse: Item length not valid: %u. Aborting!",
                kind, r.remaining());
            return parse::refuse(err, ERROR_DATA_TOO_SHORT);
        }
        originalNetworkId = r.u16();
        transportStreamId = r.u16();
        serviceId = r.u16();
    }
    componentTag = r.u8();
    if (consumed != nullptr)
        *consumed = r.position();
    *label = protocolLabel;
    ISDBTUtils::setErrorCode(err, ERROR_NONE);
    return true;
}

}  // namespace Sarn
