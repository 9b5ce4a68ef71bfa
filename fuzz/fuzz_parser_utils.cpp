// The string and byte-array readers, the descriptor header check and the
// base descriptor rendering.
#include <SarnISDBTUtils.h>

#include <string>

#include "FuzzCommon.h"

using namespace Sarn;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
    if (size < 2)
        return 0;
    const unsigned int declared = bytes[0];
    const unsigned char minimum = bytes[1];
    sarnfuzz::ExactBuffer in(bytes + 2, size - 2);

    std::string out;
    // A declared length of 0 reads a length byte; the available count is
    // always the true size.
    ParserUtils::parseStr(in.data(), out, declared, in.size());

    if (in.size() > 0) {
        unsigned char* target = nullptr;
        unsigned char n = static_cast<unsigned char>(in.size() < declared ? in.size() : declared);
        ParserUtils::parseByteArray(in.data(), target, n);
        delete[] target;
    }

    unsigned short error = 0;
    const unsigned char tag = in.size() > 0 ? in.data()[0] : 0;
    TISDBTDescriptor::parseCommonHeader(in.data(), in.size(), &error, minimum, tag);
    // The base rendering never reads past the bytes given, whatever the length byte says.
    TISDBTDescriptor d(tag, in.data(), in.size());
    volatile size_t sink = d.toJSON().size();
    sink = ISDBTUtils::escapeJSONString(out).size();
    (void)sink;
    (void)ISDBTUtils::getSectionCRC32(in.data(), in.size());
    return 0;
}
