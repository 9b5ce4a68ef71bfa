#ifndef SARN_TSERVICEDESCRIPTOR_H
#define SARN_TSERVICEDESCRIPTOR_H

#include <string>

#include "TISDBTDescriptor.h"

namespace Sarn {

/**
 * Service descriptor (tag 0x48): service_type (0x01 digital TV, 0xC0 data
 * service, ...), and the provider and service names, each prefixed by its
 * one-byte length.
 */
class TServiceDescriptor : public TISDBTDescriptor {
  public:
    /** *bytesRead receives the size of the two names with their length bytes, in 8 bits. */
    static TServiceDescriptor* parse(unsigned char* data, unsigned int length,
                                     unsigned int* bytesRead, unsigned short* error);

    TServiceDescriptor(unsigned char* data, unsigned int length);
    ~TServiceDescriptor() override;

    unsigned char getServiceType() const { return serviceType; }
    std::string getServiceProviderName() const { return serviceProvider.str(); }
    std::string getServiceName() const { return serviceName.str(); }

    std::string toJSON() const override;
    void appendJSON(std::string& out) const override;

  private:
    SARN_DESCRIPTOR_BUILD(TServiceDescriptor)
    unsigned char serviceType = 0;
    memory::Text serviceProvider;
    memory::Text serviceName;
};

}  // namespace Sarn

#endif
