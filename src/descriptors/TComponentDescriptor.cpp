#include "TComponentDescriptor.h"

#include <memory>

#include "DescriptorParse.h"
#include "Json.h"
#include "Log.h"
#include "Reader.h"

namespace Sarn {

TComponentDescriptor::TComponentDescriptor(unsigned char* bytes, unsigned int len)
    : TISDBTDescriptor(0x50, bytes, len) {}

TComponentDescriptor::~TComponentDescriptor() {}

SARN_DESCRIPTOR_PARSE(TComponentDescriptor, arena, data, len, bytesRead, err) {
    // tag, length, reserved nibble + stream_content, component_type,
    // component_tag, ISO 639 code (3), text up to the end.
    SARN_OPEN_OR_RETURN(arena, d, r, TComponentDescriptor, data, len, err, 6, 0x50);
    d->streamContent = static_cast<unsigned char>(r.u8() & 0x0F);
    d->componentType = r.u8();
    d->componentTag = r.u8();
    if (r.loggedString(d->languageCode, 3) != 3) {
        SARN_LOGW("%s: TComponentDescriptor:: parse: ERROR: parsing Language Code. Aborting!");
        return parse::fail(err, ERROR_FIELD_PARSE);
    }
    // Every byte after the language code is text (none: an empty text).
    const int n = r.loggedString(d->text, r.remaining(), arena);
    if (n < 0) {
        SARN_LOGW("%s: TComponentDescriptor:: parse: ERROR: parsing Text. Aborting!");
        return parse::fail(err, ERROR_FIELD_PARSE);
    }
    // The language code and the text, without the five bytes before them.
    return parse::done(err, d, bytesRead, 3 + static_cast<unsigned int>(n));
}

void TComponentDescriptor::appendJSON(std::string& out) const {
    json::Out(out) << "\"name\":\"componentDescriptor\",\"streamContent\":" << streamContent
                   << ",\"componentType\":" << componentType << ",\"componentTag\":" << componentTag
                   << ",\"iso639LanguageCode\":\"" << languageCode << "\",\"text\":\"" << text
                   << '"';
}

std::string TComponentDescriptor::toJSON() const {
    return TISDBTDescriptor::toJSON();
}

}  // namespace Sarn
