#ifndef SARN_TCONTENTAVAILABILITYDESCRIPTOR_H
#define SARN_TCONTENTAVAILABILITYDESCRIPTOR_H

#include <string>

#include "TISDBTDescriptor.h"

namespace Sarn {

/**
 * Content availability descriptor (tag 0xDE): what a receiver may do with
 * recorded content. The three flags hold the inverse of their wire bits, so
 * that each getter answers its own question (a wire bit of 0 reads as 1).
 */
class TContentAvailabilityDescriptor : public TISDBTDescriptor {
  public:
    /** bytesRead receives the whole length handed in. */
    static TContentAvailabilityDescriptor* parse(unsigned char* data, unsigned int length,
                                                 unsigned int* bytesRead, unsigned short* error);

    TContentAvailabilityDescriptor(unsigned char* data, unsigned int length);
    ~TContentAvailabilityDescriptor() override;

    std::string toJSON() const override;
    void appendJSON(std::string& out) const override;

    int isImageConstrained() const { return imageConstrained; }
    int isRetentionAllowed() const { return retentionAllowed; }
    unsigned char getRetentionState() const { return retentionState; }
    int isEncryptionModeEnabled() const { return encryptionModeEnabled; }

  private:
    SARN_DESCRIPTOR_BUILD(TContentAvailabilityDescriptor)
    int imageConstrained = 0;
    int retentionAllowed = 0;
    unsigned char retentionState = 0;
    int encryptionModeEnabled = 0;
};

}  // namespace Sarn

#endif
