#include "TNITTable.h"

#include "Bytes.h"
#include "ISDBTUtils.h"
#include "Json.h"
#include "Log.h"
#include "Owned.h"

namespace Sarn {

namespace {

// Descriptors a NIT or one of its transport streams may legally carry.
constexpr DescriptorTagSet kNetworkTags = {0x40, 0xFE, 0x41, 0x4A, 0xFA, 0xFC, 0xFB, 0xCD};

}  // namespace

TTransportStreamInfo::TTransportStreamInfo()
    : DescriptorLoop(kNetworkTags), transport_stream_id(0), original_network_id(0) {}

TTransportStreamInfo::~TTransportStreamInfo() {}

TTransportStreamInfo* TTransportStreamInfo::parse(unsigned char* bytes, unsigned int length, int,
                                                  unsigned int* bytesRead, unsigned short* error) {
    // The entry's messages have always named it TNITTransportStreamInfo.
    if (bytes == nullptr || length < 6) {
        SARN_LOGW("%s: TNITTransportStreamInfo::parse: Item length not valid: %u. Aborting!",
                  length);
        ISDBTUtils::setErrorCode(error, ERROR_DATA_TOO_SHORT);
        return nullptr;
    }
    const unsigned int descriptorsLength = bytes::len12(bytes + 4);
    if (descriptorsLength > length) {
        SARN_LOGW("%s: TNITTransportStreamInfo::parse: Item length not valid: %u > %u. Aborting!",
                  descriptorsLength, length);
        ISDBTUtils::setErrorCode(error, ERROR_DATA_TOO_SHORT);
        return nullptr;
    }
    TTransportStreamInfo* info = new TTransportStreamInfo();
    info->transport_stream_id = bytes::be16(bytes);
    info->original_network_id = bytes::be16(bytes + 2);
    // A loop a little longer than the bytes left is clamped to them (and
    // takes them all), not refused.
    unsigned int total = 6 + descriptorsLength;
    if (total > length) {
        SARN_LOGW(
            "%s: TNITTransportStreamInfo::parse: TS descriptor length bigger than data length! (%u "
            "> %u)",
            descriptorsLength, length - 6);
        total = length;
    }
    info->parseDescriptorsLoop(bytes + 6, total - 6);
    if (bytesRead != nullptr)
        *bytesRead = total;
    ISDBTUtils::setErrorCode(error, ERROR_NONE);
    return info;
}

TNITTable::TNITTable(unsigned char* bytes, unsigned int length)
    : TISDBTVersionedTable(TYPE_NIT, 16, 0x40, bytes, length), DescriptorLoop(kNetworkTags) {}

TNITTable::~TNITTable() {
    owned::deleteAll(transportStreams);
}

TNITTable* TNITTable::parse(unsigned char* bytes, unsigned int length, int checkCrc, int,
                            unsigned short* error, TNITTable* previous) {
    TNITTable* table = new TNITTable(bytes, length);
    unsigned short remaining = 0;
    if (!table->parseCommonHeader(bytes, length, checkCrc, error, &remaining, previous)) {
        delete table;
        return nullptr;
    }
    // Offset of the CRC32; a wrapped body counter stops at the end of the
    // bytes handed in.
    const unsigned int end = bodyEnd(8, remaining, length);
    const unsigned int networkDescriptorsLength = bytes::len12(bytes + 8);
    // The network descriptors must leave room for transport_stream_loop_length.
    if (10 + networkDescriptorsLength > end - 2) {
        SARN_LOGW("%s: TNITTable::parse: NetDescLen not valid: %u > %u. Aborting!",
                  10 + networkDescriptorsLength, end - 2);
        ISDBTUtils::setErrorCode(error, ERROR_DATA_TOO_SHORT);
        delete table;
        return nullptr;
    }
    const unsigned int read = table->parseDescriptorsLoop(bytes + 10, networkDescriptorsLength);
    if (read != networkDescriptorsLength)
        SARN_LOGW(
            "%s: TNITTable::parse: read bytes different than network descriptors length (%d != "
            "%d)",
            static_cast<int>(read), static_cast<int>(networkDescriptorsLength));
    unsigned int pos = 10 + networkDescriptorsLength;

    const unsigned int loopLength = bytes::len12(bytes + pos);
    pos += 2;
    if (pos + loopLength > end) {
        SARN_LOGW("%s: TNITTable::parse: Item length not valid: %u > %u. Aborting!", loopLength,
                  static_cast<unsigned int>(remaining));
        ISDBTUtils::setErrorCode(error, ERROR_DATA_TOO_SHORT);
        delete table;
        return nullptr;
    }
    for (unsigned int consumed = 0; consumed < loopLength;) {
        unsigned int bytesRead = 0;
        TTransportStreamInfo* info =
            TTransportStreamInfo::parse(bytes + pos, loopLength - consumed, 1, &bytesRead, error);
        if (info == nullptr) {
            SARN_LOGW("%s: TNITTable::parse: Invalid item. Aborting!");
            ISDBTUtils::setErrorCode(error, ERROR_INVALID_ITEM);
            delete table;
            return nullptr;
        }
        owned::replace(table->transportStreams, info->transport_stream_id, info);
        pos += bytesRead;
        consumed += bytesRead;
    }
    ISDBTUtils::setErrorCode(error, ERROR_NONE);
    return table;
}

void TNITTable::addTransportStreamInfo(TTransportStreamInfo* info) {
    if (info != nullptr)
        transportStreams[info->getTransportStreamID()] = info;
}

TTransportStreamInfo* TNITTable::getTransportStreamInfo(unsigned short transportStreamId) const {
    return owned::find(transportStreams, transportStreamId);
}

std::list<unsigned short> TNITTable::getTransportStreamIDs() const {
    return owned::keys(transportStreams);
}

bool TNITTable::removeTransportStreamInfo(unsigned short transportStreamId) {
    return owned::erase(transportStreams, transportStreamId);
}

std::string TNITTable::toJSON() const {
    std::string out;
    json::Out o(out);
    o << "{\"networkId\":" << tableIdExtension << ",\"networkDescriptors\":";
    appendDescriptorsJSON(out);
    o << ",\"transportStreams\":[";
    bool first = true;
    for (const auto& entry : transportStreams) {
        const TTransportStreamInfo* info = entry.second;
        if (!first)
            o << ',';
        first = false;
        o << "{\"transportStreamId\":" << info->transport_stream_id
          << ",\"originalNetworkId\":" << info->original_network_id << ",\"transportDescriptors\":";
        info->appendDescriptorsJSON(out);
        o << '}';
    }
    o << "]}";
    return out;
}

}  // namespace Sarn
