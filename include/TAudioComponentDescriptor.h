#ifndef SARN_TAUDIOCOMPONENTDESCRIPTOR_H
#define SARN_TAUDIOCOMPONENTDESCRIPTOR_H

#include <string>

#include "TISDBTDescriptor.h"

namespace Sarn {

/**
 * Audio component descriptor (tag 0xC4): an audio component of an event
 * (stream type, simulcast group, flags, quality, sampling rate code, one or
 * two languages, text). Languages and text are the raw bytes, unfiltered.
 */
class TAudioComponentDescriptor : public TISDBTDescriptor {
  public:
    static TAudioComponentDescriptor* parse(unsigned char* data, unsigned int len,
                                            unsigned int* bytesRead, unsigned short* err);

    TAudioComponentDescriptor(unsigned char* data, unsigned int len);
    ~TAudioComponentDescriptor() override;

    unsigned char getStreamContent() const { return streamContent; }
    unsigned char getComponentType() const { return componentType; }
    unsigned char getComponentTag() const { return componentTag; }
    unsigned char getStreamType() const { return streamType; }
    unsigned char getSimulcastGroup() const { return simulcastGroupTag; }
    unsigned char getEsMultiLingual() const { return esMultiLingualFlag; }
    unsigned char getMainComponent() const { return mainComponentFlag; }
    unsigned char getQualityIndicator() const { return qualityIndicator; }
    /** The 3-bit sampling rate code, not a frequency. */
    unsigned char getSamplingRate() const { return samplingRate; }
    std::string getLanguageCode1() const { return languageCode1; }
    /** Empty unless the component is bilingual. */
    std::string getLanguageCode2() const { return languageCode2; }
    std::string getText() const { return text.str(); }

    std::string toJSON() const override;
    void appendJSON(std::string& out) const override;

  private:
    SARN_DESCRIPTOR_BUILD(TAudioComponentDescriptor)
    unsigned char streamContent = 0;
    unsigned char componentType = 0;
    unsigned char componentTag = 0;
    unsigned char streamType = 0;
    unsigned char simulcastGroupTag = 0;
    unsigned char esMultiLingualFlag = 0;
    unsigned char mainComponentFlag = 0;
    unsigned char qualityIndicator = 0;
    unsigned char samplingRate = 0;
    std::string languageCode1;
    std::string languageCode2;
    memory::Text text;
};

}  // namespace Sarn

#endif
