#include "SectionInput.h"

#include "SectionListing.h"

#include <cstdio>
#include <cstring>

namespace sarntool {

namespace {

unsigned int sectionSize(const unsigned char* p) {
    return 3 + (((p[1] & 0x0F) << 8) | p[2]);
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
    unsigned int pid = 0, tableId = 0;
    if (!parseListingLine(text.c_str(), pid, tableId, bytes) || pid >= kPidCount)
        bytes.clear();
    text.clear();
    if (bytes.empty()) {
        ++bad;
        return;
    }
    ++sections;
    sink.onSection(pid, bytes.data(), static_cast<unsigned int>(bytes.size()));
}

}  // namespace sarntool
