// Every table parser. The first byte chooses the table class, the rest is
// the section. Each section is parsed with the CRC switch off (so the body
// walk is reached), rendered, then parsed again with the first table as the
// previous one, and everything is deleted.
#include <SarnISDBTUtils.h>

#include "FuzzCommon.h"
#include "TableKinds.h"

using namespace Sarn;
using sarnfuzz::kTableKinds;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
    if (size < 1)
        return 0;
    const sarnfuzz::Parser parse = kTableKinds[bytes[0] % sarnfuzz::kTableKindCount].parse;
    sarnfuzz::ExactBuffer section(bytes + 1, size - 1);
    unsigned short error = 0;
    TISDBTTable* first = parse(section.data(), section.size(), &error, nullptr);
    if (first == nullptr)
        return 0;
    volatile size_t sink = first->toJSON().size();
    (void)sink;
    TISDBTTable* second = parse(section.data(), section.size(), &error, first);
    if (second != nullptr)
        sink = second->toJSON().size();
    delete second;
    delete first;
    return 0;
}
