#include "TAudioComponentDescriptor.h"

#include <memory>

#include "DescriptorFields.h"
#include "DescriptorParse.h"
#include "Json.h"

namespace Sarn {

TAudioComponentDescriptor::TAudioComponentDescriptor(unsigned char* bytes, unsigned int len)
    : TISDBTDescriptor(0xC4, bytes, len) {}

TAudioComponentDescriptor::~TAudioComponentDescriptor() {}

SARN_DESCRIPTOR_PARSE(TAudioComponentDescriptor, arena, data, len, bytesRead, err) {
    // tag, length, reserved nibble + stream_content, component_type,
    // component_tag, stream_type, simulcast_group_tag, flags
    // (ES_multi_lingual 1, main_component 1, quality_indicator 2,
    // sampling_rate 3, reserved 1), ISO 639 code, second code when
    // bilingual, text. Codes and text are copied as they are.
    SARN_OPEN_OR_RETURN(arena, d, r, TAudioComponentDescriptor, data, len, err, 9, 0xC4);
    d->streamContent = static_cast<unsigned char>(r.u8() & 0x0F);
    d->componentType = r.u8();
    d->componentTag = r.u8();
    d->streamType = r.u8();
    d->simulcastGroupTag = r.u8();
    const unsigned char flags = r.u8();
    d->esMultiLingualFlag = static_cast<unsigned char>(flags >> 7);
    d->mainComponentFlag = static_cast<unsigned char>((flags & 0x40) >> 6);
    d->qualityIndicator = static_cast<unsigned char>((flags & 0x30) >> 4);
    d->samplingRate = static_cast<unsigned char>((flags & 0x0E) >> 1);
    // The header check guarantees the eleven bytes up to the first code.
    fields::readChars(r, d->languageCode1, 3);
    if (d->esMultiLingualFlag == 1) {
        // A bilingual component without room for its second code ends here.
        if (!r.has(3))
            return parse::done(err, d);
        fields::readChars(r, d->languageCode2, 3);
    }
    fields::readChars(r, d->text, r.remaining(), arena);
    return parse::done(err, d);
}

void TAudioComponentDescriptor::appendJSON(std::string& out) const {
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
}

std::string TAudioComponentDescriptor::toJSON() const {
    return TISDBTDescriptor::toJSON();
}

}  // namespace Sarn
