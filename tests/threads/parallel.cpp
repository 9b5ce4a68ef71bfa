// The library from several threads at once, as a receiver uses it (PMTs on
// one thread, EITs on another): every real and sample section parsed and
// rendered by eight threads together must give what one thread gives, and
// the objects of one table may be deleted from different threads. Built
// twice: plainly, and with ThreadSanitizer over the library and this test.
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "SarnISDBTUtils.h"
#include "SectionListing.h"

using namespace Sarn;

namespace {

// The library's log lines, counted from every thread (liblog's own is
// thread-safe; so must a replacement be).
std::atomic<unsigned long> gLogLines{0};

struct Section {
    unsigned int pid;
    std::vector<unsigned char> bytes;
};

std::vector<Section> allSections() {
    std::vector<Section> all;
    auto add = [&](unsigned int pid, unsigned int, const std::vector<unsigned char>& bytes) {
        all.push_back({pid, bytes});
    };
    const std::string shared = std::string(SARN_SHARED_DIR) + "/captures/sections";
    for (const std::string& name : sarntool::listingFiles(shared))
        sarntool::forEachListedSection(shared + "/" + name, add);
    sarntool::forEachListedSection(std::string(SARN_SOURCE_DIR) + "/data/sample-sections.txt", add);
    return all;
}

/** What one section gives: the table's JSON, or its error code. */
std::string outcome(const Section& s) {
    std::vector<unsigned char> copy(s.bytes);
    unsigned short code = 0;
    TISDBTTable* t =
        parseSection(copy.data(), static_cast<unsigned int>(copy.size()), 1, &code, s.pid);
    std::string text = t != nullptr ? t->toJSON() : "code " + std::to_string(code);
    delete t;
    return text;
}

}  // namespace

extern "C" int __android_log_print(int, const char*, const char*, ...) {
    gLogLines.fetch_add(1, std::memory_order_relaxed);
    return 1;
}

TEST(Threads, EightThreadsParseEverySectionAsOneDoes) {
    const std::vector<Section> sections = allSections();
    ASSERT_GT(sections.size(), 15u);
    std::vector<std::string> expected;
    gLogLines = 0;
    for (const Section& s : sections)
        expected.push_back(outcome(s));
    const unsigned long logsOfOnePass = gLogLines.load();

    constexpr int kThreads = 8, kPasses = 20;
    std::atomic<int> mismatches{0};
    std::vector<std::thread> threads;
    gLogLines = 0;
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back([&, t] {
            for (int pass = 0; pass < kPasses; ++pass) {
                // Each thread from its own starting point, so that kinds overlap.
                const size_t start = static_cast<size_t>(t * 7 + pass);
                for (size_t k = 0; k < sections.size(); ++k) {
                    const size_t i = (start + k) % sections.size();
                    if (outcome(sections[i]) != expected[i])
                        mismatches.fetch_add(1);
                }
                TISDBTTable::setDebug(pass & 1, t);
            }
        });
    for (std::thread& th : threads)
        th.join();
    EXPECT_EQ(mismatches.load(), 0);
    EXPECT_EQ(gLogLines.load(), logsOfOnePass * kThreads * kPasses);
}

TEST(Threads, ObjectsOfOneTableAreDeletedFromManyThreads) {
    // A PAT of 64 programs: its entries share the table's block. Each one is
    // displaced by a caller's own entry (a displaced entry is the caller's to
    // delete) and deleted on one of four threads while the table itself is
    // deleted on this one; the block goes back to the heap with the last.
    std::vector<unsigned char> pat = {0x00, 0xB0, 0x00, 0x06, 0x41, 0xC1, 0x00, 0x00};
    for (unsigned int n = 1; n <= 64; ++n)
        pat.insert(pat.end(),
                   {0x00, static_cast<unsigned char>(n), 0xE1, static_cast<unsigned char>(n)});
    const unsigned int sectionLength = static_cast<unsigned int>(pat.size() + 4 - 3);
    pat[1] = static_cast<unsigned char>(0xB0 | (sectionLength >> 8));
    pat[2] = static_cast<unsigned char>(sectionLength);
    const unsigned int crc = ISDBTUtils::getSectionCRC32(pat.data(), pat.size());
    for (int shift = 24; shift >= 0; shift -= 8)
        pat.push_back(static_cast<unsigned char>(crc >> shift));

    for (int round = 0; round < 50; ++round) {
        unsigned short code = 0;
        TPATTable* table = TPATTable::parse(pat.data(), static_cast<unsigned int>(pat.size()), 0, 1,
                                            &code, nullptr);
        ASSERT_NE(table, nullptr) << code;
        std::vector<TProgramAssociation*> taken;
        for (unsigned short n = 1; n <= 64; ++n) {
            taken.push_back(table->get(n));
            table->add(new TProgramAssociation(n, 0x1000));
        }
        std::vector<std::thread> threads;
        for (int t = 0; t < 4; ++t)
            threads.emplace_back([&taken, t] {
                for (size_t i = static_cast<size_t>(t); i < taken.size(); i += 4)
                    delete taken[i];
            });
        delete table;
        for (std::thread& th : threads)
            th.join();
    }
}
