#include "TDigitalCopyControlDescriptor.h"

#include <memory>

#include "DescriptorParse.h"
#include "ItemLoop.h"
#include "Json.h"
#include "Log.h"
#include "Owned.h"
#include "Reader.h"

namespace Sarn {

namespace {
// The control byte shared by the descriptor and its items:
// digital_recording_control_data (2 bits), maximum_bitrate_flag (1), a
// component_control_flag in the descriptor or a reserved bit in an item (1),
// copy_control_type (2), APS_control_data (2, meaningful only with a
// copy_control_type).
void decodeControl(unsigned char b, unsigned char& recording, bool& maximumBitrateFlag,
                   unsigned char& copyType, unsigned char& aps) {
    recording = static_cast<unsigned char>(b >> 6);
    maximumBitrateFlag = (b & 0x20) != 0;
    copyType = static_cast<unsigned char>((b & 0x0C) >> 2);
    aps = copyType != 0 ? static_cast<unsigned char>(b & 0x03) : 0;
}
}  // namespace

// ---------------------------------------------------------------------------
// Item: component_tag, control byte, maximum_bitrate when flagged.
// ---------------------------------------------------------------------------

TDigitalCopyControlDescriptorItem::TDigitalCopyControlDescriptorItem() {}

TDigitalCopyControlDescriptorItem::~TDigitalCopyControlDescriptorItem() {}

TDigitalCopyControlDescriptorItem* TDigitalCopyControlDescriptorItem::parse(unsigned char* data,
                                                                            unsigned int len,
                                                                            unsigned int* bytesRead,
                                                                            unsigned short* err) {
    bytes::Reader r(data, len);  // no bytes at all without data
    if (!r.has(2)) {
        SARN_LOGW(
            "%s: TDigitalCopyControlDescriptorItem::parse: Item length not valid: %u. Aborting!",
            r.remaining());
        return parse::fail(err, ERROR_DATA_TOO_SHORT);
    }
    std::unique_ptr<TDigitalCopyControlDescriptorItem> item(
        new TDigitalCopyControlDescriptorItem());
    item->componentTag = r.u8();
    decodeControl(r.u8(), item->digitalRecordingControlData, item->maximumBitrateFlag,
                  item->copyControlType, item->apsControlData);
    if (item->maximumBitrateFlag) {
        if (r.atEnd()) {
            SARN_LOGW(
                "%s: TDigitalCopyControlDescriptorItem::parse: Longer data length is required: "
                "%u < %u. Aborting!",
                r.remaining(), 1u);
            return parse::fail(err, ERROR_DESCRIPTOR_LENGTH);
        }
        item->maximumBitrate = r.u8();
    }
    return parse::done(err, item, bytesRead, r.position());
}

// ---------------------------------------------------------------------------
// Descriptor: tag, length, control byte, maximum_bitrate when flagged, and
// when component control is flagged a component_control_length and items.
// ---------------------------------------------------------------------------

TDigitalCopyControlDescriptor::TDigitalCopyControlDescriptor(unsigned char* bytes, unsigned int len)
    : TISDBTDescriptor(0xC1, bytes, len) {}

TDigitalCopyControlDescriptor::~TDigitalCopyControlDescriptor() {
    owned::deleteAll(items);
}

SARN_DESCRIPTOR_PARSE(TDigitalCopyControlDescriptor, arena, data, len, bytesRead, err) {
    SARN_OPEN_OR_RETURN(arena, d, r, TDigitalCopyControlDescriptor, data, len, err, 1, 0xC1);
    // Every shortage reports the bytes left against one, whatever it lacked.
    auto tooShort = [err](const bytes::Reader& left) {
        SARN_LOGW(
            "%s: TDigitalCopyControlDescriptor::parse: Longer data length is required: %u < %u. "
            "Aborting!",
            left.remaining(), 1u);
        return parse::fail(err, ERROR_DESCRIPTOR_LENGTH);
    };

    const unsigned char control = r.u8();
    decodeControl(control, d->digitalRecordingControlData, d->maximumBitrateFlag,
                  d->copyControlType, d->apsControlData);
    d->componentControlFlag = (control & 0x10) != 0;
    if (d->maximumBitrateFlag) {
        if (r.atEnd())
            return tooShort(r);
        d->maximumBitrate = r.u8();
    }
    if (d->componentControlFlag) {
        if (r.atEnd())
            return tooShort(r);
        // An 8-bit counter: an item running past the declared length wraps
        // it, and the walk goes on until an item no longer fits in the bytes
        // left (each item is offered all of them).
        unsigned char componentControlLength = r.u8();
        if (r.remaining() < componentControlLength)
            return tooShort(r);
        while (componentControlLength != 0) {
            unsigned int itemRead = 0;
            std::unique_ptr<TDigitalCopyControlDescriptorItem> item =
                nextItem<TDigitalCopyControlDescriptorItem>(r, err, &itemRead);
            if (item == nullptr) {
                SARN_LOGW("%s: TDigitalCopyControlDescriptor::parse: Invalid item. Aborting!");
                return parse::fail(err, ERROR_DESCRIPTOR_LENGTH);
            }
            d->items.push_back(item.release());
            componentControlLength = static_cast<unsigned char>(componentControlLength - itemRead);
        }
    }
    // Without the two header bytes.
    return parse::done(err, d, bytesRead, r.position() - 2);
}

void TDigitalCopyControlDescriptor::add(TDigitalCopyControlDescriptorItem* item) {
    if (item != nullptr)
        items.push_back(item);
}

TDigitalCopyControlDescriptorItem* TDigitalCopyControlDescriptor::get(unsigned int index) const {
    return index < items.size() ? items[index] : nullptr;
}

bool TDigitalCopyControlDescriptor::remove(unsigned int index) {
    if (index >= items.size())
        return false;
    delete items[index];
    items.erase(items.begin() + index);
    return true;
}

void TDigitalCopyControlDescriptor::appendJSON(std::string& out) const {
    json::Out o(out);
    o << "\"name\":\"digitalCopyControlDescriptor\",\"digitalRecordingControlData\":"
      << digitalRecordingControlData << ",\"maximumBitrateFlag\":" << maximumBitrateFlag
      << ",\"componentControlFlag\":" << componentControlFlag
      << ",\"copyControlType\":" << copyControlType << ",\"apsControlData\":" << apsControlData
      << ",\"maximumBitrate\":" << maximumBitrate << ",\"loop\":[";
    // The component_tag of an item is not rendered.
    for (size_t i = 0; i < items.size(); ++i) {
        const TDigitalCopyControlDescriptorItem* item = items[i];
        if (i != 0)
            o << ',';
        o << "{\"digitalRecordingControlData\":" << item->digitalRecordingControlData
          << ",\"maximumBitrateFlag\":" << item->maximumBitrateFlag
          << ",\"copyControlType\":" << item->copyControlType
          << ",\"apsControlData\":" << item->apsControlData
          << ",\"maximumBitrate\":" << item->maximumBitrate << ",\"reservedFutureUse\":[]}";
    }
    o << ']';
}

std::string TDigitalCopyControlDescriptor::toJSON() const {
    return TISDBTDescriptor::toJSON();
}

}  // namespace Sarn
