#include "ParserUtils.h"

#include <cstring>

#include "Log.h"

namespace Sarn {

namespace {
// ARIB 8-unit strings interleave character-set control codes with the text:
// C0 (but tab and line feed), DEL, C1 and 0xA0 are dropped; NUL and both
// graphic halves are kept.
inline bool isControlCode(unsigned char b) {
    return (b >= 1 && b <= 31 && b != 9 && b != 10) || (b >= 127 && b <= 160);
}
}  // namespace

int ParserUtils::parseStr(unsigned char* data, std::string& out, unsigned int length,
                          unsigned int available) {
    if (data == nullptr)
        available = 0;
    int consumed = 0;
    if (length == 0 && available != 0) {
        length = data[0];
        ++data;
        consumed = 1;
        --available;
    }
    if (length > available) {
        SARN_LOGW(
            "%s: ParserUtils::parseStr: ERROR: String length exceeds available data length: %u > "
            "%u. Aborting!",
            length, available);
        return -1;
    }
    out.clear();
    out.reserve(length);
    for (unsigned int i = 0; i < length; ++i) {
        if (!isControlCode(data[i]))
            out.push_back(static_cast<char>(data[i]));
    }
    return consumed + static_cast<int>(length);
}

void ParserUtils::parseByteArray(unsigned char* data, unsigned char*& target,
                                 unsigned char length) {
    if (target == nullptr)
        SARN_LOGW("%s: ParserUtils::parseByteArray: ERROR: Invalid data target. Aborting!");
    target = nullptr;
    if (length > 0) {
        if (data == nullptr)
            return;
        target = new unsigned char[length];
        std::memcpy(target, data, length);
    } else {
        SARN_LOGW(
            "%s: ParserUtils::parseByteArray: ERROR: Byte array length is not greater than "
            "zero.Aborting!");
    }
}

}  // namespace Sarn
