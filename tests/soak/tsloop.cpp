// Writes a transport stream of any length to standard output by looping a
// capture of 188-byte packets LOOPS times, each PID's continuity counter
// carried on across the loops, so that a reader sees one long unbroken
// stream:
//   sarn_tsloop CAPTURE.ts LOOPS
// Every 16 MiB it reports on standard error "<MiB written> <seconds>".
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <vector>

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: sarn_tsloop CAPTURE.ts LOOPS\n");
        return 2;
    }
    std::ifstream in(argv[1], std::ios::binary);
    std::vector<unsigned char> capture((std::istreambuf_iterator<char>(in)),
                                       std::istreambuf_iterator<char>());
    const size_t packets = capture.size() / 188;
    if (packets == 0 || capture[0] != 0x47) {
        std::fprintf(stderr, "sarn_tsloop: %s is not a stream of 188-byte packets\n", argv[1]);
        return 1;
    }
    const unsigned long long total = std::strtoull(argv[2], nullptr, 10) * packets * 188;
    std::vector<int> counter(0x2000, -1);
    std::vector<unsigned char> out;
    out.reserve(1 << 20);
    unsigned long long written = 0, reported = 0;
    const auto start = std::chrono::steady_clock::now();
    while (written < total) {
        for (size_t i = 0; i < packets && written < total; ++i) {
            const unsigned char* p = &capture[i * 188];
            out.insert(out.end(), p, p + 188);
            unsigned char* q = &out[out.size() - 188];
            const unsigned int pid = ((q[1] & 0x1Fu) << 8) | q[2];
            int& cc = counter[pid];
            if (q[3] & 0x10)  // a payload: the counter steps
                cc = (cc + 1) & 0x0F;
            else if (cc < 0)
                cc = 0;
            q[3] = static_cast<unsigned char>((q[3] & 0xF0) | cc);
            written += 188;
            if (out.size() >= (1 << 20) - 188) {
                for (size_t done = 0; done < out.size();) {
                    const ssize_t n = write(STDOUT_FILENO, out.data() + done, out.size() - done);
                    if (n <= 0)
                        return 1;
                    done += static_cast<size_t>(n);
                }
                out.clear();
            }
            if (written - reported >= (16ull << 20)) {
                reported = written;
                const double seconds =
                    std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
                std::fprintf(stderr, "%llu %.3f\n", written >> 20, seconds);
            }
        }
    }
    for (size_t done = 0; done < out.size();) {
        const ssize_t n = write(STDOUT_FILENO, out.data() + done, out.size() - done);
        if (n <= 0)
            return 1;
        done += static_cast<size_t>(n);
    }
    return 0;
}
