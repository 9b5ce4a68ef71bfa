// Every descriptor and item parser. The first byte chooses the class, the
// rest is handed to its parse as the descriptor bytes; whatever is returned
// is rendered and deleted.
#include "FuzzCommon.h"
#include "FuzzDescriptors.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
    if (size < 1)
        return 0;
    sarnfuzz::ExactBuffer descriptor(bytes + 1, size - 1);
    sarnfuzz::run(bytes[0] % sarnfuzz::kindCount(), descriptor.data(), descriptor.size());
    return 0;
}
