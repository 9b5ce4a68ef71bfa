#ifndef SARN_TEMERGENCYINFORMATIONDESCRIPTOR_H
#define SARN_TEMERGENCYINFORMATIONDESCRIPTOR_H

#include <list>
#include <string>

#include "TEmergencyInformationDescriptorItem.h"
#include "TISDBTDescriptor.h"

namespace Sarn {

/**
 * Emergency information descriptor (tag 0xFC) of the NIT: the services that
 * carry an emergency warning broadcast, in wire order.
 */
class TEmergencyInformationDescriptor : public TISDBTDescriptor {
  public:
    /** bytesRead receives the byte count of the last item (0 without items). */
    static TEmergencyInformationDescriptor* parse(unsigned char* data, unsigned int length,
                                                  unsigned int* bytesRead, unsigned short* error);

    TEmergencyInformationDescriptor(unsigned char* data, unsigned int length);
    TEmergencyInformationDescriptor(const TEmergencyInformationDescriptor&) = delete;
    TEmergencyInformationDescriptor& operator=(const TEmergencyInformationDescriptor&) = delete;
    ~TEmergencyInformationDescriptor() override;

    std::string toJSON() const override;
    void appendJSON(std::string& out) const override;

    int size() const { return static_cast<int>(items.size()); }
    void add(TEmergencyInformationDescriptorItem* item);
    /** The item at that position, or null beyond the end. */
    TEmergencyInformationDescriptorItem* get(unsigned char index) const;
    /** Deletes the item at that position; false beyond the end. */
    bool remove(unsigned char index);

  private:
    SARN_DESCRIPTOR_BUILD(TEmergencyInformationDescriptor)
    std::list<TEmergencyInformationDescriptorItem*> items;
};

}  // namespace Sarn

#endif
