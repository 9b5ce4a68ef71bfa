#include "TComponentDescriptor.h"

#include "ISDBTUtils.h"
#include "Json.h"
#include "Log.h"
#include "ParserUtils.h"

namespace Sarn {

TComponentDescriptor::TComponentDescriptor(unsigned char* bytes, unsigned int len)
    : TISDBTDescriptor(0x50, bytes, len), streamContent(0), componentType(0), componentTag(0) {}

TComponentDescriptor::~TComponentDescriptor() {}

TComponentDescriptor* TComponentDescriptor::parse(unsigned char* data, unsigned int len,
                                                  unsigned int* bytesRead, unsigned short* err) {
    // tag, length, reserved nibble + stream_content, component_type,
    // component_tag, ISO 639 code (3), text up to the end.
    if (!parseCommonHeader(data, len, err, 6, 0x50))
        return nullptr;
    TComponentDescriptor* d = new TComponentDescriptor(data, len);
    d->streamContent = static_cast<unsigned char>(data[2] & 0x0F);
    d->componentType = data[3];
    d->componentTag = data[4];
    if (ParserUtils::parseStr(data + 5, d->languageCode, 3, len - 5) != 3) {
        SARN_LOGW("%s: TComponentDescriptor:: parse: ERROR: parsing Language Code. Aborting!");
        ISDBTUtils::setErrorCode(err, ERROR_FIELD_PARSE);
        delete d;
        return nullptr;
    }
    // Every byte after the language code is text (none: an empty text).
    const int n = ParserUtils::parseStr(data + 8, d->text, len - 8, len - 8);
    if (n < 0) {
        SARN_LOGW("%s: TComponentDescriptor:: parse: ERROR: parsing Text. Aborting!");
        ISDBTUtils::setErrorCode(err, ERROR_FIELD_PARSE);
        delete d;
        return nullptr;
    }
    // The language code and the text, without the five bytes before them.
    if (bytesRead != nullptr)
        *bytesRead = 3 + static_cast<unsigned int>(n);
    ISDBTUtils::setErrorCode(err, ERROR_NONE);
    return d;
}

std::string TComponentDescriptor::toJSON() const {
    std::string out;
    json::Out(out) << "\"name\":\"componentDescriptor\",\"streamContent\":" << streamContent
                   << ",\"componentType\":" << componentType << ",\"componentTag\":" << componentTag
                   << ",\"iso639LanguageCode\":\"" << languageCode << "\",\"text\":\"" << text
                   << '"';
    return out;
}

}  // namespace Sarn
