#ifndef SARN_TDIILOCATIONDESCRIPTOR_H
#define SARN_TDIILOCATIONDESCRIPTOR_H

#include <vector>

#include "TDIILocationDescriptorItem.h"
#include "TISDBTDescriptor.h"

namespace Sarn {

/**
 * DII location descriptor (AIT tag 0x0D): the download info indications
 * (DII_identification, association_tag) of the carousel with
 * transport_protocol_label that hold the application. Renders with the base
 * members and the raw content.
 */
class TDIILocationDescriptor : public TISDBTDescriptor {
  public:
    static constexpr unsigned char DESCRIPTOR_TAG = 0x0D;

    static TDIILocationDescriptor* parse(unsigned char* data, unsigned int len,
                                         unsigned int* bytesRead, unsigned short* err);

    TDIILocationDescriptor(unsigned char* data, unsigned int len);
    explicit TDIILocationDescriptor(const TDIILocationDescriptor* src);
    TDIILocationDescriptor(const TDIILocationDescriptor&) = delete;
    TDIILocationDescriptor& operator=(const TDIILocationDescriptor&) = delete;
    ~TDIILocationDescriptor() override;

    unsigned char getTransportProtocolLabel() const { return transportProtocolLabel; }
    unsigned int size() const { return static_cast<unsigned int>(items.size()); }
    /** Appends item (owned from now on). */
    void add(TDIILocationDescriptorItem* item);
    /** The item at index in wire order, or null beyond the end. */
    TDIILocationDescriptorItem* get(unsigned int index) const;

  private:
    SARN_DESCRIPTOR_BUILD(TDIILocationDescriptor)
    unsigned char transportProtocolLabel = 0;
    std::vector<TDIILocationDescriptorItem*> items;
};

}  // namespace Sarn

#endif
