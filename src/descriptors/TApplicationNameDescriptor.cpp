#include "TApplicationNameDescriptor.h"

#include "ISDBTUtils.h"
#include "ItemLoop.h"
#include "Json.h"
#include "Log.h"
#include "Owned.h"
#include "ParserUtils.h"

namespace Sarn {

TApplicationNameDescriptorItem::TApplicationNameDescriptorItem() {}

TApplicationNameDescriptorItem::TApplicationNameDescriptorItem(
    const TApplicationNameDescriptorItem* src)
    : languageCode(src->languageCode), name(src->name) {}

TApplicationNameDescriptorItem::~TApplicationNameDescriptorItem() {}

TApplicationNameDescriptorItem* TApplicationNameDescriptorItem::parse(unsigned char* data,
                                                                      unsigned int len,
                                                                      unsigned int* bytesRead,
                                                                      unsigned short* err) {
    // ISO_639_language_code (3 bytes), application_name_length, application_name
    if (data == nullptr || len < 4) {
        SARN_LOGW("%s: TApplicationNameDescriptorItem::parse: Item length not valid: %u. Aborting!",
                  len);
        ISDBTUtils::setErrorCode(err, ERROR_DATA_TOO_SHORT);
        return nullptr;
    }
    TApplicationNameDescriptorItem* item = new TApplicationNameDescriptorItem();
    if (ParserUtils::parseStr(data, item->languageCode, 3, len) != 3) {
        SARN_LOGW(
            "%s: TApplicationNameDescriptorItem:: parse: ERROR: parsing Language Code. Aborting!");
        ISDBTUtils::setErrorCode(err, ERROR_FIELD_PARSE);
        delete item;
        return nullptr;
    }
    const int nameBytes = ParserUtils::parseStr(data + 3, item->name, 0, len - 3);
    if (nameBytes < 0) {
        SARN_LOGW("%s: TApplicationNameDescriptorItem:: parse: ERROR: parsing Name. Aborting!");
        ISDBTUtils::setErrorCode(err, ERROR_FIELD_PARSE);
        delete item;
        return nullptr;
    }
    if (bytesRead != nullptr)
        *bytesRead = static_cast<unsigned char>(3 + nameBytes);
    return item;
}

TApplicationNameDescriptor::TApplicationNameDescriptor(unsigned char* bytes, unsigned int len)
    : TISDBTDescriptor(DESCRIPTOR_TAG, bytes, len) {}

TApplicationNameDescriptor::TApplicationNameDescriptor(const TApplicationNameDescriptor* src)
    : TISDBTDescriptor(*src) {
    owned::copyAll(src->items, items);
}

TApplicationNameDescriptor::~TApplicationNameDescriptor() {
    owned::deleteAll(items);
}

TApplicationNameDescriptor* TApplicationNameDescriptor::parse(unsigned char* data, unsigned int len,
                                                              unsigned int* bytesRead,
                                                              unsigned short* err) {
    if (!parseCommonHeader(data, len, err, 4, DESCRIPTOR_TAG))
        return nullptr;
    TApplicationNameDescriptor* d = new TApplicationNameDescriptor(data, len);
    // A repeated language code replaces the earlier item.
    auto store = [d](TApplicationNameDescriptorItem* item) {
        owned::replace(d->items, item->getLanguageCode(), item);
    };
    if (parseItems<TApplicationNameDescriptorItem>(d, "TApplicationNameDescriptor", data + 2,
                                                   data[1], nullptr, err, store) == nullptr)
        return nullptr;
    if (bytesRead != nullptr)
        *bytesRead = data[1];
    return d;
}

void TApplicationNameDescriptor::add(TApplicationNameDescriptorItem* item) {
    if (item != nullptr)
        items[item->getLanguageCode()] = item;
}

TApplicationNameDescriptorItem* TApplicationNameDescriptor::get(
    const std::string& languageCode) const {
    auto it = items.find(languageCode);
    return it == items.end() ? nullptr : it->second;
}

std::list<std::string> TApplicationNameDescriptor::getLanguageCodes() const {
    return owned::keys(items);
}

std::string TApplicationNameDescriptor::toJSON() const {
    std::string out;
    appendBaseJSON(out, 0);
    json::Out o(out);
    o << ",\"name_loop\":[";
    bool first = true;
    for (const auto& entry : items) {
        if (!first)
            o << ',';
        first = false;
        o << "{\"ISO_639_language_code\":\"" << entry.second->getLanguageCode()
          << "\",\"application_name\":\"" << entry.second->getName() << "\"}";
    }
    o << ']';
    return out;
}

}  // namespace Sarn
