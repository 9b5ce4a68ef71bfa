// Every table parser, through Sarn::parseSection. The first byte gives the
// PID (the EIT variant), the rest is the section. Each section is parsed
// with the CRC switch off (so the body walk is reached), rendered, then
// parsed again with the first table as the previous one, and everything is
// deleted.
#include <SarnISDBTUtils.h>

#include "FuzzCommon.h"
#include "FuzzTables.h"

using namespace Sarn;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
    if (size < 1)
        return 0;
    const unsigned int pid = sarnfuzz::pidOf(bytes[0]);
    sarnfuzz::ExactBuffer section(bytes + 1, size - 1);
    unsigned short error = 0;
    TISDBTTable* first = parseSection(section.data(), section.size(), 0, &error, pid);
    if (first == nullptr)
        return 0;
    volatile size_t sink = first->toJSON().size();
    (void)sink;
    TISDBTTable* second = parseSection(section.data(), section.size(), 0, &error, pid, first);
    if (second != nullptr)
        sink = second->toJSON().size();
    delete second;
    delete first;
    return 0;
}
