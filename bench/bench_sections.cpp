// Section parsing benchmarks: parse + delete per table kind and for the whole
// mix, with the CRC check off and on; toJSON; the CRC-32 alone against a
// byte-at-a-time table; libdvbv5 on the same sections (the tables both
// decode) and memcpy of the same bytes as the floor. A counting allocator
// reports heap allocations and bytes per section.
#include <benchmark/benchmark.h>
#include <dirent.h>

#include <SarnISDBTUtils.h>

#include "SectionListing.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#if SARN_BENCH_DVBV5
#include <libdvbv5/dvb-fe.h>
#include <libdvbv5/eit.h>
#include <libdvbv5/nit.h>
#include <libdvbv5/pat.h>
#include <libdvbv5/pmt.h>
#include <libdvbv5/sdt.h>
#endif

// ---------------------------------------------------------------------------
// Counting allocator: malloc itself is interposed, so that operator new (ours)
// and the C allocations of libdvbv5 are counted alike.
// ---------------------------------------------------------------------------
namespace {
std::atomic<unsigned long long> gAllocations{0};
std::atomic<unsigned long long> gAllocatedBytes{0};
}  // namespace

extern "C" {
void* __libc_malloc(size_t);
void* __libc_calloc(size_t, size_t);
void* __libc_realloc(void*, size_t);
void* malloc(size_t n) {
    gAllocations.fetch_add(1, std::memory_order_relaxed);
    gAllocatedBytes.fetch_add(n, std::memory_order_relaxed);
    return __libc_malloc(n);
}
void* calloc(size_t count, size_t n) {
    gAllocations.fetch_add(1, std::memory_order_relaxed);
    gAllocatedBytes.fetch_add(count * n, std::memory_order_relaxed);
    return __libc_calloc(count, n);
}
void* realloc(void* p, size_t n) {
    gAllocations.fetch_add(1, std::memory_order_relaxed);
    gAllocatedBytes.fetch_add(n, std::memory_order_relaxed);
    return __libc_realloc(p, n);
}
}

// The library's failure messages are not part of what is measured.
extern "C" int __android_log_print(int, const char*, const char*, ...) {
    return 0;
}

