#ifndef SARN_TAACDESCRIPTOR_H
#define SARN_TAACDESCRIPTOR_H

#include <string>

#include "TISDBTDescriptor.h"

namespace Sarn {

/**
 * MPEG-4 AAC descriptor (tag 0x7C): profile and level, an optional AAC type
 * and the additional info bytes that follow.
 */
class TAACDescriptor : public TISDBTDescriptor {
  public:
    static TAACDescriptor* parse(unsigned char* data, unsigned int length, unsigned int* bytesRead,
                                 unsigned short* error);

    TAACDescriptor(unsigned char* data, unsigned int length);
    TAACDescriptor(const TAACDescriptor&) = delete;
    TAACDescriptor& operator=(const TAACDescriptor&) = delete;
    ~TAACDescriptor() override;

    std::string toJSON() const override;
    void appendJSON(std::string& out) const override;

    unsigned char getProfileAndLevel() const { return profileAndLevel; }
    int hasAACType() const { return aacTypeFlag; }
    unsigned char getAACType() const { return aacType; }
    unsigned char getAdditionalInfoSize() const { return additionalInfoSize; }
    unsigned char* getAdditionalInfo() const { return additionalInfo; }

  private:
    SARN_DESCRIPTOR_BUILD(TAACDescriptor)
    unsigned char profileAndLevel = 0;
    int aacTypeFlag = 0;
    unsigned char aacType = 0;
    unsigned char additionalInfoSize = 0;
    unsigned char* additionalInfo = nullptr;
};

}  // namespace Sarn

#endif
