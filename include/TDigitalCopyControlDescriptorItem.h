#ifndef SARN_TDIGITALCOPYCONTROLDESCRIPTORITEM_H
#define SARN_TDIGITALCOPYCONTROLDESCRIPTORITEM_H

namespace Sarn {

/** The copy control of one component (by component_tag) of a digital copy control descriptor. */
class TDigitalCopyControlDescriptorItem {
  public:
    /** data points at component_tag; two or three bytes are read. */
    static TDigitalCopyControlDescriptorItem* parse(unsigned char* data, unsigned int len,
                                                    unsigned int* bytesRead, unsigned short* err);

    TDigitalCopyControlDescriptorItem();
    virtual ~TDigitalCopyControlDescriptorItem();

    unsigned char getComponentTag() const { return componentTag; }
    unsigned char getDigitalRecordingControlData() const { return digitalRecordingControlData; }
    bool hasMaximumBitrate() const { return maximumBitrateFlag; }
    unsigned char getCopyControlType() const { return copyControlType; }
    unsigned char getAPSControlData() const { return apsControlData; }
    unsigned char getMaximumBitrate() const { return maximumBitrate; }

  private:
    friend class TDigitalCopyControlDescriptor;

    unsigned char componentTag = 0;
    unsigned char digitalRecordingControlData = 0;
    bool maximumBitrateFlag = false;
    unsigned char copyControlType = 0;
    unsigned char apsControlData = 0;
    unsigned char maximumBitrate = 0;
};

}  // namespace Sarn

#endif
