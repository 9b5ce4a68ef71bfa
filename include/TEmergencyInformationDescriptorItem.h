#ifndef SARN_TEMERGENCYINFORMATIONDESCRIPTORITEM_H
#define SARN_TEMERGENCYINFORMATIONDESCRIPTORITEM_H

namespace Sarn {

/**
 * One service of an emergency information descriptor: whether the warning
 * starts or ends, its signal level and the 12-bit area codes it addresses.
 */
class TEmergencyInformationDescriptorItem {
  public:
    /** bytesRead receives 4 plus the area-code length. */
    static TEmergencyInformationDescriptorItem* parse(unsigned char* data, unsigned int length,
                                                      unsigned int* bytesRead,
                                                      unsigned short* error);

    TEmergencyInformationDescriptorItem();
    TEmergencyInformationDescriptorItem(const TEmergencyInformationDescriptorItem&) = delete;
    TEmergencyInformationDescriptorItem& operator=(const TEmergencyInformationDescriptorItem&) =
        delete;
    virtual ~TEmergencyInformationDescriptorItem();

    unsigned short getServiceID() const { return serviceID; }
    /** 1: the warning starts; 0: it ends. */
    int isStart() const { return start; }
    unsigned char getSignalLevel() const { return signalLevel; }
    /** The number of area codes (half the area-code byte count). */
    unsigned char getAreaCodeCounter() const { return areaCodeLength / 2; }
    unsigned short* getAreaCodes() const { return areaCodes; }

  private:
    unsigned short serviceID = 0;
    int start = 0;
    unsigned char signalLevel = 0;
    unsigned char areaCodeLength = 0;
    unsigned short* areaCodes = nullptr;
};

}  // namespace Sarn

#endif
