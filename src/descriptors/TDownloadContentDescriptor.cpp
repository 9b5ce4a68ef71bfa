// Download content descriptor (tag 0xC9) and its module entries.
#include "TDownloadContentDescriptor.h"

#include <memory>

#include "DescriptorParse.h"
#include "ItemLoop.h"
#include "Log.h"
#include "Owned.h"
#include "ParserUtils.h"
#include "Reader.h"

namespace Sarn {

TDownloadContentDescriptorItem::TDownloadContentDescriptorItem() {}

TDownloadContentDescriptorItem::~TDownloadContentDescriptorItem() {
    delete[] moduleInfo;
}

TDownloadContentDescriptorItem* TDownloadContentDescriptorItem::parse(unsigned char* data,
                                                                      unsigned int length,
                                                                      unsigned int* bytesRead,
                                                                      unsigned short* error) {
    bytes::Reader r(data, length);  // no bytes at all without data
    // module_id(16) module_size(32) module_info_length(8) module_info; the
    // info must lie within the bytes given as well.
    if (!r.has(7) || r.remaining() - 7 < r.peek(6)) {
        SARN_LOGW("%s: TDownloadContentDescriptorItem::parse: Item length not valid: %u. Aborting!",
                  r.remaining());
        return parse::fail(error, ERROR_DATA_TOO_SHORT);
    }
    std::unique_ptr<TDownloadContentDescriptorItem> item(new TDownloadContentDescriptorItem());
    // The module id is taken least significant byte first.
    const unsigned char low = r.u8();
    item->moduleID = static_cast<unsigned short>(low | (r.u8() << 8));
    item->moduleSize = r.u32();
    item->moduleInfoLength = r.u8();
    if (item->moduleInfoLength != 0 && !r.byteArray(item->moduleInfo, item->moduleInfoLength)) {
        SARN_LOGW(
            "%s: TDownloadContentDescriptorItem:: parse: ERROR: parsing Mondule Info. "
            "Aborting!");
        return parse::fail(error, ERROR_FIELD_PARSE);
    }
    return parse::done(error, item, bytesRead, r.position());
}

// ---------------------------------------------------------------------------

TDownloadContentDescriptor::TDownloadContentDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(DESCRIPTOR_TAG, bytes, length) {}

TDownloadContentDescriptor::~TDownloadContentDescriptor() {
    owned::deleteAll(items);
    delete compatibilityDescriptor;
    delete[] privateData;
}

SARN_DESCRIPTOR_PARSE(TDownloadContentDescriptor, arena, bytes, length, bytesRead, error) {
    // Everything after the header is read from the bytes handed in, not only
    // the descriptor_length ones.
    SARN_OPEN_OR_RETURN(arena, d, r, TDownloadContentDescriptor, bytes, length, error, 18,
                        DESCRIPTOR_TAG);

    // Fixed part, within the 18 bytes the header check demands: flags(8)
    // component_size(32) download_id(32) time_out_value_DII(32)
    // leak_rate(22) reserved(2) component_tag(8).
    const unsigned char flags = r.u8();
    d->reboot = (flags >> 7) & 1;
    d->addOn = (flags >> 6) & 1;
    d->compatibilityFlag = (flags >> 5) & 1;
    d->moduleInfoFlag = (flags >> 4) & 1;
    d->textInfoFlag = (flags >> 3) & 1;
    d->componentSize = r.u32();
    d->downloadID = r.u32();
    d->timeOutValueDII = r.u32();
    d->leakRate = r.u24() >> 2;
    d->componentTag = r.u8();

    if (d->compatibilityFlag) {
        // Only the low byte of the 16-bit compatibility length counts. A
        // structure claiming more than is left gets what is left.
        unsigned int n = r.remaining();
        if (n >= 2 && r.peek(1) + 2u <= n)
            n = r.peek(1) + 2u;
        bytes::Reader part = r.sub(n);
        d->compatibilityDescriptor =
            TCompatibilityDescriptor::parse(part.mutableCurrent(), n, nullptr, error);
        if (d->compatibilityDescriptor == nullptr)
            return nullptr;
    }
    if (d->moduleInfoFlag) {
        // number_of_modules(16), then the modules; a missing count fails as
        // a missing module does.
        TDownloadContentDescriptor* content = d.get();
        auto store = [content](TDownloadContentDescriptorItem* item) {
            content->items.push_back(item);
        };
        if (!r.has(2) || !readCounted<TDownloadContentDescriptorItem>(r, r.u16(), error, store)) {
            SARN_LOGW("%s: TDownloadContentDescriptor::parse: Invalid item. Aborting!");
            return parse::fail(error, ERROR_INVALID_ITEM);
        }
    }
    // private_data_length(8) and the private data: a missing length byte or
    // data running past the end cannot be read.
    bool privateOk = r.has(1);
    if (privateOk) {
        d->privateDataLength = r.u8();
        if (d->privateDataLength != 0)
            privateOk = r.byteArray(d->privateData, d->privateDataLength);
    }
    if (!privateOk) {
        SARN_LOGW("%s: TDownloadContentDescriptor:: parse: ERROR: parsing Private Data. Aborting!");
        return parse::fail(error, ERROR_FIELD_PARSE);
    }
    if (d->textInfoFlag) {
        // ISO_639_language_code(24) text_length(8) text. A text length of 0
        // followed by more bytes makes the string reader take the next byte
        // as the length, and the text fails.
        if (r.loggedString(d->languageCode, 3) != 3) {
            SARN_LOGW(
                "%s: TDownloadContentDescriptor:: parse: ERROR: parsing Language Code. "
                "Aborting!");
            return parse::fail(error, ERROR_FIELD_PARSE);
        }
        const int textLength = r.has(1) ? r.u8() : -1;
        if (textLength < 0 ||
            r.loggedString(d->text, static_cast<unsigned int>(textLength)) != textLength) {
            // The text names the component descriptor class; log readers know it so.
            SARN_LOGW("%s: TComponentDescriptor:: parse: ERROR: parsing Text. Aborting!");
            return parse::fail(error, ERROR_FIELD_PARSE);
        }
    }
    // The two header bytes are not counted.
    return parse::done(error, d, bytesRead, r.position() - 2);
}

TDownloadContentDescriptorItem* TDownloadContentDescriptor::getDownloadContentDescriptorItem(
    unsigned char index) const {
    return owned::at(items, index);
}

void TDownloadContentDescriptor::addDownloadContentDescriptorItem(
    TDownloadContentDescriptorItem* item) {
    owned::append(items, item);
}

bool TDownloadContentDescriptor::removeDownloadContentDescriptorItem(unsigned char index) {
    return owned::removeAt(items, index);
}

}  // namespace Sarn
