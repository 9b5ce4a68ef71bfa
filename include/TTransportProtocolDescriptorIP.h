#ifndef SARN_TTRANSPORTPROTOCOLDESCRIPTORIP_H
#define SARN_TTRANSPORTPROTOCOLDESCRIPTORIP_H

#include <string>
#include <vector>

#include "TTransportProtocolDescriptor.h"

namespace Sarn {

/**
 * IP transport (protocol_id 2): remote flag, the carrying service when
 * remote, an alignment indicator and a list of URLs.
 */
class TTransportProtocolDescriptorIP : public TTransportProtocolDescriptor {
  public:
    TTransportProtocolDescriptorIP(unsigned char* data, unsigned int len);
    explicit TTransportProtocolDescriptorIP(const TTransportProtocolDescriptorIP* src);
    ~TTransportProtocolDescriptorIP() override;

    int parseData(unsigned char* data, unsigned int len, unsigned int* bytesRead,
                  unsigned short* err) override;

    bool isRemoteConnection() const { return remoteConnection != 0; }
    unsigned short getOriginalNetworkID() const { return originalNetworkId; }
    unsigned short getTransportStreamID() const { return transportStreamId; }
    unsigned short getServiceID() const { return serviceId; }
    bool isAligned() const { return alignmentIndicator != 0; }
    unsigned char getURLCount() const { return static_cast<unsigned char>(urls.size()); }
    /** The URL at index, or an empty string beyond the end. */
    std::string getURL(unsigned char index) const;
    /** Removes the URL at index; false beyond the end. */
    bool removeURL(unsigned char index);
    void addURL(std::string url);

  private:
    int remoteConnection = 0;
    unsigned short originalNetworkId = 0;
    unsigned short transportStreamId = 0;
    unsigned short serviceId = 0;
    int alignmentIndicator = 0;
    std::vector<std::string> urls;
};

}  // namespace Sarn

#endif
