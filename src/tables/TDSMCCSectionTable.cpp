#include "TDSMCCSectionTable.h"

#include <memory>

#include "DescriptorFactories.h"
#include "ISDBTUtils.h"
#include "Log.h"
#include "Parse.h"
#include "Reader.h"
#include "TableParse.h"

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

TDSMCCSectionTable* TDSMCCSectionTable::parse(unsigned char* data, unsigned int length,
                                              int checkCrc, int, unsigned short* error,
                                              TDSMCCSectionTable* previous) {
    memory::Arena arena(tables::blockFor(length));
    std::unique_ptr<TDSMCCSectionTable> table(
        tables::build<TDSMCCSectionTable>(arena, data, length));
    unsigned short body = 0;
    if (!table->parseCommonHeader(data, length, checkCrc, error, &body, previous))
        return nullptr;
    table->dataEventId = static_cast<unsigned char>(table->tableIdExtension >> 12);
    table->eventMsgGroupId = table->tableIdExtension & 0x0FFF;

    // The loop runs from byte 8 up to the CRC32. A section_length below 4
    // wraps the counter; such a section is walked no further than the last
    // four bytes of the buffer, where its CRC32 is taken from.
    bytes::Reader r(data, bodyEnd(8, body, length - 4));
    r.skip(8);
    while (!r.atEnd()) {
        const unsigned char tag = r.peek(0);
        // With a single byte left the length byte is the CRC's and the room
        // negative: the descriptor cannot fit.
        const int room = static_cast<int>(r.remaining()) - 2;
        if (r.peek(1) > room) {
            SARN_LOGW("%s: TDSMCCSectionTable::parse: Item length not valid: %u > %u. Aborting!",
                      static_cast<unsigned int>(tag), static_cast<unsigned int>(room));
            return parse::fail(error, ERROR_DATA_TOO_SHORT);
        }
        const unsigned int whole = r.peek(1) + 2u;
        unsigned char* at = r.mutableCurrent();
        r.skip(whole);
        // The stream event descriptor is rewritten in place to the tag its
        // class knows, so the descriptor reads (and keeps) that tag.
        const unsigned char kind =
            tag == kStandardStreamEventTag ? TStreamEventDescriptor::DESCRIPTOR_TAG : tag;
        if (kind != tag)
            at[0] = kind;

        const DescriptorFactory build = descriptorFactories(PLACE_DSMCC).at[kind];
        if (build == nullptr) {
            SARN_LOGW("%s: TDSMCCSectionTable::parse: Unknown descriptor: 0x%02X. Ignored!",
                      static_cast<unsigned int>(tag));
            continue;
        }
        TISDBTDescriptor* d = build(&arena, at, whole, nullptr, error);
        if (d == nullptr)
            return nullptr;  // the descriptor logged its reason and left its code
        // A repeated tag takes the slot; the earlier descriptor is not
        // reachable any more and goes.
        TISDBTDescriptor*& slot = table->slots[kind - 1];
        delete slot;
        slot = d;
    }
    return parse::done(error, table);
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
