#include "TShortEventDescriptor.h"

#include "ISDBTUtils.h"
#include "Json.h"
#include "Log.h"
#include "ParserUtils.h"

namespace Sarn {

TShortEventDescriptor::TShortEventDescriptor(unsigned char* bytes, unsigned int len)
    : TISDBTDescriptor(0x4D, bytes, len) {}

TShortEventDescriptor::~TShortEventDescriptor() {}

TShortEventDescriptor* TShortEventDescriptor::parse(unsigned char* data, unsigned int len,
                                                    unsigned int* bytesRead, unsigned short* err) {
    // tag, length, ISO 639 code (3), event_name_length, name, text_length, text
    if (!parseCommonHeader(data, len, err, 5, 0x4D))
        return nullptr;
    TShortEventDescriptor* d = new TShortEventDescriptor(data, len);
    if (bytesRead != nullptr)
        *bytesRead = data[1] + 2u;

    if (ParserUtils::parseStr(data + 2, d->languageCode, 3, len - 2) != 3) {
        SARN_LOGW("%s: TShortEventDescriptor:: parse: ERROR: parsing Language Code. Aborting!");
        ISDBTUtils::setErrorCode(err, ERROR_FIELD_PARSE);
        delete d;
        return nullptr;
    }
    // The header check guarantees seven bytes: event_name_length is there.
    const int nameLength = data[5];
    unsigned int pos = 6;
    if (pos < len && nameLength > 0) {
        const int n = ParserUtils::parseStr(data + pos, d->eventName, nameLength, len - pos);
        if (n != nameLength) {
            SARN_LOGW(
                "%s: TShortEventDescriptor:: parse: ERROR: parsing Event name. Aborting! "
                "l_iStrLength: %d event_name_lentgth: %d",
                n, nameLength);
            ISDBTUtils::setErrorCode(err, ERROR_FIELD_PARSE);
            delete d;
            return nullptr;
        }
        pos += static_cast<unsigned int>(n);
    }
    // A descriptor that ends right after the name simply has no description.
    if (pos < len) {
        const int textLength = data[pos++];
        if (pos < len && textLength >= 1) {
            const int m =
                ParserUtils::parseStr(data + pos, d->eventDescription, textLength, len - pos);
            if (m != textLength) {
                SARN_LOGW(
                    "%s: TShortEventDescriptor:: parse: ERROR: parsing Event description. "
                    "Aborting! l_iStrLength: %d event_descr_length: %d",
                    m, textLength);
                ISDBTUtils::setErrorCode(err, ERROR_FIELD_PARSE);
                delete d;
                return nullptr;
            }
        }
    }
    ISDBTUtils::setErrorCode(err, ERROR_NONE);
    return d;
}

std::string TShortEventDescriptor::toJSON() const {
    std::string out;
    appendBaseJSON(out, 0);
    json::Out(out) << ",\"ISO_639_language_code\":\"" << languageCode << "\",\"event_name\":\""
                   << ISDBTUtils::escapeJSONString(eventName) << "\",\"event_description\":\""
                   << ISDBTUtils::escapeJSONString(eventDescription) << '"';
    return out;
}

}  // namespace Sarn
