#include "ParserUtils.h"

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

int ParserUtils::parseStr(unsigned char* data, std::string& out, unsigned int length,
                          unsigned int available) {
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
    const unsigned char* text = in.bytes(length);
    // Most broadcast text carries no control code: copied whole, then closed
    // up from the first control code on, if there is one.
    out.assign(reinterpret_cast<const char*>(text), length);
    unsigned int kept = 0;
    while (kept < length && !isControlCode(text[kept]))
        ++kept;
    for (unsigned int i = kept; i < length; ++i) {
        if (!isControlCode(text[i]))
            out[kept++] = static_cast<char>(text[i]);
    }
    out.resize(kept);
    return consumed + static_cast<int>(length);
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
