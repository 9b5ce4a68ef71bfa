#include "TLocalTimeOffsetDescriptor.h"

#include "DescriptorParse.h"
#include "ISDBTUtils.h"
#include "ItemLoop.h"
#include "Json.h"
#include "Log.h"
#include "Owned.h"
#include "Reader.h"

namespace Sarn {

namespace {

// An offset is four BCD digits hhmm. Each high nibble is multiplied by ten
// as it stands, without shifting it down first: exact for single-digit hours
// and minutes, which is what the broadcasters send. The 16-bit field keeps
// the low bits of anything larger.
unsigned short offsetSeconds(unsigned short hhmm) {
    const unsigned int hh = hhmm >> 8;
    const unsigned int mm = hhmm & 0xFFu;
    const unsigned int hours = (hh & 0xF0) * 10u + (hh & 0x0F);
    const unsigned int minutes = (mm & 0xF0) * 10u + (mm & 0x0F);
    return static_cast<unsigned short>(hours * 3600 + minutes * 60);
}

// "HH:SS": whole hours, then the seconds left over from whole minutes (the
// rendering has always shown the remainder modulo 60 there).
void appendOffset(json::Out& o, unsigned short seconds) {
    o.zeroFilled(seconds / 3600, 2) << ':';
    o.zeroFilled(seconds % 60, 2);
}

}  // namespace

TLocalTimeOffsetDescriptorItem::TLocalTimeOffsetDescriptorItem()
    : countryCode{0, 0, 0, 0},
      countryRegionId(0),
      localTimeOffsetPolarity(1),
      localTimeOffset(0),
      timeOfChange(0),
      nextTimeOffset(0) {}

TLocalTimeOffsetDescriptorItem::~TLocalTimeOffsetDescriptorItem() {}

TLocalTimeOffsetDescriptorItem* TLocalTimeOffsetDescriptorItem::parse(unsigned char* bytes,
                                                                      unsigned int length,
                                                                      unsigned int* bytesRead,
                                                                      unsigned short* error) {
    bytes::Reader r(bytes, length);
    if (!r.has(13)) {
        SARN_LOGW(
            "%s: TLocalTimeOffsetDescriptorItem::parse: Descriptor length not valid: %u. "
            "Aborting!",
            length);
        return parse::fail(error, ERROR_DATA_TOO_SHORT);
    }
    std::unique_ptr<TLocalTimeOffsetDescriptorItem> item(new TLocalTimeOffsetDescriptorItem());
    // The code's bytes are kept as they come, control codes included.
    for (int i = 0; i < 3; ++i)
        item->countryCode[i] = static_cast<char>(r.u8());
    const unsigned char region = r.u8();
    item->countryRegionId = static_cast<unsigned char>((region & 0xFC) >> 2);
    item->localTimeOffsetPolarity = region & 0x01;
    item->localTimeOffset = offsetSeconds(r.u16());
    // time_of_change: 16-bit MJD and BCD hh mm ss.
    const unsigned int day = ISDBTUtils::mjd2unix(r.u16());
    const unsigned int hours = ISDBTUtils::bcd2U8(r.u8());
    const unsigned int minutes = ISDBTUtils::bcd2U8(r.u8());
    item->timeOfChange = day + hours * 3600u + minutes * 60u + ISDBTUtils::bcd2U8(r.u8());
    item->nextTimeOffset = offsetSeconds(r.u16());
    return parse::done(error, item, bytesRead, 13);
}

TLocalTimeOffsetDescriptor::TLocalTimeOffsetDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(0x58, bytes, length) {}

TLocalTimeOffsetDescriptor::~TLocalTimeOffsetDescriptor() {
    owned::deleteAll(items);
}

SARN_DESCRIPTOR_PARSE(TLocalTimeOffsetDescriptor, arena, bytes, length, bytesRead, error) {
    SARN_OPEN_OR_RETURN(arena, d, r, TLocalTimeOffsetDescriptor, bytes, length, error, 11, 0x58);
    unsigned int n = 0;
    while (!r.atEnd()) {
        std::unique_ptr<TLocalTimeOffsetDescriptorItem> item =
            nextItem<TLocalTimeOffsetDescriptorItem>(r, error, &n);
        if (item == nullptr) {
            SARN_LOGW(
                "%s: TLocalTimeOffsetDescriptor::parse: Descriptor length not valid: %u. "
                "Aborting!",
                length);
            return parse::fail(error, ERROR_DESCRIPTOR_LENGTH);
        }
        const std::string code = item->getCountryCode();
        owned::replace(d->items, code, item.release());
    }
    // The last entry's size.
    return parse::done(error, d, bytesRead, n);
}

void TLocalTimeOffsetDescriptor::add(TLocalTimeOffsetDescriptorItem* item) {
    if (item != nullptr)
        owned::assign(items, item->getCountryCode(), item);
}

TLocalTimeOffsetDescriptorItem* TLocalTimeOffsetDescriptor::get(std::string countryCode) const {
    return owned::find(items, countryCode);
}

std::list<std::string> TLocalTimeOffsetDescriptor::getCountryCodes() const {
    return owned::keys(items);
}

bool TLocalTimeOffsetDescriptor::remove(std::string countryCode) {
    return owned::erase(items, countryCode);
}

void TLocalTimeOffsetDescriptor::appendJSON(std::string& out) const {
    appendBaseJSON(out, 0);
    json::Out o(out);
    o << ",\"loop\":";
    json::appendArray(o, items, [&o](const auto& entry) {
        const TLocalTimeOffsetDescriptorItem* item = entry.second;
        o << "{\"country_code\":\"" << item->getCountryCode()
          << "\",\"country_region_id\":" << item->getCountryRegionID()
          << ",\"local_time_offset_polarity\":" << item->getLocalTimeOffsetPolarity()
          << ",\"local_time_offset\":\"";
        appendOffset(o, item->getLocalTimeOffset());
        o << "\",\"time_of_change\":\"";
        json::appendUtcTime(o, static_cast<int>(item->getTimeOfChange()));
        o << "\",\"next_time_offset\":\"";
        appendOffset(o, item->getNextTimeOffset());
        o << "\"}";
    });
}

std::string TLocalTimeOffsetDescriptor::toJSON() const {
    return TISDBTDescriptor::toJSON();
}

}  // namespace Sarn
