#ifndef SARN_TCAROUSELIDENTIFIERDESCRIPTOR_H
#define SARN_TCAROUSELIDENTIFIERDESCRIPTOR_H

#include <string>

#include "TISDBTDescriptor.h"

namespace Sarn {

/**
 * Carousel identifier descriptor (tag 0x13) of a DSM-CC object or data
 * carousel stream. Only carousel_id is decoded; every byte after it (the
 * format specifier and its fields included) is kept as private data, so the
 * format fields read 0 and their arrays null.
 */
class TCarouselIdentifierDescriptor : public TISDBTDescriptor {
  public:
    static TCarouselIdentifierDescriptor* parse(unsigned char* data, unsigned int length,
                                                unsigned int* bytesRead, unsigned short* error);

    TCarouselIdentifierDescriptor(unsigned char* data, unsigned int length);
    TCarouselIdentifierDescriptor(const TCarouselIdentifierDescriptor&) = delete;
    TCarouselIdentifierDescriptor& operator=(const TCarouselIdentifierDescriptor&) = delete;
    ~TCarouselIdentifierDescriptor() override;

    unsigned int getCarouselID() const { return carouselId; }
    unsigned char getFormatID() const { return formatId; }
    unsigned char getModuleVersion() const { return moduleVersion; }
    unsigned short getModuleID() const { return moduleId; }
    unsigned short getBlockSize() const { return blockSize; }
    unsigned int getModuleSize() const { return moduleSize; }
    unsigned char getCompressionMethod() const { return compressionMethod; }
    unsigned int getOriginalSize() const { return originalSize; }
    unsigned char getTimeOut() const { return timeOut; }
    unsigned char getObjectKeyLength() const { return objectKeyLength; }
    unsigned char* getObjectKeyData() const { return objectKeyData; }
    unsigned char getPrivateDataSize() const { return privateDataSize; }
    unsigned char* getPrivateData() const { return privateData; }

    std::string toJSON() const override;
    void appendJSON(std::string& out) const override;

  private:
    SARN_DESCRIPTOR_BUILD(TCarouselIdentifierDescriptor)
    unsigned int carouselId = 0;
    unsigned char formatId = 0;
    unsigned char moduleVersion = 0;
    unsigned short moduleId = 0;
    unsigned short blockSize = 0;
    unsigned int moduleSize = 0;
    unsigned char compressionMethod = 0;
    unsigned int originalSize = 0;
    unsigned char timeOut = 0;
    unsigned char objectKeyLength = 0;
    unsigned char* objectKeyData = nullptr;
    unsigned char privateDataSize = 0;
    unsigned char* privateData = nullptr;
};

}  // namespace Sarn

#endif
