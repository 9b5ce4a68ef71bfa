#ifndef SARN_TTSINFORMATIONDESCRIPTORITEM_H
#define SARN_TTSINFORMATIONDESCRIPTORITEM_H

namespace Sarn {

/**
 * One transmission type of the TS information descriptor: the hierarchical
 * layer and modulation it stands for, and the service_ids sent that way.
 */
class TTSInformationDescriptorItem {
  public:
    static TTSInformationDescriptorItem* parse(unsigned char* data, unsigned int length,
                                               unsigned int* bytesRead, unsigned short* error);

    TTSInformationDescriptorItem();
    TTSInformationDescriptorItem(const TTSInformationDescriptorItem&) = delete;
    TTSInformationDescriptorItem& operator=(const TTSInformationDescriptorItem&) = delete;
    virtual ~TTSInformationDescriptorItem();

    unsigned char getTransmissionTypeInfo() const { return transmissionTypeInfo; }
    /** The top two bits: the transmission parameter type (layer). */
    unsigned char getTransmissionParameterType() const { return transmissionTypeInfo >> 6; }
    /** Bits 5-4: the modulation system. */
    unsigned char getModulationSystem() const { return (transmissionTypeInfo & 0x30) >> 4; }
    unsigned char getNumberOfServices() const { return numberOfServices; }
    /** getNumberOfServices() service_ids; ids the bytes did not reach read 0. */
    unsigned short* getServices() const { return services; }

  private:
    unsigned char transmissionTypeInfo = 0;
    unsigned char numberOfServices = 0;
    unsigned short* services = nullptr;
};

}  // namespace Sarn

#endif
