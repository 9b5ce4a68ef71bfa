#include "TISDBTDataHolder.h"

#include "Bytes.h"

namespace Sarn {

// A null or empty buffer is not copied (nothing to hold): the header checks
// refuse it later.
TISDBTDataHolder::TISDBTDataHolder(unsigned char* bytes, unsigned int length, int copy)
    : data(copy ? bytes::copyBytes(bytes, length) : bytes), dataLength(length), ownsData(copy) {}

TISDBTDataHolder::TISDBTDataHolder(const TISDBTDataHolder& other)
    : data(other.ownsData ? bytes::copyBytes(other.data, other.dataLength) : other.data),
      dataLength(other.dataLength),
      ownsData(other.ownsData ? 1 : 0) {}

TISDBTDataHolder::~TISDBTDataHolder() {
    // 2: the copy lies in this object's own room (a parsed table), which goes with it.
    if (ownsData == 1 && data != nullptr)
        delete[] data;
    data = nullptr;
}

}  // namespace Sarn
