#include "TISO639LanguageDescriptor.h"

#include "Json.h"
#include "Log.h"
#include "Parse.h"
#include "Reader.h"

namespace Sarn {

TISO639LanguageDescriptor::TISO639LanguageDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(0x0A, bytes, length), loopSize(0), items(nullptr) {}

TISO639LanguageDescriptor::~TISO639LanguageDescriptor() {
    delete[] items;
}

TISO639LanguageDescriptor* TISO639LanguageDescriptor::parse(unsigned char* bytes,
                                                            unsigned int length, unsigned int*,
                                                            unsigned short* error) {
    if (!parseCommonHeader(bytes, length, error, 0, 0x0A))
        return nullptr;
    std::unique_ptr<TISO639LanguageDescriptor> d(new TISO639LanguageDescriptor(bytes, length));
    // The entries are counted from the bytes handed in; inside a descriptor
    // loop that is exactly descriptor_length.
    bytes::Reader r(bytes, length);
    r.skip(2);
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

std::string TISO639LanguageDescriptor::toJSON() const {
    std::string out;
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
    return out;
}

}  // namespace Sarn
