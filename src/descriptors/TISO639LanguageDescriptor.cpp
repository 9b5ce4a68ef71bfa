#include "TISO639LanguageDescriptor.h"

#include "DescriptorParse.h"
#include "Json.h"
#include "Log.h"
#include "Reader.h"

namespace Sarn {

TISO639LanguageDescriptor::TISO639LanguageDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(0x0A, bytes, length) {}

TISO639LanguageDescriptor::~TISO639LanguageDescriptor() {
    delete[] items;
}

SARN_DESCRIPTOR_PARSE(TISO639LanguageDescriptor, arena, bytes, length, bytesRead, error) {
    // The entries are counted from the bytes handed in; inside a descriptor
    // loop that is exactly descriptor_length.
    SARN_OPEN_OR_RETURN(arena, d, r, TISO639LanguageDescriptor, bytes, length, error, 0, 0x0A);
    if (r.remaining() < 4)
        return parse::done(error, d);
    d->items = new Item[r.remaining() / 4];
    while (r.remaining() >= 4) {
        Item& item = d->items[d->loopSize];
        if (r.string(item.languageCode, 3) != 3) {
            SARN_LOGW(
                "%s: TISO639LanguageDescriptor:: parse: ERROR: parsing Language Code. Aborting!");
            return parse::fail(error, ERROR_FIELD_PARSE);
        }
        item.audioType = r.u8();
        ++d->loopSize;
    }
    return parse::done(error, d);
}

void TISO639LanguageDescriptor::appendJSON(std::string& out) const {
    appendBaseJSON(out, 0);
    json::Out o(out);
    o << ",\"language_loop\":[";
    for (int i = 0; i < loopSize; ++i) {
        if (i > 0)
            o << ',';
        o << "{\"language_code\":\"" << items[i].languageCode
          << "\",\"audio_type\":" << items[i].audioType << '}';
    }
    o << ']';
}

std::string TISO639LanguageDescriptor::toJSON() const {
    return TISDBTDescriptor::toJSON();
}

}  // namespace Sarn
