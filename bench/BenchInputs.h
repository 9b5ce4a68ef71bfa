#ifndef SARN_BENCH_BENCHINPUTS_H
#define SARN_BENCH_BENCHINPUTS_H

// What the benchmarks run on, shared by sarn_bench_sections and
// sarn_bench_compare: the sections of the shared captures, the synthetic EIT
// schedule, a byte-at-a-time CRC-32 to compare ours with, and the counters of
// the interposed allocator.

#include <cstddef>
#include <vector>

namespace sarnbench {

enum Kind { PAT, PMT, NIT, SDT, EIT, TOT, AIT, SDTT, KIND_COUNT };

extern const char* const kKindNames[KIND_COUNT];

struct Section {
    Kind kind;
    unsigned int pid;
    std::vector<unsigned char> bytes;
};

/** Every CRC-valid section of the shared captures of a kind the library decodes. */
const std::vector<Section>& realMix();

/** The real mix plus the project's sample sections of any kind it lacks. */
const std::vector<Section>& kindMix();

/**
 * A synthetic eight-day guide: 200 basic EIT schedule sections of about 4 KB,
 * 29 events each, every event with a short event, a content, a parental
 * rating, a component and an audio component descriptor.
 */
const std::vector<Section>& eitSchedule();

/** The MPEG-2 CRC-32 one byte at a time through a 256-entry table. */
unsigned int crcByteTable(const unsigned char* p, size_t n);

/** Calls to malloc, calloc and realloc since the start, and the bytes asked for. */
unsigned long long allocatorCalls();
unsigned long long allocatedBytes();

}  // namespace sarnbench

#endif
