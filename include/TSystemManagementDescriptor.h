#ifndef SARN_TSYSTEMMANAGEMENTDESCRIPTOR_H
#define SARN_TSYSTEMMANAGEMENTDESCRIPTOR_H

#include <string>

#include "TISDBTDescriptor.h"

namespace Sarn {

/**
 * System management descriptor (tag 0xFE): broadcasting flag and identifier
 * (the system_management_id) and additional identification info.
 */
class TSystemManagementDescriptor : public TISDBTDescriptor {
  public:
    static TSystemManagementDescriptor* parse(unsigned char* data, unsigned int length,
                                              unsigned int* bytesRead, unsigned short* error);

    TSystemManagementDescriptor(unsigned char* data, unsigned int length);
    TSystemManagementDescriptor(const TSystemManagementDescriptor&) = delete;
    TSystemManagementDescriptor& operator=(const TSystemManagementDescriptor&) = delete;
    ~TSystemManagementDescriptor() override;

    std::string toJSON() const override;
    void appendJSON(std::string& out) const override;

    unsigned short getSystemManagementID() const { return systemManagementId; }
    /** The top two bits of the id left in place: 0, 64, 128 or 192. */
    unsigned char getBroadcastingFlag() const { return broadcastingFlag; }
    unsigned char getBroadcastingIdentifier() const { return broadcastingIdentifier; }
    unsigned char getAdditionalBroadcastingIdentification() const {
        return additionalBroadcastingIdentification;
    }
    unsigned char getAdditionalIdentificationInfoSize() const {
        return additionalIdentificationInfoSize;
    }
    unsigned char* getAdditionalIdentificationInfo() const { return additionalIdentificationInfo; }

  private:
    SARN_DESCRIPTOR_BUILD(TSystemManagementDescriptor)
    unsigned short systemManagementId = 0;
    unsigned char broadcastingFlag = 0;
    unsigned char broadcastingIdentifier = 0;
    unsigned char additionalBroadcastingIdentification = 0;
    unsigned char additionalIdentificationInfoSize = 0;
    unsigned char* additionalIdentificationInfo = nullptr;
};

}  // namespace Sarn

#endif
