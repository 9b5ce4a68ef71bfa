// sarn-dump throughput: the whole run (demultiplexing, the library's parse
// with the CRC check and the previous table, JSON lines of changed tables
// written to /dev/null) over transport streams held in memory, and the
// demultiplexer alone. Reported as bytes of transport stream per second.
//
//   Dump/Sample       the bundled sample repeated: about 20% of the packets
//                     carry tables, far more than on air
//   Dump/Broadcast    the sample's tables among 49 times as many audio and
//                     video packets, closer to a real multiplex
//   Demux/Sample      sections reassembled and dropped
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <vector>

#include "DumpSession.h"

namespace {

using Bytes = std::vector<unsigned char>;

constexpr size_t kPacket = 188;
constexpr size_t kTargetSize = 32u << 20;

Bytes sample() {
    std::ifstream in(SARN_SOURCE_DIR "/data/sample.ts", std::ios::binary);
    return Bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

/** The sample over and over, up to about 32 MB. */
const Bytes& repeatedSample() {
    static const Bytes stream = [] {
        const Bytes one = sample();
        Bytes out;
        while (!one.empty() && out.size() < kTargetSize)
            out.insert(out.end(), one.begin(), one.end());
        return out;
    }();
    return stream;
}

/** Each table packet of the sample followed by 49 elementary-stream packets. */
const Bytes& broadcast() {
    static const Bytes stream = [] {
        const Bytes one = sample();
        Bytes out;
        unsigned int cc = 0;
        while (!one.empty() && out.size() < kTargetSize) {
            for (size_t pos = 0; pos + kPacket <= one.size(); pos += kPacket) {
                const unsigned int pid = ((one[pos + 1] & 0x1F) << 8) | one[pos + 2];
                if (pid == 0x0111 || pid == 0x0112)
                    continue;
                out.insert(out.end(), one.begin() + pos, one.begin() + pos + kPacket);
                for (int i = 0; i < 49; ++i) {
                    const unsigned char header[4] = {
                        0x47, 0x01, 0x11, static_cast<unsigned char>(0x10 | (cc++ & 15))};
                    out.insert(out.end(), header, header + 4);
                    out.insert(out.end(), kPacket - 4, static_cast<unsigned char>(i));
                }
            }
        }
        return out;
    }();
    return stream;
}

/** Fed as sarn-dump reads a file: in chunks of 1 MiB. */
void feedInChunks(const Bytes& stream, sarntool::DumpSession& session) {
    constexpr size_t kChunk = 1 << 20;
    for (size_t pos = 0; pos < stream.size(); pos += kChunk)
        session.feed(stream.data() + pos, std::min(kChunk, stream.size() - pos));
    session.finish();
}

void dump(benchmark::State& state, const Bytes& stream) {
    if (stream.empty()) {
        state.SkipWithError("data/sample.ts not found");
        return;
    }
    std::FILE* devNull = std::fopen("/dev/null", "w");
    sarntool::TextConverter converter;
    unsigned long long lines = 0;
    for (auto _ : state) {
        sarntool::DumpSession session(sarntool::DumpOptions(), converter, devNull);
        feedInChunks(stream, session);
        lines = session.linesWritten();
    }
    std::fclose(devNull);
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * stream.size()));
    state.counters["lines"] = static_cast<double>(lines);
}

void BM_DumpSample(benchmark::State& state) {
    dump(state, repeatedSample());
}
void BM_DumpBroadcast(benchmark::State& state) {
    dump(state, broadcast());
}

struct Drop : sarntool::SectionSink {
    unsigned long long sections = 0;
    void onSection(unsigned int, unsigned char*, unsigned int) override { ++sections; }
};

void BM_DemuxSample(benchmark::State& state) {
    const Bytes& stream = repeatedSample();
    for (auto _ : state) {
        Drop sink;
        sarntool::TsDemux demux(sink);
        demux.feed(stream.data(), stream.size());
        demux.finish();
        benchmark::DoNotOptimize(sink.sections);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * stream.size()));
}

}  // namespace

BENCHMARK(BM_DumpSample)->Name("Dump/Sample")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DumpBroadcast)->Name("Dump/Broadcast")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DemuxSample)->Name("Demux/Sample")->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
