#include "BenchInputs.h"

#include <dirent.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <fstream>
#include <string>

#include "SectionListing.h"

namespace sarnbench {

const char* const kKindNames[KIND_COUNT] = {"PAT", "PMT", "NIT", "SDT",
                                            "EIT", "TOT", "AIT", "SDTT"};

namespace {

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
    sarntool::forEachListedSection(
        path, [&](unsigned int pid, unsigned int tid, const std::vector<unsigned char>& bytes) {
            const int kind = kindOf(pid, tid);
            if (kind >= 0)
                out.push_back({static_cast<Kind>(kind), pid, bytes});
        });
}

unsigned char bcd(int v) {
    return static_cast<unsigned char>((v / 10) << 4 | (v % 10));
}

void appendText(std::vector<unsigned char>& d, const char* text) {
    d.push_back(static_cast<unsigned char>(strlen(text)));
    d.insert(d.end(), text, text + strlen(text));
}

// One event of the schedule: 45 minutes from 00:00 + index * 45 min.
void appendEvent(std::vector<unsigned char>& b, int id, int index) {
    std::vector<unsigned char> d;
    const char* title = "Jornal da Noite";
    const char* text = "Noticias, esportes e a previsao do tempo para todo o Brasil.";
    d.push_back(0x4D);
    d.push_back(static_cast<unsigned char>(3 + 1 + strlen(title) + 1 + strlen(text)));
    d.insert(d.end(), {'p', 'o', 'r'});
    appendText(d, title);
    appendText(d, text);
    d.insert(d.end(), {0x54, 0x02, 0x00, 0xEE});
    d.insert(d.end(), {0x55, 0x04, 'B', 'R', 'A', 0x02});
    d.insert(d.end(), {0x50, 0x06, 0xF1, 0xB3, 0x00, 'p', 'o', 'r'});
    // Audio component: stereo AAC, main component, 48 kHz, Portuguese.
    const char* audio = "Audio original";
    d.insert(d.end(), {0xC4, static_cast<unsigned char>(9 + strlen(audio)), 0xF2, 0x03, 0x10, 0x11,
                       0xFF, 0x7F, 'p', 'o', 'r'});
    d.insert(d.end(), audio, audio + strlen(audio));

    const int start = index * 45;
    b.push_back(static_cast<unsigned char>(id >> 8));
    b.push_back(static_cast<unsigned char>(id));
    b.insert(b.end(), {0xEB, 0x1E, bcd(start / 60), bcd(start % 60), 0x00, 0x00, 0x45, 0x00});
    // running_status 4 (running), free_CA_mode 0, then the loop length.
    b.push_back(static_cast<unsigned char>(0x80 | (d.size() >> 8)));
    b.push_back(static_cast<unsigned char>(d.size()));
    b.insert(b.end(), d.begin(), d.end());
}

}  // namespace

const std::vector<Section>& realMix() {
    static const std::vector<Section> sections = [] {
        std::vector<Section> all;
        const std::string dir = std::string(SARN_SHARED_DIR) + "/captures/sections";
        const std::vector<std::string> names = sarntool::listingFiles(dir);
        for (const std::string& n : names)
            readListing(dir + "/" + n, all);
        return all;
    }();
    return sections;
}

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

const std::vector<Section>& eitSchedule() {
    static const std::vector<Section> sections = [] {
        constexpr int kSections = 200;
        constexpr int kEvents = 29;
        std::vector<Section> all;
        for (int s = 0; s < kSections; ++s) {
            // table_id 0x50, service 0x4040, version 1, section s of 200; each
            // group of eight sections is a segment.
            std::vector<unsigned char> b = {
                0x50,
                0xF0,
                0x00,
                0x40,
                0x40,
                0xC3,
                static_cast<unsigned char>(s),
                kSections - 1,
                0x06,
                0x41,
                0x06,
                0x41,
                static_cast<unsigned char>(std::min(s | 7, kSections - 1)),
                0x50};
            for (int e = 0; e < kEvents; ++e)
                appendEvent(b, s * kEvents + e, e);
            const size_t length = b.size() - 3 + 4;
            b[1] = static_cast<unsigned char>(0xF0 | (length >> 8));
            b[2] = static_cast<unsigned char>(length);
            const unsigned int crc = crcByteTable(b.data(), b.size());
            for (int shift = 24; shift >= 0; shift -= 8)
                b.push_back(static_cast<unsigned char>(crc >> shift));
            all.push_back({EIT, 0x12, b});
        }
        return all;
    }();
    return sections;
}

unsigned int crcByteTable(const unsigned char* p, size_t n) {
    static const std::array<unsigned int, 256> table = [] {
        std::array<unsigned int, 256> t{};
        for (unsigned int i = 0; i < 256; ++i) {
            unsigned int c = i << 24;
            for (int b = 0; b < 8; ++b)
                c = (c & 0x80000000u) ? (c << 1) ^ 0x04C11DB7u : c << 1;
            t[i] = c;
        }
        return t;
    }();
    unsigned int c = 0xFFFFFFFFu;
    while (n--)
        c = (c << 8) ^ table[(c >> 24) ^ *p++];
    return c;
}

}  // namespace sarnbench
