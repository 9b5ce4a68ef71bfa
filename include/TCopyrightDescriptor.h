#ifndef SARN_TCOPYRIGHTDESCRIPTOR_H
#define SARN_TCOPYRIGHTDESCRIPTOR_H

#include <string>

#include "TISDBTDescriptor.h"

namespace Sarn {

/** Copyright descriptor (tag 0x0D): copyright_identifier and additional info bytes. */
class TCopyrightDescriptor : public TISDBTDescriptor {
  public:
    static TCopyrightDescriptor* parse(unsigned char* data, unsigned int length,
                                       unsigned int* bytesRead, unsigned short* error);

    TCopyrightDescriptor(unsigned char* data, unsigned int length);
    TCopyrightDescriptor(const TCopyrightDescriptor&) = delete;
    TCopyrightDescriptor& operator=(const TCopyrightDescriptor&) = delete;
    ~TCopyrightDescriptor() override;

    std::string toJSON() const override;
    void appendJSON(std::string& out) const override;

    unsigned int getCopyrightID() const { return copyrightId; }
    unsigned char getAdditionalInfoSize() const { return additionalInfoSize; }
    unsigned char* getAdditionalInfo() const { return additionalInfo; }

  private:
    SARN_DESCRIPTOR_BUILD(TCopyrightDescriptor)
    unsigned int copyrightId = 0;
    unsigned char additionalInfoSize = 0;
    unsigned char* additionalInfo = nullptr;
};

}  // namespace Sarn

#endif
