// sarn-dump's demultiplexer and section dispatch: arbitrary bytes as a
// transport stream, fed in chunks whose size the first byte chooses, every
// complete section handed to the table classes as the tool does.
#include "FuzzCommon.h"
#include "SectionDispatch.h"
#include "TsDemux.h"

namespace {
class DispatchSink : public sarntool::SectionSink {
  public:
    void onSection(unsigned int pid, unsigned char* section, unsigned int length) override {
        sarntool::SectionResult r = dispatch.handle(pid, section, length);
        volatile size_t sink = r.json.size();
        (void)sink;
    }

  private:
    sarntool::SectionDispatch dispatch;
};
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
    if (size < 1)
        return 0;
    const size_t chunk = 1 + bytes[0] * 3u;
    sarnfuzz::ExactBuffer stream(bytes + 1, size - 1);
    DispatchSink sink;
    sarntool::TsDemux demux(sink);
    for (size_t off = 0; off < stream.size(); off += chunk) {
        const size_t n = stream.size() - off < chunk ? stream.size() - off : chunk;
        // Each chunk in a buffer of its own exact size as well.
        sarnfuzz::ExactBuffer piece(stream.data() + off, n);
        demux.feed(piece.data(), piece.size());
    }
    demux.finish();
    return 0;
}
