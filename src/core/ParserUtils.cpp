#include "ParserUtils.h"

#include <cstdint>
#include <cstring>

#include "Bytes.h"
#include "Log.h"
#include "Reader.h"

namespace Sarn {

namespace {
// ARIB 8-unit strings interleave character-set control codes with the text:
// C0 (but tab and line feed), DEL, C1 and 0xA0 are dropped; NUL and both
// graphic halves are kept.
struct ControlCodes {
    bool at[256];
    constexpr ControlCodes() : at{} {
        for (int b = 0; b < 256; ++b)
            at[b] = (b >= 1 && b <= 31 && b != 9 && b != 10) || (b >= 127 && b <= 160);
    }
};
constexpr ControlCodes kControlCodes;

inline bool isControlCode(unsigned char b) {
    return kControlCodes.at[b];
}
}  // namespace

namespace text {

int locate(const unsigned char* data, unsigned int length, unsigned int available,
           const unsigned char*& text, unsigned int& size) {
    bytes::Reader in(data, available);
    int consumed = 0;
    // A length of 0 means the string carries its own length byte.
    if (length == 0 && !in.atEnd()) {
        length = in.u8();
        consumed = 1;
    }
    if (length > in.remaining()) {
        SARN_LOGW(
            "%s: ParserUtils::parseStr: ERROR: String length exceeds available data length: %u > "
            "%u. Aborting!",
            length, in.remaining());
        return -1;
    }
    text = in.bytes(length);
    size = length;
    return consumed + static_cast<int>(length);
}

namespace {
// Whether eight bytes may hold a control code: a byte below 0x20 (NUL, tab
// and line feed too, which then take the byte-by-byte path), 0x7F, or
// 0x80-0xA0. Each test is the usual word-at-a-time "has a byte less than n".
inline bool mayHoldControlCode(std::uint64_t x) {
    constexpr std::uint64_t ones = 0x0101010101010101ull;
    constexpr std::uint64_t highs = ones * 0x80;
    const std::uint64_t flipped = x ^ highs;  // 0x80-0xA0 become 0x00-0x20
    const std::uint64_t del = x ^ (ones * 0x7F);
    return (((x - ones * 0x20) & ~x) | ((flipped - ones * 0x21) & ~flipped) |
            ((del - ones) & ~del)) &
           highs;
}
}  // namespace

unsigned int filter(const unsigned char* text, unsigned int size, char* out) {
    // Most broadcast text carries no control code: copied whole up to the
    // first one, found eight bytes at a time, then byte by byte.
    unsigned int kept = 0;
    while (size - kept >= 8) {
        std::uint64_t word;
        std::memcpy(&word, text + kept, 8);
        if (mayHoldControlCode(word))
            break;
        kept += 8;
    }
    while (kept < size && !isControlCode(text[kept]))
        ++kept;
    if (kept != 0)
        std::memcpy(out, text, kept);
    for (unsigned int i = kept; i < size; ++i) {
        if (!isControlCode(text[i]))
            out[kept++] = static_cast<char>(text[i]);
    }
    return kept;
}

}  // namespace text

int ParserUtils::parseStr(unsigned char* data, std::string& out, unsigned int length,
                          unsigned int available) {
    const unsigned char* text = nullptr;
    unsigned int size = 0;
    const int used = text::locate(data, length, available, text, size);
    if (used < 0)
        return -1;
    out.resize(size);
    out.resize(text::filter(text, size, &out[0]));
    return used;
}

void ParserUtils::parseByteArray(unsigned char* data, unsigned char*& target,
                                 unsigned char length) {
    if (target == nullptr)
        SARN_LOGW("%s: ParserUtils::parseByteArray: ERROR: Invalid data target. Aborting!");
    target = nullptr;
    if (length > 0) {
        target = bytes::copyBytes(data, length);
    } else {
        SARN_LOGW(
            "%s: ParserUtils::parseByteArray: ERROR: Byte array length is not greater than "
            "zero.Aborting!");
    }
}

}  // namespace Sarn
