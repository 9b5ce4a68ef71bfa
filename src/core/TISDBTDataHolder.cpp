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
    if (ownsData == 2)
        releaseObject(data);
    else if (ownsData && data != nullptr)
        delete[] data;
    data = nullptr;
}

}  // namespace Sarn
