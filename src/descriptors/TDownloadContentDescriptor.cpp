// Download content descriptor (tag 0xC9) and its module entries.
#include "TDownloadContentDescriptor.h"

#include "Bytes.h"
#include "ISDBTUtils.h"
#include "Log.h"
#include "Owned.h"
#include "ParserUtils.h"

namespace Sarn {

TDownloadContentDescriptorItem::TDownloadContentDescriptorItem()
    : moduleID(0), moduleSize(0), moduleInfoLength(0), moduleInfo(nullptr) {}

TDownloadContentDescriptorItem::~TDownloadContentDescriptorItem() {
    delete[] moduleInfo;
}

TDownloadContentDescriptorItem* TDownloadContentDescriptorItem::parse(unsigned char* data,
                                                                      unsigned int length,
                                                                      unsigned int* bytesRead,
                                                                      unsigned short* error) {
    if (data == nullptr)
        length = 0;
    // module_id(16) module_size(32) module_info_length(8) module_info; the
    // info must lie within the bytes given as well.
    if (length < 7 || length - 7 < data[6]) {
        SARN_LOGW("%s: TDownloadContentDescriptorItem::parse: Item length not valid: %u. Aborting!",
                  length);
        ISDBTUtils::setErrorCode(error, ERROR_DATA_TOO_SHORT);
        return nullptr;
    }
    TDownloadContentDescriptorItem* item = new TDownloadContentDescriptorItem();
    // The module id is taken least significant byte first.
    item->moduleID = static_cast<unsigned short>(data[0] | (data[1] << 8));
    item->moduleSize = bytes::be32(data + 2);
    item->moduleInfoLength = data[6];
    unsigned int consumed = 7;
    if (item->moduleInfoLength != 0) {
        ParserUtils::parseByteArray(data + 7, item->moduleInfo, item->moduleInfoLength);
        if (item->moduleInfo == nullptr) {
            SARN_LOGW(
                "%s: TDownloadContentDescriptorItem:: parse: ERROR: parsing Mondule Info. "
                "Aborting!");
            ISDBTUtils::setErrorCode(error, ERROR_FIELD_PARSE);
            delete item;
            return nullptr;
        }
        consumed += item->moduleInfoLength;
    }
    if (bytesRead != nullptr)
        *bytesRead = consumed;
    ISDBTUtils::setErrorCode(error, ERROR_NONE);
    return item;
}

// ---------------------------------------------------------------------------

TDownloadContentDescriptor::TDownloadContentDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(DESCRIPTOR_TAG, bytes, length),
      reboot(0),
      addOn(0),
      compatibilityFlag(0),
      moduleInfoFlag(0),
      textInfoFlag(0),
      componentSize(0),
      downloadID(0),
      timeOutValueDII(0),
      leakRate(0),
      componentTag(0),
      privateDataLength(0),
      privateData(nullptr),
      compatibilityDescriptor(nullptr) {}

TDownloadContentDescriptor::~TDownloadContentDescriptor() {
    owned::deleteAll(items);
    delete compatibilityDescriptor;
    delete[] privateData;
}

TDownloadContentDescriptor* TDownloadContentDescriptor::parse(unsigned char* bytes,
                                                              unsigned int length,
                                                              unsigned int* bytesRead,
                                                              unsigned short* error) {
    if (!parseCommonHeader(bytes, length, error, 18, DESCRIPTOR_TAG))
        return nullptr;
    TDownloadContentDescriptor* d = new TDownloadContentDescriptor(bytes, length);

    // Fixed part, within the 18 bytes the header check demands: flags(8)
    // component_size(32) download_id(32) time_out_value_DII(32)
    // leak_rate(22) reserved(2) component_tag(8).
    const unsigned char* f = bytes + 2;
    d->reboot = (f[0] >> 7) & 1;
    d->addOn = (f[0] >> 6) & 1;
    d->compatibilityFlag = (f[0] >> 5) & 1;
    d->moduleInfoFlag = (f[0] >> 4) & 1;
    d->textInfoFlag = (f[0] >> 3) & 1;
    d->componentSize = bytes::be32(f + 1);
    d->downloadID = bytes::be32(f + 5);
    d->timeOutValueDII = bytes::be32(f + 9);
    d->leakRate = (f[13] << 14) | (f[14] << 6) | (f[15] >> 2);
    d->componentTag = f[16];

    // Everything after the fixed part is read at p, with length - p bytes
    // left; nothing is read beyond them.
    unsigned int p = 2 + 17;
    if (d->compatibilityFlag) {
        // Only the low byte of the 16-bit compatibility length counts. A
        // structure claiming more than is left gets what is left.
        unsigned int n = length - p;
        if (n >= 2 && bytes[p + 1] + 2u <= n)
            n = bytes[p + 1] + 2u;
        d->compatibilityDescriptor = TCompatibilityDescriptor::parse(bytes + p, n, nullptr, error);
        if (d->compatibilityDescriptor == nullptr) {
            delete d;
            return nullptr;
        }
        p += n;
    }
    auto abandon = [d, error](unsigned short code) -> TDownloadContentDescriptor* {
        ISDBTUtils::setErrorCode(error, code);
        delete d;
        return nullptr;
    };
    if (d->moduleInfoFlag) {
        // number_of_modules(16), then the modules.
        bool ok = bytes::fits(p, 2, length);
        unsigned int count = ok ? bytes::be16(bytes + p) : 0;
        if (ok)
            p += 2;
        for (; ok && count != 0; --count) {
            unsigned int read = 0;
            TDownloadContentDescriptorItem* item =
                TDownloadContentDescriptorItem::parse(bytes + p, length - p, &read, error);
            ok = item != nullptr;
            if (ok) {
                d->items.push_back(item);
                p += read;
            }
        }
        if (!ok) {
            SARN_LOGW("%s: TDownloadContentDescriptor::parse: Invalid item. Aborting!");
            return abandon(ERROR_INVALID_ITEM);
        }
    }
    // private_data_length(8) and the private data: a missing length byte or
    // data running past the end cannot be read.
    bool privateOk = p < length;
    if (privateOk) {
        d->privateDataLength = bytes[p++];
        if (d->privateDataLength != 0) {
            if (d->privateDataLength <= length - p)
                ParserUtils::parseByteArray(bytes + p, d->privateData, d->privateDataLength);
            privateOk = d->privateData != nullptr;
            p += d->privateDataLength;
        }
    }
    if (!privateOk) {
        SARN_LOGW("%s: TDownloadContentDescriptor:: parse: ERROR: parsing Private Data. Aborting!");
        return abandon(ERROR_FIELD_PARSE);
    }
    if (d->textInfoFlag) {
        // ISO_639_language_code(24) text_length(8) text. A text length of 0
        // followed by more bytes makes the string reader take the next byte
        // as the length, and the text fails.
        if (ParserUtils::parseStr(bytes + p, d->languageCode, 3, length - p) != 3) {
            SARN_LOGW(
                "%s: TDownloadContentDescriptor:: parse: ERROR: parsing Language Code. "
                "Aborting!");
            return abandon(ERROR_FIELD_PARSE);
        }
        p += 3;
        const int textLength = p < length ? bytes[p++] : -1;
        if (textLength < 0 ||
            ParserUtils::parseStr(bytes + p, d->text, static_cast<unsigned int>(textLength),
                                  length - p) != textLength) {
            // The text names the component descriptor class; log readers know it so.
            SARN_LOGW("%s: TComponentDescriptor:: parse: ERROR: parsing Text. Aborting!");
            return abandon(ERROR_FIELD_PARSE);
        }
        p += static_cast<unsigned int>(textLength);
    }
    // The two header bytes are not counted.
    if (bytesRead != nullptr)
        *bytesRead = p - 2;
    ISDBTUtils::setErrorCode(error, ERROR_NONE);
    return d;
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
