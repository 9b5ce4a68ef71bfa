#include "TISDBTDataHolder.h"

#include <cstring>

namespace Sarn {

namespace {
unsigned char* copyOf(const unsigned char* bytes, unsigned int length) {
    // A null or empty buffer is refused later by the header checks; there is
    // nothing to copy for it.
    if (bytes == nullptr || length == 0)
        return nullptr;
    unsigned char* copy = new unsigned char[length];
    std::memcpy(copy, bytes, length);
    return copy;
}
}  // namespace

TISDBTDataHolder::TISDBTDataHolder(unsigned char* bytes, unsigned int length, int copy)
    : data(copy ? copyOf(bytes, length) : bytes), dataLength(length), ownsData(copy) {}

TISDBTDataHolder::TISDBTDataHolder(const TISDBTDataHolder& other)
    : data(other.ownsData ? copyOf(other.data, other.dataLength) : other.data),
      dataLength(other.dataLength),
      ownsData(other.ownsData) {}

TISDBTDataHolder::~TISDBTDataHolder() {
    if (ownsData && data != nullptr) {
        delete[] data;
        data = nullptr;
    }
}

}  // namespace Sarn
