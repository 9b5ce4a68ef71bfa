#ifndef SARN_TCAROUSELSELECTOR_H
#define SARN_TCAROUSELSELECTOR_H

namespace Sarn {

/**
 * Selector shared by the carousel transports (object carousel, data
 * carousel): a remote_connection flag, the service that carries the carousel
 * when it is remote (original_network_id, transport_stream_id, service_id),
 * and the component_tag of its elementary stream.
 */
class TCarouselSelector {
  public:
    bool isRemoteConnection() const { return remoteConnection != 0; }
    unsigned short getOriginalNetworkID() const { return originalNetworkId; }
    unsigned short getTransportStreamID() const { return transportStreamId; }
    unsigned short getServiceID() const { return serviceId; }
    unsigned char getComponentTag() const { return componentTag; }

  protected:
    TCarouselSelector();
    /**
     * The parse of every carousel transport: reads transport_protocol_label
     * into *label and the selector from a transport protocol body (data at
     * protocol_id, len bytes): byte 3 holds the remote flag. kind names the
     * descriptor class in messages ("OC", "DC", "PC"). Returns false, with
     * the code set and *label untouched, when the body is too short.
     */
    bool readSelector(const char* kind, const unsigned char* data, unsigned int len,
                      unsigned int* consumed, unsigned short* err, unsigned char* label);

    int remoteConnection = 0;
    unsigned short originalNetworkId = 0;
    unsigned short transportStreamId = 0;
    unsigned short serviceId = 0;
    unsigned char componentTag = 0;
};

}  // namespace Sarn

#endif
