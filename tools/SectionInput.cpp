#include "SectionInput.h"

#include <cstdio>
#include <cstring>

namespace sarntool {

namespace {

unsigned int sectionSize(const unsigned char* p) {
    return 3 + (((p[1] & 0x0F) << 8) | p[2]);
}

int hexDigit(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

}  // namespace

// ---------------------------------------------------------------------------
// SectionDumpReader
// ---------------------------------------------------------------------------

bool SectionDumpReader::looksLikeDump(const unsigned char* data, size_t length) {
    size_t pos = 0;
    while (pos < length && data[pos] == 0xFF)
        ++pos;
    if (length - pos < 3)
        return false;
    return checkedSectionSize(data + pos, length - pos) >= 8;
}

void SectionDumpReader::feed(const unsigned char* data, size_t length) {
    pending.insert(pending.end(), data, data + length);
    size_t pos = 0;
    while (pos < pending.size()) {
        if (pending[pos] == 0xFF) {
            ++pos;
            continue;
        }
        if (pending.size() - pos < 3)
            break;
        const unsigned int size = sectionSize(&pending[pos]);
        if (size > pending.size() - pos)
            break;
        unsigned char* section = &pending[pos];
        const unsigned int pid = learner.guessPid(section, size);
        learner.learn(pid, section, size);
        ++sections;
        sink.onSection(pid, section, size);
        pos += size;
    }
    pending.erase(pending.begin(), pending.begin() + static_cast<std::ptrdiff_t>(pos));
}

void SectionDumpReader::finish() {
    truncated += pending.size();
    pending.clear();
}

// ---------------------------------------------------------------------------
// SectionListingReader
// ---------------------------------------------------------------------------

bool SectionListingReader::looksLikeListing(const unsigned char* data, size_t length) {
    size_t pos = 0;
    while (pos < length &&
           (data[pos] == ' ' || data[pos] == '\t' || data[pos] == '\r' || data[pos] == '\n'))
        ++pos;
    return length - pos >= 6 && std::memcmp(data + pos, "pid=0x", 6) == 0;
}

void SectionListingReader::feed(const unsigned char* data, size_t length) {
    for (size_t i = 0; i < length; ++i) {
        if (data[i] == '\n')
            line();
        else
            text.push_back(static_cast<char>(data[i]));
    }
}

void SectionListingReader::finish() {
    if (!text.empty())
        line();
}

void SectionListingReader::line() {
    const size_t first = text.find_first_not_of(" \t\r");
    if (first == std::string::npos || text[first] == '#') {
        text.clear();
        return;
    }
    unsigned int pid = 0, tableId = 0, length = 0;
    int consumed = 0;
    bytes.clear();
    if (std::sscanf(text.c_str(), " pid=0x%x tid=0x%x len=%u %n", &pid, &tableId, &length,
                    &consumed) == 3 &&
        consumed > 0 && pid < kPidCount) {
        int high = -1;
        for (size_t i = static_cast<size_t>(consumed); i < text.size(); ++i) {
            const int v = hexDigit(text[i]);
            if (v < 0)
                continue;
            if (high < 0) {
                high = v;
            } else {
                bytes.push_back(static_cast<unsigned char>(high * 16 + v));
                high = -1;
            }
        }
    }
    text.clear();
    if (bytes.empty()) {
        ++bad;
        return;
    }
    ++sections;
    sink.onSection(pid, bytes.data(), static_cast<unsigned int>(bytes.size()));
}

}  // namespace sarntool
