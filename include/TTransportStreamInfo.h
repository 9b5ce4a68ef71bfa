#ifndef SARN_TTRANSPORTSTREAMINFO_H
#define SARN_TTRANSPORTSTREAMINFO_H

#include "DescriptorLoop.h"
#include "SarnAllocation.h"

namespace Sarn {

class TNITTable;

/**
 * One transport stream of a NIT: transport_stream_id, original_network_id
 * and the transport descriptor loop (delivery system, TS information, ...).
 */
class TTransportStreamInfo : public DescriptorLoop {
  public:
    SARN_ALLOCATION_FUNCTIONS

    /**
     * Parses one entry from data (length bytes available); stores the
     * entry's size in *bytesRead. The integer argument is not used.
     */
    static TTransportStreamInfo* parse(unsigned char* data, unsigned int length, int,
                                       unsigned int* bytesRead, unsigned short* error);

    TTransportStreamInfo();
    ~TTransportStreamInfo() override;

    unsigned short getTransportStreamID() const { return transportStreamId; }
    unsigned short getOriginalNetworkID() const { return originalNetworkId; }

  private:
    SARN_ENTRY_BUILD(TTransportStreamInfo)
    friend class TNITTable;

    unsigned short transportStreamId;
    unsigned short originalNetworkId;
};

}  // namespace Sarn

#endif
