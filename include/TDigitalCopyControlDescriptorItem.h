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

    unsigned char componentTag;
    unsigned char digitalRecordingControlData;
    bool maximumBitrateFlag;
    unsigned char copyControlType;
    unsigned char apsControlData;
    unsigned char maximumBitrate;
};

}  // namespace Sarn

#endif
