#include "TLocalTimeOffsetDescriptor.h"

#include "Bytes.h"
#include "ISDBTUtils.h"
#include "Json.h"
#include "Log.h"
#include "Owned.h"

namespace Sarn {

namespace {

// An offset is four BCD digits hhmm. Each high nibble is multiplied by ten
// as it stands, without shifting it down first: exact for single-digit hours
// and minutes, which is what the broadcasters send. The 16-bit field keeps
// the low bits of anything larger.
unsigned short offsetSeconds(const unsigned char* hhmm) {
    const unsigned int hours = (hhmm[0] & 0xF0) * 10u + (hhmm[0] & 0x0F);
    const unsigned int minutes = (hhmm[1] & 0xF0) * 10u + (hhmm[1] & 0x0F);
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
      country_region_id(0),
      local_time_offset_polarity(1),
      local_time_offset(0),
      time_of_change(0),
      next_time_offset(0) {}

TLocalTimeOffsetDescriptorItem::~TLocalTimeOffsetDescriptorItem() {}

TLocalTimeOffsetDescriptorItem* TLocalTimeOffsetDescriptorItem::parse(unsigned char* bytes,
                                                                      unsigned int length,
                                                                      unsigned int* bytesRead,
                                                                      unsigned short* error) {
    if (bytes == nullptr || length < 13) {
        SARN_LOGW(
            "%s: TLocalTimeOffsetDescriptorItem::parse: Descriptor length not valid: %u. "
            "Aborting!",
            length);
        ISDBTUtils::setErrorCode(error, ERROR_DATA_TOO_SHORT);
        return nullptr;
    }
    TLocalTimeOffsetDescriptorItem* item = new TLocalTimeOffsetDescriptorItem();
    for (int i = 0; i < 3; ++i)
        item->countryCode[i] = static_cast<char>(bytes[i]);
    item->country_region_id = static_cast<unsigned char>((bytes[3] & 0xFC) >> 2);
    item->local_time_offset_polarity = bytes[3] & 0x01;
    item->local_time_offset = offsetSeconds(bytes + 4);
    // time_of_change: 16-bit MJD and BCD hh mm ss.
    item->time_of_change = ISDBTUtils::mjd2unix(bytes::be16(bytes + 6)) +
                           ISDBTUtils::bcd2U8(bytes[8]) * 3600u +
                           ISDBTUtils::bcd2U8(bytes[9]) * 60u + ISDBTUtils::bcd2U8(bytes[10]);
    item->next_time_offset = offsetSeconds(bytes + 11);
    if (bytesRead != nullptr)
        *bytesRead = 13;
    ISDBTUtils::setErrorCode(error, ERROR_NONE);
    return item;
}

TLocalTimeOffsetDescriptor::TLocalTimeOffsetDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(0x58, bytes, length) {}

TLocalTimeOffsetDescriptor::~TLocalTimeOffsetDescriptor() {
    owned::deleteAll(items);
}

TLocalTimeOffsetDescriptor* TLocalTimeOffsetDescriptor::parse(unsigned char* bytes,
                                                              unsigned int length,
                                                              unsigned int* bytesRead,
                                                              unsigned short* error) {
    if (!parseCommonHeader(bytes, length, error, 11, 0x58))
        return nullptr;
    TLocalTimeOffsetDescriptor* d = new TLocalTimeOffsetDescriptor(bytes, length);
    unsigned int n = 0;
    for (unsigned int pos = 2; pos < length; pos += n) {
        TLocalTimeOffsetDescriptorItem* item =
            TLocalTimeOffsetDescriptorItem::parse(bytes + pos, length - pos, &n, error);
        if (item == nullptr) {
            SARN_LOGW(
                "%s: TLocalTimeOffsetDescriptor::parse: Descriptor length not valid: %u. "
                "Aborting!",
                length);
            ISDBTUtils::setErrorCode(error, ERROR_DESCRIPTOR_LENGTH);
            delete d;
            return nullptr;
        }
        owned::replace(d->items, item->getCountryCode(), item);
    }
    if (bytesRead != nullptr)
        *bytesRead = n;
    ISDBTUtils::setErrorCode(error, ERROR_NONE);
    return d;
}

void TLocalTimeOffsetDescriptor::add(TLocalTimeOffsetDescriptorItem* item) {
    if (item != nullptr)
        items[item->getCountryCode()] = item;
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

std::string TLocalTimeOffsetDescriptor::toJSON() const {
    std::string out;
    appendBaseJSON(out, 0);
    json::Out o(out);
    o << ",\"loop\":[";
    bool first = true;
    for (const auto& entry : items) {
        const TLocalTimeOffsetDescriptorItem* item = entry.second;
        if (!first)
            o << ',';
        first = false;
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
    }
    o << ']';
    return out;
}

}  // namespace Sarn
