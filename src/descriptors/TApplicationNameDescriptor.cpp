#include "TApplicationNameDescriptor.h"

#include <memory>

#include "DescriptorParse.h"
#include "ISDBTUtils.h"
#include "ItemLoop.h"
#include "Json.h"
#include "Log.h"
#include "Owned.h"
#include "Reader.h"

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
        return parse::fail(err, ERROR_DATA_TOO_SHORT);
    }
    std::unique_ptr<TApplicationNameDescriptorItem> item(new TApplicationNameDescriptorItem());
    bytes::Reader r(data, len);
    if (r.string(item->languageCode, 3) != 3) {
        SARN_LOGW(
            "%s: TApplicationNameDescriptorItem:: parse: ERROR: parsing Language Code. Aborting!");
        return parse::fail(err, ERROR_FIELD_PARSE);
    }
    if (r.string(item->name, 0) < 0) {
        SARN_LOGW("%s: TApplicationNameDescriptorItem:: parse: ERROR: parsing Name. Aborting!");
        return parse::fail(err, ERROR_FIELD_PARSE);
    }
    if (bytesRead != nullptr)
        *bytesRead = static_cast<unsigned char>(r.position());
    return item.release();  // the code is left as it stands
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

SARN_DESCRIPTOR_PARSE(TApplicationNameDescriptor, arena, data, len, bytesRead, err) {
    SARN_OPEN_OR_RETURN(arena, d, r, TApplicationNameDescriptor, data, len, err, 4, DESCRIPTOR_TAG);
    const unsigned char body = d->getDescriptorLength();
    // A repeated language code replaces the earlier item.
    TApplicationNameDescriptor* names = d.get();
    auto store = [names](TApplicationNameDescriptorItem* item) {
        owned::replace(names->items, item->getLanguageCode(), item);
    };
    if (parseItems<TApplicationNameDescriptorItem>(d, "TApplicationNameDescriptor", r.sub(body),
                                                   nullptr, err, store) == nullptr)
        return nullptr;
    if (bytesRead != nullptr)
        *bytesRead = body;
    return names;
}

void TApplicationNameDescriptor::add(TApplicationNameDescriptorItem* item) {
    if (item != nullptr)
        owned::assign(items, item->getLanguageCode(), item);
}

TApplicationNameDescriptorItem* TApplicationNameDescriptor::get(
    const std::string& languageCode) const {
    return owned::find(items, languageCode);
}

std::list<std::string> TApplicationNameDescriptor::getLanguageCodes() const {
    return owned::keys(items);
}

void TApplicationNameDescriptor::appendJSON(std::string& out) const {
    appendBaseJSON(out, 0);
    json::Out o(out);
    o << ",\"name_loop\":";
    json::appendArray(o, items, [&o](const auto& entry) {
        o << "{\"ISO_639_language_code\":\"" << entry.second->getLanguageCode()
          << "\",\"application_name\":\"" << entry.second->getName() << "\"}";
    });
}

std::string TApplicationNameDescriptor::toJSON() const {
    return TISDBTDescriptor::toJSON();
}

}  // namespace Sarn
