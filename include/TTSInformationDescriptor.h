#ifndef SARN_TTSINFORMATIONDESCRIPTOR_H
#define SARN_TTSINFORMATIONDESCRIPTOR_H

#include <string>
#include <vector>

#include "TISDBTDescriptor.h"
#include "TTSInformationDescriptorItem.h"

namespace Sarn {

/**
 * TS information descriptor (tag 0xCD, in the NIT): the remote control key
 * of the transport stream, its name, and up to three transmission types with
 * their services. Owns its transmission types.
 */
class TTSInformationDescriptor : public TISDBTDescriptor {
  public:
    static TTSInformationDescriptor* parse(unsigned char* data, unsigned int length,
                                           unsigned int* bytesRead, unsigned short* error);

    TTSInformationDescriptor(unsigned char* data, unsigned int length);
    TTSInformationDescriptor(const TTSInformationDescriptor&) = delete;
    TTSInformationDescriptor& operator=(const TTSInformationDescriptor&) = delete;
    ~TTSInformationDescriptor() override;

    unsigned char getRemoteControlKeyID() const { return remoteControlKeyId; }
    /** The number of transmission types parsed when 1 to 3, else 0. */
    unsigned char getTxInformation() const { return txInformation; }
    std::string getTransportStreamName() const { return transportStreamName.str(); }

    int getTransmissionTypeCount() const { return static_cast<int>(transmissionTypes.size()); }
    /** Appends a transmission type; the descriptor owns it from then on. */
    void addTransmissionType(TTSInformationDescriptorItem* item);
    /** The item at that position, or null beyond the last. */
    TTSInformationDescriptorItem* getTransmissionType(unsigned char index) const;
    /** Deletes the item at that position; false when there is none. */
    bool removeTransmissionType(unsigned char index);

    std::string toJSON() const override;
    void appendJSON(std::string& out) const override;

  private:
    SARN_DESCRIPTOR_BUILD(TTSInformationDescriptor)
    unsigned char remoteControlKeyId = 0;
    memory::Text transportStreamName;
    unsigned char txInformation = 0;
    std::vector<TTSInformationDescriptorItem*> transmissionTypes;
};

}  // namespace Sarn

#endif
