#ifndef SARN_TSERVICELISTDESCRIPTORITEM_H
#define SARN_TSERVICELISTDESCRIPTORITEM_H

namespace Sarn {

/** One entry of a service list descriptor: a service_id and its service_type. */
class TServiceListDescriptorItem {
  public:
    /** Reads one three-byte entry at data; bytesRead receives 3. */
    static TServiceListDescriptorItem* parse(unsigned char* data, unsigned int length,
                                             unsigned int* bytesRead, unsigned short* error);

    TServiceListDescriptorItem(unsigned short id, unsigned char type)
        : serviceId(id), serviceType(type) {}
    virtual ~TServiceListDescriptorItem();

    unsigned short getServiceID() const { return serviceId; }
    unsigned char getServiceType() const { return serviceType; }

  private:
    unsigned short serviceId;
    unsigned char serviceType;
};

}  // namespace Sarn

#endif
