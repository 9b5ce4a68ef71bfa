// Every descriptor and item parser. The first byte chooses the class, the
// rest is handed to its parse as the descriptor bytes; whatever is returned
// is rendered and deleted.
#include "DescriptorKinds.h"
#include "FuzzCommon.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
    if (size < 1)
        return 0;
    const sarnfuzz::DescriptorKind& kind =
        sarnfuzz::kDescriptorKinds[bytes[0] % sarnfuzz::kDescriptorKindCount];
    sarnfuzz::ExactBuffer descriptor(bytes + 1, size - 1);
    kind.run(descriptor.data(), descriptor.size());
    return 0;
}