namespace {

using namespace Sarn;

enum Kind { PAT, PMT, NIT, SDT, EIT, TOT, AIT, SDTT, KIND_COUNT };

struct Section {
    Kind kind;
    unsigned int pid;
    std::vector<unsigned char> bytes;
};

int kindOf(unsigned int pid, unsigned int tid) {
    if (tid == 0x00)
        return PAT;
    if (tid == 0x02)
        return PMT;
    if (tid == 0x40)
        return NIT;
    if (tid == 0x42)
        return SDT;
    if (tid >= 0x4E && tid <= 0x6F)
        return EIT;
    if (tid == 0x73)
        return TOT;
    if (tid == 0x74)
        return AIT;
    if (tid == 0xC3 && (pid == 0x23 || pid == 0x28))
        return SDTT;
    return -1;
}

void readListing(const std::string& path, std::vector<Section>& out) {
    std::ifstream in(path);
    std::string line;
    while (std::getline(in, line)) {
        unsigned int pid = 0, tid = 0;
        std::vector<unsigned char> bytes;
        if (!sarntool::parseListingLine(line.c_str(), pid, tid, bytes))
            continue;
        const int kind = kindOf(pid, tid);
        if (kind >= 0)
            out.push_back({static_cast<Kind>(kind), pid, std::move(bytes)});
    }
}

// The real mix: every CRC-valid section of the shared captures.
const std::vector<Section>& realMix() {
    static const std::vector<Section> sections = [] {
        std::vector<Section> all;
        const std::string dir = std::string(SARN_SHARED_DIR) + "/captures/sections";
        std::vector<std::string> names;
        if (DIR* d = opendir(dir.c_str())) {
            while (dirent* e = readdir(d)) {
                std::string name = e->d_name;
                if (name.size() > 4 && name.compare(name.size() - 4, 4, ".txt") == 0)
                    names.push_back(name);
            }
            closedir(d);
        }
        std::sort(names.begin(), names.end());
        for (const std::string& n : names)
            readListing(dir + "/" + n, all);
        return all;
    }();
    return sections;
}

// Per-kind measurements: the captures, plus the project's own sample
// sections for the kinds the captures do not carry (TOT, AIT).
const std::vector<Section>& kindMix() {
    static const std::vector<Section> sections = [] {
        std::vector<Section> all = realMix();
        std::vector<Section> sample;
        readListing(std::string(SARN_SOURCE_DIR) + "/data/sample-sections.txt", sample);
        for (const Section& s : sample) {
            bool present = false;
            for (const Section& r : realMix())
                present = present || r.kind == s.kind;
            if (!present)
                all.push_back(s);
        }
        return all;
    }();
    return sections;
}

unsigned int crcMpeg2(const unsigned char* p, size_t n);

// A synthetic EIT schedule: 64 sections of 8 events, each with a short
// event, an extended event, a content, a parental rating and a component
// descriptor, as a Brazilian broadcaster's eight-day guide carries them.
const std::vector<Section>& eitMix() {
    static const std::vector<Section> sections = [] {
        std::vector<Section> all;
        for (int s = 0; s < 64; ++s) {
            std::vector<unsigned char> b = {0x50,
                                            0xF0,
                                            0x00,
                                            0xC8,
                                            0x40,
                                            static_cast<unsigned char>(0xC1 | ((s & 7) << 1)),
                                            static_cast<unsigned char>(s),
                                            0x3F,
                                            0x06,
                                            0x41,
                                            0x06,
                                            0x41,
                                            0x3F,
                                            0x50};
            for (int e = 0; e < 8; ++e) {
                const int id = s * 8 + e;
                std::vector<unsigned char> d;
                const char* title = "Jornal da Noite";
                const char* text = "Noticias, esportes e a previsao do tempo para todo o Brasil.";
                d.push_back(0x4D);
                d.push_back(static_cast<unsigned char>(3 + 1 + strlen(title) + 1 + strlen(text)));
                d.insert(d.end(), {'p', 'o', 'r'});
                d.push_back(static_cast<unsigned char>(strlen(title)));
                d.insert(d.end(), title, title + strlen(title));
                d.push_back(static_cast<unsigned char>(strlen(text)));
                d.insert(d.end(), text, text + strlen(text));
                const char* item = "Apresentacao";
                const char* value = "Maria Silva";
                const char* ext = "Edicao especial";
                const size_t items = 1 + strlen(item) + 1 + strlen(value);
                d.push_back(0x4E);
                d.push_back(static_cast<unsigned char>(1 + 3 + 1 + items + 1 + strlen(ext)));
                d.push_back(0x00);
                d.insert(d.end(), {'p', 'o', 'r'});
                d.push_back(static_cast<unsigned char>(items));
                d.push_back(static_cast<unsigned char>(strlen(item)));
                d.insert(d.end(), item, item + strlen(item));
                d.push_back(static_cast<unsigned char>(strlen(value)));
                d.insert(d.end(), value, value + strlen(value));
                d.push_back(static_cast<unsigned char>(strlen(ext)));
                d.insert(d.end(), ext, ext + strlen(ext));
                d.insert(d.end(), {0x54, 0x02, 0x00, 0xEE});
                d.insert(d.end(), {0x55, 0x04, 'B', 'R', 'A', 0x02});
                d.insert(d.end(), {0x50, 0x06, 0xF1, 0xB3, 0x00, 'p', 'o', 'r'});
                b.push_back(static_cast<unsigned char>(id >> 8));
                b.push_back(static_cast<unsigned char>(id));
                b.insert(b.end(), {0xEB, 0x1E, 0x12, static_cast<unsigned char>(e * 3), 0x00, 0x01,
                                   0x00, 0x00});
                b.push_back(static_cast<unsigned char>(0x80 | (d.size() >> 8)));
                b.push_back(static_cast<unsigned char>(d.size()));
                b.insert(b.end(), d.begin(), d.end());
            }
            const size_t length = b.size() - 3 + 4;
            b[1] = static_cast<unsigned char>(0xF0 | (length >> 8));
            b[2] = static_cast<unsigned char>(length);
            const unsigned int crc = crcMpeg2(b.data(), b.size());
            for (int shift = 24; shift >= 0; shift -= 8)
                b.push_back(static_cast<unsigned char>(crc >> shift));
            all.push_back({EIT, 0x12, b});
        }
        return all;
    }();
    return sections;
}

unsigned int gByteTable[256];
unsigned int crcMpeg2(const unsigned char* p, size_t n) {
    if (gByteTable[1] == 0)
        for (unsigned int i = 0; i < 256; ++i) {
            unsigned int c = i << 24;
            for (int b = 0; b < 8; ++b)
                c = (c & 0x80000000u) ? (c << 1) ^ 0x04C11DB7u : c << 1;
            gByteTable[i] = c;
        }
    unsigned int c = 0xFFFFFFFFu;
    while (n--)
        c = (c << 8) ^ gByteTable[(c >> 24) ^ *p++];
    return c;
}

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
    const unsigned long long a0 = gAllocations, b0 = gAllocatedBytes;
    for (auto _ : state) {
        for (const Section* s : set) {
            TISDBTTable* t = parseOne(*s, crc);
            benchmark::DoNotOptimize(t);
            delete t;
        }
    }
    report(state, set, gAllocations - a0, gAllocatedBytes - b0);
}

