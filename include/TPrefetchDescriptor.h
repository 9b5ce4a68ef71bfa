#ifndef SARN_TPREFETCHDESCRIPTOR_H
#define SARN_TPREFETCHDESCRIPTOR_H

#include <vector>

#include "TISDBTDescriptor.h"
#include "TPrefetchDescriptorItem.h"

namespace Sarn {

/**
 * Prefetch descriptor (AIT tag 0x0C): which carousel modules of the
 * transport with transport_protocol_label to load early, by label and
 * priority. Renders with the base members and the raw content.
 */
class TPrefetchDescriptor : public TISDBTDescriptor {
  public:
    static constexpr unsigned char DESCRIPTOR_TAG = 0x0C;

    static TPrefetchDescriptor* parse(unsigned char* data, unsigned int len,
                                      unsigned int* bytesRead, unsigned short* err);

    TPrefetchDescriptor(unsigned char* data, unsigned int len);
    explicit TPrefetchDescriptor(const TPrefetchDescriptor* src);
    TPrefetchDescriptor(const TPrefetchDescriptor&) = delete;
    TPrefetchDescriptor& operator=(const TPrefetchDescriptor&) = delete;
    ~TPrefetchDescriptor() override;

    unsigned char getTransportProtocolLabel() const { return transportProtocolLabel; }
    unsigned int size() const { return static_cast<unsigned int>(items.size()); }
    /** Appends item (owned from now on). */
    void add(TPrefetchDescriptorItem* item);
    /** The item at index in wire order, or null beyond the end. */
    TPrefetchDescriptorItem* get(unsigned int index) const;

  private:
    SARN_DESCRIPTOR_BUILD(TPrefetchDescriptor)
    unsigned char transportProtocolLabel = 0;
    std::vector<TPrefetchDescriptorItem*> items;
};

}  // namespace Sarn

#endif
