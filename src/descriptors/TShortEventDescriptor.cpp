#include "TShortEventDescriptor.h"

#include "DescriptorParse.h"
#include "ISDBTUtils.h"
#include "Json.h"
#include "Log.h"
#include "Reader.h"

namespace Sarn {

TShortEventDescriptor::TShortEventDescriptor(unsigned char* bytes, unsigned int len)
    : TISDBTDescriptor(0x4D, bytes, len) {}

TShortEventDescriptor::~TShortEventDescriptor() {}

SARN_DESCRIPTOR_PARSE(TShortEventDescriptor, arena, data, len, bytesRead, err) {
    // tag, length, ISO 639 code (3), event_name_length, name, text_length, text
    SARN_OPEN_OR_RETURN(arena, d, r, TShortEventDescriptor, data, len, err, 5, 0x4D);
    // The whole descriptor, announced before any of it is read.
    const unsigned int whole = d->getDescriptorLength() + 2u;
    if (bytesRead != nullptr)
        *bytesRead = whole;

    if (r.string(d->languageCode, 3) != 3) {
        SARN_LOGW("%s: TShortEventDescriptor:: parse: ERROR: parsing Language Code. Aborting!");
        return parse::fail(err, ERROR_FIELD_PARSE);
    }
    // The header check guarantees seven bytes: event_name_length is there.
    // The two texts run to the end of the bytes handed in at most; one that
    // goes further is refused (and logged by the string reader too).
    const int nameLength = r.u8();
    if (!r.atEnd() && nameLength > 0) {
        const int n = r.loggedString(d->eventName, static_cast<unsigned int>(nameLength), arena);
        if (n != nameLength) {
            SARN_LOGW(
                "%s: TShortEventDescriptor:: parse: ERROR: parsing Event name. Aborting! "
                "l_iStrLength: %d event_name_lentgth: %d",
                n, nameLength);
            return parse::fail(err, ERROR_FIELD_PARSE);
        }
    }
    // A descriptor that ends right after the name simply has no description.
    if (!r.atEnd()) {
        const int textLength = r.u8();
        if (!r.atEnd() && textLength >= 1) {
            const int m =
                r.loggedString(d->eventDescription, static_cast<unsigned int>(textLength), arena);
            if (m != textLength) {
                SARN_LOGW(
                    "%s: TShortEventDescriptor:: parse: ERROR: parsing Event description. "
                    "Aborting! l_iStrLength: %d event_descr_length: %d",
                    m, textLength);
                return parse::fail(err, ERROR_FIELD_PARSE);
            }
        }
    }
    return parse::done(err, d);
}

void TShortEventDescriptor::appendJSON(std::string& out) const {
    appendBaseJSON(out, 0);
    json::Out o(out);
    o << ",\"ISO_639_language_code\":\"" << languageCode << "\",\"event_name\":\"";
    o.escaped(eventName) << "\",\"event_description\":\"";
    o.escaped(eventDescription) << '"';
}

std::string TShortEventDescriptor::toJSON() const {
    return TISDBTDescriptor::toJSON();
}

}  // namespace Sarn
