// Section parsing benchmarks: parse + delete per table kind and for the whole
// mix, with the CRC check off and on; toJSON; the CRC-32 alone against a
// byte-at-a-time table, and memcpy of the same bytes as the floor. The
// interposed allocator reports heap allocations and bytes per section. The
// comparison with libdvbv5 is sarn_bench_compare.
#include <benchmark/benchmark.h>

#include <SarnISDBTUtils.h>

#include <cstring>
#include <vector>

#include "BenchInputs.h"

namespace {

using namespace Sarn;
using namespace sarnbench;

TISDBTTable* parseOne(const Section& s, int crc) {
    unsigned short err = 0;
    return Sarn::parseSection(const_cast<unsigned char*>(s.bytes.data()),
                              static_cast<unsigned int>(s.bytes.size()), crc, &err, s.pid);
}

std::vector<const Section*> select(const std::vector<Section>& from, int kind) {
    std::vector<const Section*> out;
    for (const Section& s : from)
        if (kind < 0 || s.kind == kind)
            out.push_back(&s);
    return out;
}

void report(benchmark::State& state, const std::vector<const Section*>& set,
            unsigned long long allocs, unsigned long long bytes) {
    size_t total = 0;
    for (const Section* s : set)
        total += s->bytes.size();
    const double sections = static_cast<double>(state.iterations()) * set.size();
    state.SetItemsProcessed(static_cast<int64_t>(sections));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * total));
    state.counters["allocs/section"] = sections ? allocs / sections : 0;
    state.counters["heapbytes/section"] = sections ? bytes / sections : 0;
}

void runParse(benchmark::State& state, const std::vector<Section>& from, int kind, int crc) {
    const auto set = select(from, kind);
    if (set.empty()) {
        state.SkipWithError("no sections of this kind here");
        return;
    }
    const unsigned long long a0 = allocatorCalls(), b0 = allocatedBytes();
    for (auto _ : state) {
        for (const Section* s : set) {
            TISDBTTable* t = parseOne(*s, crc);
            benchmark::DoNotOptimize(t);
            delete t;
        }
    }
    report(state, set, allocatorCalls() - a0, allocatedBytes() - b0);
}

void BM_ParseDelete(benchmark::State& state) {
    runParse(state, kindMix(), static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
}
void BM_ParseDeleteRealMix(benchmark::State& state) {
    runParse(state, realMix(), -1, static_cast<int>(state.range(0)));
}
void BM_ParseDeleteEitSchedule(benchmark::State& state) {
    runParse(state, eitSchedule(), -1, static_cast<int>(state.range(0)));
}

void BM_ToJSON(benchmark::State& state) {
    const auto set = select(state.range(0) ? eitSchedule() : realMix(), -1);
    if (set.empty()) {
        state.SkipWithError("no sections (captures absent?)");
        return;
    }
    std::vector<TISDBTTable*> tables;
    for (const Section* s : set)
        tables.push_back(parseOne(*s, 0));
    const unsigned long long a0 = allocatorCalls(), b0 = allocatedBytes();
    for (auto _ : state)
        for (TISDBTTable* t : tables)
            if (t)
                benchmark::DoNotOptimize(t->toJSON());
    report(state, set, allocatorCalls() - a0, allocatedBytes() - b0);
    for (TISDBTTable* t : tables)
        delete t;
}

void BM_Memcpy(benchmark::State& state) {
    const auto set = select(realMix(), -1);
    if (set.empty()) {
        state.SkipWithError("captures absent");
        return;
    }
    unsigned char buf[4096];
    for (auto _ : state)
        for (const Section* s : set) {
            std::memcpy(buf, s->bytes.data(), s->bytes.size());
            benchmark::ClobberMemory();
        }
    report(state, set, 0, 0);
}

void BM_Crc32Library(benchmark::State& state) {
    std::vector<unsigned char> buf(4096);
    for (size_t i = 0; i < buf.size(); ++i)
        buf[i] = static_cast<unsigned char>(i * 31 + 7);
    for (auto _ : state)
        benchmark::DoNotOptimize(ISDBTUtils::getSectionCRC32(buf.data(), 4096));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * 4096);
}
void BM_Crc32ByteTable(benchmark::State& state) {
    std::vector<unsigned char> buf(4096);
    for (size_t i = 0; i < buf.size(); ++i)
        buf[i] = static_cast<unsigned char>(i * 31 + 7);
    if (crcByteTable(buf.data(), 4096) != ISDBTUtils::getSectionCRC32(buf.data(), 4096)) {
        state.SkipWithError("CRC results differ");
        return;
    }
    for (auto _ : state)
        benchmark::DoNotOptimize(crcByteTable(buf.data(), 4096));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * 4096);
}

}  // namespace

BENCHMARK(BM_ParseDeleteRealMix)->Arg(0)->Arg(1);
BENCHMARK(BM_ParseDeleteEitSchedule)->Arg(0)->Arg(1);
BENCHMARK(BM_ParseDelete)
    ->ArgsProduct({{PAT, PMT, NIT, SDT, EIT, TOT, AIT}, {0, 1}})
    ->ArgNames({"kind", "crc"});
BENCHMARK(BM_ToJSON)->Arg(0)->Arg(1);
BENCHMARK(BM_Memcpy);
BENCHMARK(BM_Crc32Library);
BENCHMARK(BM_Crc32ByteTable);

BENCHMARK_MAIN();
