#include "TAudioComponentDescriptor.h"

#include "Json.h"

namespace Sarn {

TAudioComponentDescriptor::TAudioComponentDescriptor(unsigned char* bytes, unsigned int len)
    : TISDBTDescriptor(0xC4, bytes, len),
      streamContent(0),
      componentType(0),
      componentTag(0),
      streamType(0),
      simulcastGroupTag(0),
      esMultiLingualFlag(0),
      mainComponentFlag(0),
      qualityIndicator(0),
      samplingRate(0) {}

TAudioComponentDescriptor::~TAudioComponentDescriptor() {}

TAudioComponentDescriptor* TAudioComponentDescriptor::parse(unsigned char* data, unsigned int len,
                                                            unsigned int* /*bytesRead*/,
                                                            unsigned short* err) {
    // tag, length, reserved nibble + stream_content, component_type,
    // component_tag, stream_type, simulcast_group_tag, flags
    // (ES_multi_lingual 1, main_component 1, quality_indicator 2,
    // sampling_rate 3, reserved 1), ISO 639 code, second code when
    // bilingual, text. Codes and text are copied as they are.
    if (!parseCommonHeader(data, len, err, 9, 0xC4))
        return nullptr;
    TAudioComponentDescriptor* d = new TAudioComponentDescriptor(data, len);
    d->streamContent = static_cast<unsigned char>(data[2] & 0x0F);
    d->componentType = data[3];
    d->componentTag = data[4];
    d->streamType = data[5];
    d->simulcastGroupTag = data[6];
    const unsigned char flags = data[7];
    d->esMultiLingualFlag = static_cast<unsigned char>(flags >> 7);
    d->mainComponentFlag = static_cast<unsigned char>((flags & 0x40) >> 6);
    d->qualityIndicator = static_cast<unsigned char>((flags & 0x30) >> 4);
    d->samplingRate = static_cast<unsigned char>((flags & 0x0E) >> 1);
    // The header check guarantees the eleven bytes up to the first code.
    const char* p = reinterpret_cast<const char*>(data);
    d->languageCode1.assign(p + 8, 3);
    unsigned int pos = 11;
    if (d->esMultiLingualFlag == 1) {
        // A bilingual component without room for its second code ends here.
        if (len - pos < 3)
            return d;
        d->languageCode2.assign(p + pos, 3);
        pos += 3;
    }
    if (pos < len)
        d->text.assign(p + pos, len - pos);
    return d;
}

std::string TAudioComponentDescriptor::toJSON() const {
    std::string out;
    appendBaseJSON(out, 0);
    json::Out o(out);
    o << ",\"stream_content\":" << streamContent << ",\"component_type\":" << componentType
      << ",\"component_tag\":" << componentTag << ",\"stream_type\":" << streamType
      << ",\"simulcast_group_tag\":" << simulcastGroupTag
      << ",\"ES_multi_lingual_flag\":" << esMultiLingualFlag
      << ",\"main_component_flag\":" << mainComponentFlag
      << ",\"quality_indicator\":" << qualityIndicator << ",\"sampling_rate\":" << samplingRate
      << ",\"ISO_639_language_code\":\"" << languageCode1 << '"';
    if (esMultiLingualFlag == 1)
        o << ",\"ISO_639_language_code_2\":\"" << languageCode2 << '"';
    o << ",\"text\":\"" << text << '"';
    return out;
}

}  // namespace Sarn
