#include "TNITTable.h"

#include "Arena.h"
#include "Bytes.h"
#include "Json.h"
#include "Owned.h"
#include "TableParse.h"

namespace Sarn {

namespace {

// Descriptors a NIT or one of its transport streams may legally carry.
constexpr DescriptorTagSet kNetworkTags = {0x40, 0xFE, 0x41, 0x4A, 0xFA, 0xFC, 0xFB, 0xCD};

}  // namespace

TTransportStreamInfo::TTransportStreamInfo()
    : DescriptorLoop(kNetworkTags), transportStreamId(0), originalNetworkId(0) {}

TTransportStreamInfo::~TTransportStreamInfo() {}

SARN_ENTRY_PARSE(TTransportStreamInfo, arena, bytes, length, bytesRead, error) {
    // The entry's messages have always named it TNITTransportStreamInfo.
    bytes::Reader in(bytes, length);
    if (!tables::hasFixed(in, 6, "TNITTransportStreamInfo", length, error))
        return nullptr;
    const unsigned char* fixed = in.bytes(6);
    const unsigned int descriptorsLength = bytes::len12(fixed + 4);
    if (descriptorsLength > length) {
        SARN_LOGW("%s: TNITTransportStreamInfo::parse: Item length not valid: %u > %u. Aborting!",
                  descriptorsLength, length);
        return parse::fail(error, ERROR_DATA_TOO_SHORT);
    }
    std::unique_ptr<TTransportStreamInfo> info(memory::make<TTransportStreamInfo>(arena));
    info->transportStreamId = bytes::be16(fixed);
    info->originalNetworkId = bytes::be16(fixed + 2);
    // A loop a little longer than the bytes left is clamped to them (and
    // takes them all), not refused.
    if (!in.has(descriptorsLength))
        SARN_LOGW(
            "%s: TNITTransportStreamInfo::parse: TS descriptor length bigger than data length! (%u "
            "> %u)",
            descriptorsLength, in.remaining());
    bytes::Reader loop = in.subAtMost(descriptorsLength);
    memory::Builder::descriptors(arena, *info, loop.mutableCurrent(), loop.remaining());
    return tables::finish(in, bytesRead, error, info);
}

TNITTable::TNITTable(unsigned char* bytes, unsigned int length)
    : TISDBTVersionedTable(TYPE_NIT, 16, 0x40, bytes, length), DescriptorLoop(kNetworkTags) {}

TNITTable::~TNITTable() {
    owned::deleteAll(transportStreams);
}

TNITTable* TNITTable::parse(unsigned char* bytes, unsigned int length, int checkCrc, int,
                            unsigned short* error, TNITTable* previous) {
    memory::Arena arena(tables::blockFor(length, 12));
    return tables::parse(
        tables::build<TNITTable>(arena, bytes, length), bytes, length, checkCrc, error, previous,
        [&](TNITTable& table, unsigned short remaining) {
            const memory::VectorInArena<decltype(table.transportStreams)> inArena(
                table.transportStreams, &arena);
            bytes::Reader section = tables::afterHeader(bytes, length);
            // network_descriptors_length lies within the minimum length, even in a
            // section whose section_length is too short for it.
            const unsigned int networkDescriptorsLength = bytes::Reader(section).length12();
            // Up to the CRC32; a wrapped body counter stops at the end of the bytes
            // handed in.
            bytes::Reader body = section.subAtMost(remaining);
            // The network descriptors must leave room for transport_stream_loop_length.
            if (!body.has(4 + networkDescriptorsLength)) {
                SARN_LOGW("%s: TNITTable::parse: NetDescLen not valid: %u > %u. Aborting!",
                          10 + networkDescriptorsLength, 6 + body.remaining());
                return parse::refuse(error, ERROR_DATA_TOO_SHORT);
            }
            body.skip(2);
            const unsigned int read =
                tables::readDescriptors(&arena, table, body, networkDescriptorsLength);
            if (read != networkDescriptorsLength)
                SARN_LOGW(
                    "%s: TNITTable::parse: read bytes different than network descriptors "
                    "length (%d != %d)",
                    static_cast<int>(read), static_cast<int>(networkDescriptorsLength));

            const unsigned int loopLength = body.length12();
            if (!body.has(loopLength)) {
                SARN_LOGW("%s: TNITTable::parse: Item length not valid: %u > %u. Aborting!",
                          loopLength, static_cast<unsigned int>(remaining));
                return parse::refuse(error, ERROR_DATA_TOO_SHORT);
            }
            bytes::Reader loop = body.sub(loopLength);
            return tables::readToEnd<TTransportStreamInfo>(
                arena, loop, "TNITTable", error, [&](auto* info) {
                    owned::replace(table.transportStreams, info->transportStreamId, info);
                });
        });
}

SARN_OWNED_MAP_METHODS(TNITTable, unsigned short, TTransportStreamInfo, transportStreams,
                       getTransportStreamID, addTransportStreamInfo, getTransportStreamInfo,
                       getTransportStreamIDs, removeTransportStreamInfo)

std::string TNITTable::toJSON() const {
    std::string out = json::tableText(dataLength);
    json::Out o(out);
    o << "{\"networkId\":" << tableIdExtension << ",\"networkDescriptors\":";
    appendDescriptorsJSON(out);
    o << ",\"transportStreams\":";
    json::appendArray(o, transportStreams, [&](const auto& entry) {
        const TTransportStreamInfo* info = entry.second;
        o << "{\"transportStreamId\":" << info->transportStreamId
          << ",\"originalNetworkId\":" << info->originalNetworkId << ",\"transportDescriptors\":";
        info->appendDescriptorsJSON(out);
        o << '}';
    });
    o << '}';
    return out;
}

}  // namespace Sarn
