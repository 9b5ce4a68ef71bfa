#ifndef SARN_TDIGITALCOPYCONTROLDESCRIPTOR_H
#define SARN_TDIGITALCOPYCONTROLDESCRIPTOR_H

#include <string>
#include <vector>

#include "TDigitalCopyControlDescriptorItem.h"
#include "TISDBTDescriptor.h"

namespace Sarn {

/**
 * Digital copy control descriptor (tag 0xC1): the broadcaster's recording
 * control of an event or service, optionally per component. Reported only;
 * nothing is enforced. Its JSON has a name entry and no base members.
 */
class TDigitalCopyControlDescriptor : public TISDBTDescriptor {
  public:
    static TDigitalCopyControlDescriptor* parse(unsigned char* data, unsigned int len,
                                                unsigned int* bytesRead, unsigned short* err);

    TDigitalCopyControlDescriptor(unsigned char* data, unsigned int len);
    TDigitalCopyControlDescriptor(const TDigitalCopyControlDescriptor&) = delete;
    TDigitalCopyControlDescriptor& operator=(const TDigitalCopyControlDescriptor&) = delete;
    ~TDigitalCopyControlDescriptor() override;

    unsigned char getDigitalRecordingControlData() const { return digitalRecordingControlData; }
    bool hasMaximumBitrate() const { return maximumBitrateFlag; }
    bool hasComponentControl() const { return componentControlFlag; }
    unsigned char getCopyControlType() const { return copyControlType; }
    /** 0 unless copy_control_type is non-zero. */
    unsigned char getAPSControlData() const { return apsControlData; }
    /** 0 unless the maximum bitrate flag is set. */
    unsigned char getMaximumBitrate() const { return maximumBitrate; }

    int size() const { return static_cast<int>(items.size()); }
    /** Appends the item; the descriptor then owns it. */
    void add(TDigitalCopyControlDescriptorItem* item);
    /** The item at that position, or null beyond the last one. */
    TDigitalCopyControlDescriptorItem* get(unsigned int index) const;
    /** Deletes the item at that position; false when there is none. */
    bool remove(unsigned int index);

    std::string toJSON() const override;
    void appendJSON(std::string& out) const override;

  private:
    SARN_DESCRIPTOR_BUILD(TDigitalCopyControlDescriptor)
    unsigned char digitalRecordingControlData = 0;
    bool maximumBitrateFlag = false;
    bool componentControlFlag = false;
    unsigned char copyControlType = 0;
    unsigned char apsControlData = 0;
    unsigned char maximumBitrate = 0;
    std::vector<TDigitalCopyControlDescriptorItem*> items;  // owned, wire order
};

}  // namespace Sarn

#endif
