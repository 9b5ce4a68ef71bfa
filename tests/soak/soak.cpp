// A long run of the library: parse, render and delete the real mix of the
// shared captures and the synthetic EIT schedule, round after round, for N
// sections, and watch resident memory and speed over the run:
//   sarn_soak [SECTIONS]                  (default 10 million)
// After a warm-up of a tenth of the run, resident memory must not grow by
// more than 1 MiB, and the last tenth must run at least half as fast as the
// second, in CPU time (the machine may be shared; a leak or a slowdown that
// grows with the run shows far beyond that). Under AddressSanitizer, LeakSanitizer
// checks at exit that nothing was left behind.
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <string>
#include <vector>

#include "BenchInputs.h"
#include "SarnISDBTUtils.h"

using namespace sarnbench;

// The library's failure messages are not part of the run.
extern "C" int __android_log_print(int, const char*, const char*, ...) {
    return 0;
}

namespace {

/** CPU time of this thread in nanoseconds: other programs on the machine do not count. */
double cpuNanoseconds() {
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return t.tv_sec * 1e9 + t.tv_nsec;
}

/** A table of s, parsed from a copy (a parse may rewrite bytes of its input). */
Sarn::TISDBTTable* parseOurs(const Section& s, std::vector<unsigned char>& scratch) {
    scratch.assign(s.bytes.begin(), s.bytes.end());
    unsigned short code = 0;
    return Sarn::parseSection(scratch.data(), static_cast<unsigned int>(scratch.size()), 0, &code,
                              s.pid);
}

long residentKiB() {
    std::ifstream statm("/proc/self/statm");
    long size = 0, resident = 0;
    statm >> size >> resident;
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

}  // namespace

int main(int argc, char** argv) {
    const unsigned long long total = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 10000000ull;
    std::vector<const Section*> mix;
    for (const Section& s : realMix())
        mix.push_back(&s);
    for (const Section& s : eitSchedule())
        mix.push_back(&s);
    if (mix.empty() || total < 100) {
        std::fprintf(stderr, "sarn_soak: nothing to run\n");
        return 2;
    }
    constexpr int kWindows = 10;
    const unsigned long long window = total / kWindows;
    std::printf("%llu sections of a mix of %zu (real captures and a synthetic EIT schedule)\n",
                total, mix.size());
    std::printf("%8s %12s %14s %12s\n", "window", "sections", "CPU ns/section", "RSS KiB");
    std::vector<double> speed;
    std::vector<long> resident;
    unsigned long long done = 0, sink = 0;
    size_t next = 0;
    std::vector<unsigned char> scratch;
    for (int w = 0; w < kWindows; ++w) {
        const double start = cpuNanoseconds();
        for (unsigned long long i = 0; i < window; ++i) {
            const Section& s = *mix[next];
            next = next + 1 == mix.size() ? 0 : next + 1;
            Sarn::TISDBTTable* t = parseOurs(s, scratch);
            if (t != nullptr)
                sink += t->toJSON().size();
            delete t;
        }
        done += window;
        const double ns = (cpuNanoseconds() - start) / static_cast<double>(window);
        speed.push_back(ns);
        resident.push_back(residentKiB());
        std::printf("%8d %12llu %14.0f %12ld\n", w + 1, done, ns, resident.back());
    }
    long highest = 0;
    for (int w = 1; w < kWindows; ++w)
        highest = std::max(highest, resident[w]);
    const long growth = highest - resident[0];
#if defined(__SANITIZE_ADDRESS__)
    // AddressSanitizer holds freed memory in its quarantine: resident memory
    // tells nothing there; LeakSanitizer's check at exit does.
    const bool flat = true;
    std::printf("resident memory not checked under AddressSanitizer (growth %ld KiB)\n", growth);
#else
    const bool flat = growth <= 1024;
    std::printf("resident memory after warm-up: %ld KiB, growth %ld KiB (bound 1024): %s\n",
                resident[0], growth, flat ? "flat" : "GROWING");
#endif
    const bool steady = speed.back() <= 2 * speed[1];
    std::printf("last window %.0f ns/section against %.0f in the second: %s\n", speed.back(),
                speed[1], steady ? "steady" : "SLOWER");
    return flat && steady && sink != 0 ? 0 : 1;
}