void BM_ParseDelete(benchmark::State& state) {
    runParse(state, kindMix(), static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
}
void BM_ParseDeleteRealMix(benchmark::State& state) {
    runParse(state, realMix(), -1, static_cast<int>(state.range(0)));
}
void BM_ParseDeleteEitSchedule(benchmark::State& state) {
    runParse(state, eitMix(), -1, static_cast<int>(state.range(0)));
}

void BM_ToJSON(benchmark::State& state) {
    const auto set = select(state.range(0) ? eitMix() : realMix(), -1);
    if (set.empty()) {
        state.SkipWithError("no sections (captures absent?)");
        return;
    }
    std::vector<TISDBTTable*> tables;
    for (const Section* s : set)
        tables.push_back(parseOne(*s, 0));
    const unsigned long long a0 = gAllocations, b0 = gAllocatedBytes;
    for (auto _ : state)
        for (TISDBTTable* t : tables)
            if (t)
                benchmark::DoNotOptimize(t->toJSON());
    report(state, set, gAllocations - a0, gAllocatedBytes - b0);
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
    if (crcMpeg2(buf.data(), 4096) != ISDBTUtils::getSectionCRC32(buf.data(), 4096)) {
        state.SkipWithError("CRC results differ");
        return;
    }
    for (auto _ : state)
        benchmark::DoNotOptimize(crcMpeg2(buf.data(), 4096));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * 4096);
}

#if SARN_BENCH_DVBV5
void quietDvbLog(int, const char*, ...) {}

// libdvbv5 decodes PAT, PMT, NIT, SDT and EIT; it checks no CRC.
void BM_Dvbv5RealMix(benchmark::State& state) {
    std::vector<const Section*> set;
    for (const Section& s : realMix())
        if (s.kind <= EIT)
            set.push_back(&s);
    if (set.empty()) {
        state.SkipWithError("captures absent");
        return;
    }
    dvb_v5_fe_parms* parms = dvb_fe_dummy();
    parms->verbose = 0;
    parms->logfunc = quietDvbLog;
    // Arg 1: like for like with our library, which converts no text: the
    // DVB default set through libdvbv5's built-in byte table, no iconv.
    // Arg 0: dvb_fe_dummy()'s own charsets, which go through iconv.
    char iso6937[] = "ISO-6937";
    char utf8[] = "UTF-8";
    char* const ownDefault = parms->default_charset;
    char* const ownOutput = parms->output_charset;
    if (state.range(0) == 1) {
        parms->default_charset = iso6937;
        parms->output_charset = utf8;
    }
    const unsigned long long a0 = gAllocations, b0 = gAllocatedBytes;
    for (auto _ : state) {
        for (const Section* s : set) {
            const uint8_t* d = s->bytes.data();
            // libdvbv5 takes the section without its CRC32, which it does not check.
            const ssize_t n = static_cast<ssize_t>(s->bytes.size()) - 4;
            switch (s->kind) {
                case PAT: {
                    dvb_table_pat* t = nullptr;
                    dvb_table_pat_init(parms, d, n, &t);
                    dvb_table_pat_free(t);
                    break;
                }
                case PMT: {
                    dvb_table_pmt* t = nullptr;
                    dvb_table_pmt_init(parms, d, n, &t);
                    dvb_table_pmt_free(t);
                    break;
                }
                case NIT: {
                    dvb_table_nit* t = nullptr;
                    dvb_table_nit_init(parms, d, n, &t);
                    dvb_table_nit_free(t);
                    break;
                }
                case SDT: {
                    dvb_table_sdt* t = nullptr;
                    dvb_table_sdt_init(parms, d, n, &t);
                    dvb_table_sdt_free(t);
                    break;
                }
                default: {
                    dvb_table_eit* t = nullptr;
                    dvb_table_eit_init(parms, d, n, &t);
                    dvb_table_eit_free(t);
                    break;
                }
            }
        }
    }
    report(state, set, gAllocations - a0, gAllocatedBytes - b0);
    parms->default_charset = ownDefault;
    parms->output_charset = ownOutput;
    dvb_fe_close(parms);
}
BENCHMARK(BM_Dvbv5RealMix)->Arg(0)->Arg(1);
#endif

// Ours on exactly the sections libdvbv5 decodes, CRC off, for the ratio.
void BM_ParseDeleteDvbv5Kinds(benchmark::State& state) {
    std::vector<Section> subset;
    for (const Section& s : realMix())
        if (s.kind <= EIT)
            subset.push_back(s);
    runParse(state, subset, -1, 0);
}

}  // namespace

BENCHMARK(BM_ParseDeleteDvbv5Kinds);
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
