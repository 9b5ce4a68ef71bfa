#include "TISO639LanguageDescriptor.h"

#include "ISDBTUtils.h"
#include "Json.h"
#include "Log.h"
#include "ParserUtils.h"

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
    TISO639LanguageDescriptor* d = new TISO639LanguageDescriptor(bytes, length);
    // The entries are counted from the bytes handed in; inside a descriptor
    // loop that is exactly descriptor_length.
    const unsigned int payload = length - 2;
    if (payload < 4)
        return d;
    d->items = new Item[payload / 4];
    for (unsigned int p = 2, r = payload; r >= 4; p += 4, r -= 4) {
        Item& item = d->items[d->loopSize];
        if (ParserUtils::parseStr(bytes + p, item.languageCode, 3, r) != 3) {
            SARN_LOGW(
                "%s: TISO639LanguageDescriptor:: parse: ERROR: parsing Language Code. Aborting!");
            ISDBTUtils::setErrorCode(error, ERROR_FIELD_PARSE);
            delete d;
            return nullptr;
        }
        item.audioType = bytes[p + 3];
        ++d->loopSize;
    }
    return d;
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
