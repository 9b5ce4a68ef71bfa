#ifndef SARN_TSERVICELISTDESCRIPTOR_H
#define SARN_TSERVICELISTDESCRIPTOR_H

#include <list>
#include <string>
#include <utility>
#include <vector>

#include "TISDBTDescriptor.h"
#include "TServiceListDescriptorItem.h"

namespace Sarn {

/** Service list descriptor (tag 0x41): the services of a transport stream with their types. */
class TServiceListDescriptor : public TISDBTDescriptor {
  public:
    /** bytesRead receives the byte count of the last entry (3), or 0 without entries. */
    static TServiceListDescriptor* parse(unsigned char* data, unsigned int length,
                                         unsigned int* bytesRead, unsigned short* error);

    TServiceListDescriptor(unsigned char* data, unsigned int length);
    TServiceListDescriptor(const TServiceListDescriptor&) = delete;
    TServiceListDescriptor& operator=(const TServiceListDescriptor&) = delete;
    ~TServiceListDescriptor() override;

    std::string toJSON() const override;
    void appendJSON(std::string& out) const override;

    int size() const { return static_cast<int>(items.size()); }
    /**
     * Stores item under its service_id. An item already stored under that id
     * is replaced, not deleted: a caller that still holds it owns it.
     */
    void add(TServiceListDescriptorItem* item);
    TServiceListDescriptorItem* get(unsigned short serviceId) const;
    std::list<unsigned short> getServiceIDs() const;
    bool remove(unsigned short serviceId);

  private:
    SARN_DESCRIPTOR_BUILD(TServiceListDescriptor)
    std::vector<std::pair<unsigned short, TServiceListDescriptorItem*>> items;
};

}  // namespace Sarn

#endif
