#ifndef SARN_TCAIDENTIFIERDESCRIPTOR_H
#define SARN_TCAIDENTIFIERDESCRIPTOR_H

#include <string>

#include "TISDBTDescriptor.h"

namespace Sarn {

/** CA identifier descriptor (tag 0x53): the CA_system_ids that scramble a service. */
class TCAIdentifierDescriptor : public TISDBTDescriptor {
  public:
    static TCAIdentifierDescriptor* parse(unsigned char* data, unsigned int length,
                                          unsigned int* bytesRead, unsigned short* error);

    TCAIdentifierDescriptor(unsigned char* data, unsigned int length);
    TCAIdentifierDescriptor(const TCAIdentifierDescriptor&) = delete;
    TCAIdentifierDescriptor& operator=(const TCAIdentifierDescriptor&) = delete;
    ~TCAIdentifierDescriptor() override;

    std::string toJSON() const override;
    void appendJSON(std::string& out) const override;

    unsigned char getCASystemIDCount() const { return caSystemIdCount; }
    unsigned short* getCASystemIDs() const { return caSystemIds; }

  private:
    SARN_DESCRIPTOR_BUILD(TCAIdentifierDescriptor)
    unsigned char caSystemIdCount = 0;
    unsigned short* caSystemIds = nullptr;
};

}  // namespace Sarn

#endif
