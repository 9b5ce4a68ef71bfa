#ifndef SARN_TPARTIALRECEPTIONDESCRIPTOR_H
#define SARN_TPARTIALRECEPTIONDESCRIPTOR_H

#include <string>

#include "TISDBTDescriptor.h"

namespace Sarn {

/** Partial reception descriptor (tag 0xFB): the services carried in the one-seg layer. */
class TPartialReceptionDescriptor : public TISDBTDescriptor {
  public:
    static TPartialReceptionDescriptor* parse(unsigned char* data, unsigned int length,
                                              unsigned int* bytesRead, unsigned short* error);

    TPartialReceptionDescriptor(unsigned char* data, unsigned int length);
    TPartialReceptionDescriptor(const TPartialReceptionDescriptor&) = delete;
    TPartialReceptionDescriptor& operator=(const TPartialReceptionDescriptor&) = delete;
    ~TPartialReceptionDescriptor() override;

    std::string toJSON() const override;
    void appendJSON(std::string& out) const override;

    unsigned char getServiceIDCount() const { return serviceIdCount; }
    unsigned short* getServiceIDs() const { return serviceIds; }

  private:
    SARN_DESCRIPTOR_BUILD(TPartialReceptionDescriptor)
    unsigned char serviceIdCount = 0;
    unsigned short* serviceIds = nullptr;
};

}  // namespace Sarn

#endif
