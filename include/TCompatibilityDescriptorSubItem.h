#ifndef SARN_TCOMPATIBILITYDESCRIPTORSUBITEM_H
#define SARN_TCOMPATIBILITYDESCRIPTORSUBITEM_H

namespace Sarn {

/** A sub descriptor of a compatibility descriptor entry: its type and additional information. */
class TCompatibilityDescriptorSubItem {
  public:
    /**
     * Reads subDescriptorType, the information length and the information.
     * Fails with 2563 when the bytes given do not hold them.
     */
    static TCompatibilityDescriptorSubItem* parse(unsigned char* data, unsigned int length,
                                                  unsigned int* bytesRead, unsigned short* error);

    TCompatibilityDescriptorSubItem();
    TCompatibilityDescriptorSubItem(const TCompatibilityDescriptorSubItem&) = delete;
    TCompatibilityDescriptorSubItem& operator=(const TCompatibilityDescriptorSubItem&) = delete;
    virtual ~TCompatibilityDescriptorSubItem();

    unsigned char getSubDescriptorType() const { return subDescriptorType; }
    unsigned char getAdditionalInformationLength() const { return additionalInformationLength; }
    /** The information bytes (owned by the sub item), or null when there are none. */
    unsigned char* getAdditionalInformation() const { return additionalInformation; }

  private:
    unsigned char subDescriptorType = 0;
    unsigned char additionalInformationLength = 0;
    unsigned char* additionalInformation = nullptr;
};

}  // namespace Sarn

#endif
