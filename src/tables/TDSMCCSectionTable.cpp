#include "TDSMCCSectionTable.h"

#include "ISDBTUtils.h"
#include "Log.h"

namespace Sarn {

namespace {
// Standard DSM-CC tag of the stream event descriptor; the descriptor class
// knows it under this library's small tag 0x04.
constexpr unsigned char kStandardStreamEventTag = 0x1A;
}  // namespace

TDSMCCSectionTable::TDSMCCSectionTable(unsigned char* bytes, unsigned int length)
    : TISDBTVersionedTable(TYPE_DSMCC, 4, 0x3D, bytes, length),
      dataEventId(0),
      eventMsgGroupId(0),
      slots{} {}

TDSMCCSectionTable::~TDSMCCSectionTable() {
    for (TISDBTDescriptor* d : slots)
        delete d;
}

TDSMCCSectionTable* TDSMCCSectionTable::parse(unsigned char* bytes, unsigned int length,
                                              int checkCrc, int, unsigned short* error,
                                              TDSMCCSectionTable* previous) {
    TDSMCCSectionTable* table = new TDSMCCSectionTable(bytes, length);
    unsigned short remaining = 0;
    if (!table->parseCommonHeader(bytes, length, checkCrc, error, &remaining, previous)) {
        delete table;
        return nullptr;
    }
    table->dataEventId = static_cast<unsigned char>(table->tableIdExtension >> 12);
    table->eventMsgGroupId = table->tableIdExtension & 0x0FFF;

    // The loop runs from byte 8 up to the CRC32. A section_length below 4
    // wraps the counter; such a section is walked no further than the last
    // four bytes of the buffer, where its CRC32 is taken from.
    const unsigned int end = bodyEnd(8, remaining, length - 4);
    remaining = static_cast<unsigned short>(end > 8 ? end - 8 : 0);

    unsigned int p = 8;
    while (remaining != 0) {
        const unsigned char tag = bytes[p];
        const unsigned char descriptorLength = bytes[p + 1];
        // With a single byte left the length byte is the CRC's and the room
        // negative: the descriptor cannot fit.
        const int room = remaining - 2;
        if (descriptorLength > room) {
            SARN_LOGW("%s: TDSMCCSectionTable::parse: Item length not valid: %u > %u. Aborting!",
                      static_cast<unsigned int>(tag), static_cast<unsigned int>(room));
            ISDBTUtils::setErrorCode(error, ERROR_DATA_TOO_SHORT);
            delete table;
            return nullptr;
        }
        const unsigned int whole = descriptorLength + 2u;
        unsigned char* at = bytes + p;
        if (tag == kStandardStreamEventTag)
            at[0] = TStreamEventDescriptor::DESCRIPTOR_TAG;

        TISDBTDescriptor* d = nullptr;
        switch (at[0]) {
            case TNPTReferenceDescriptor::DESCRIPTOR_TAG:
                d = TNPTReferenceDescriptor::parse(at, whole, nullptr, error);
                break;
            case TNPTEndpointDescriptor::DESCRIPTOR_TAG:
                d = TNPTEndpointDescriptor::parse(at, whole, nullptr, error);
                break;
            case TStreamModeDescriptor::DESCRIPTOR_TAG:
                d = TStreamModeDescriptor::parse(at, whole, nullptr, error);
                break;
            case TStreamEventDescriptor::DESCRIPTOR_TAG:
                d = TStreamEventDescriptor::parse(at, whole, nullptr, error);
                break;
            default:
                SARN_LOGW("%s: TDSMCCSectionTable::parse: Unknown descriptor: 0x%02X. Ignored!",
                          static_cast<unsigned int>(tag));
                p += whole;
                remaining = static_cast<unsigned short>(remaining - whole);
                continue;
        }
        if (d == nullptr) {
            // The descriptor logged its reason and left its code.
            delete table;
            return nullptr;
        }
        // A repeated tag takes the slot; the earlier descriptor is not
        // reachable any more and goes.
        TISDBTDescriptor*& slot = table->slots[at[0] - 1];
        delete slot;
        slot = d;
        p += whole;
        remaining = static_cast<unsigned short>(remaining - whole);
    }
    ISDBTUtils::setErrorCode(error, ERROR_NONE);
    return table;
}

TNPTReferenceDescriptor* TDSMCCSectionTable::getNPTReferenceDescriptor() const {
    return static_cast<TNPTReferenceDescriptor*>(slots[0]);
}

TNPTEndpointDescriptor* TDSMCCSectionTable::getNPTEndpointDescriptor() const {
    return static_cast<TNPTEndpointDescriptor*>(slots[1]);
}

TStreamModeDescriptor* TDSMCCSectionTable::getStreamModeDescriptor() const {
    return static_cast<TStreamModeDescriptor*>(slots[2]);
}

TStreamEventDescriptor* TDSMCCSectionTable::getStreamEventDescriptor() const {
    return static_cast<TStreamEventDescriptor*>(slots[3]);
}

TISDBTDescriptor* TDSMCCSectionTable::getDescriptor(unsigned char tag) const {
    return tag >= 1 && tag <= kSlots ? slots[tag - 1] : nullptr;
}

std::list<unsigned char> TDSMCCSectionTable::getDescriptorTags() const {
    std::list<unsigned char> tags;
    for (int i = 0; i < kSlots; ++i)
        if (slots[i] != nullptr)
            tags.push_back(static_cast<unsigned char>(i + 1));
    return tags;
}

}  // namespace Sarn
