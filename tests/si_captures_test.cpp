// End to end over real broadcast captures: every section of every capture
// listing has its expected outcome stated here (parsed, with any message it
// logs, or failed with its code and message), and cut and damaged copies of
// them (and of the bundled sample) never lead a parser outside the bytes.
#include <gtest/gtest.h>

#include <map>
#include <memory>

#include "LogCapture.h"
#include "ParseSection.h"
#include "SectionParse.h"

using namespace Sarn;

namespace {
bool isSiTable(const Bytes& b) {
    return !b.empty() && (b[0] == 0x02 || b[0] == 0x40 || b[0] == 0x42 || b[0] == 0x73);
}

// What one section of a capture gives. The CRC (its last four bytes)
// identifies the section; kNoClass marks a table_id that no class takes.
constexpr unsigned short kNoClass = 0xFFFF;
struct Outcome {
    unsigned int pid;
    unsigned int tableId;
    unsigned int crc;
    unsigned short code;
    std::vector<std::string> log = {};  // every line, as LogCapture::texts() shows it
    std::string json = {};              // when not empty, the exact rendering
};

// A descriptor item dropped for a length that runs past its descriptor:
// the item sizes of these Japanese extended event descriptors are counted
// with the control bytes that the text reader removes.
std::string droppedItem(unsigned int declared, unsigned int left) {
    return warnLine(
        "TExtendedEventDescriptorItem::parse Declared description length is larger than the "
        "buffer size (" +
        std::to_string(declared) + " > " + std::to_string(left) + ")");
}

const std::string kItalianTot =
    "{\"table_id\":115,\"section_length\":26,\"UTC-3_time\":\"2018-02-13 12:35:05\","
    "\"descriptors\":[{\"errors\":0,\"descriptor_tag\":88,\"descriptor_length\":13,"
    "\"loop\":[{\"country_code\":\"ITA\",\"country_region_id\":0,"
    "\"local_time_offset_polarity\":0,\"local_time_offset\":\"01:00\","
    "\"time_of_change\":\"2018-03-25 01:00:00\",\"next_time_offset\":\"02:00\"}]}]}";

const std::string kItalianAit =
    "{\"table_id\":116,\"section_length\":74,\"table_id_extension\":1,\"version_number\":0,"
    "\"current_next_indicator\":1,\"section_number\":0,\"last_section_number\":0,"
    "\"descriptors\":[],\"application_loop\":[{\"application_identifier\":{"
    "\"organization_id\":11,\"application_id\":6838},\"application_control_code\":1,"
    "\"recommended_resolution\":15,\"descriptors\":["
    "{\"errors\":0,\"descriptor_tag\":0,\"descriptor_length\":9,\"profile_loop\":["
    "{\"application_profile\":1,\"version.major\":1,\"version.minor\":0,"
    "\"version.micro\":2}],\"service_bound_flag\":1,\"visibility\":3,"
    "\"application_priority\":60,\"transport_protocol_label\":\"0x01\"},"
    "{\"errors\":0,\"descriptor_tag\":1,\"descriptor_length\":16,\"name_loop\":["
    "{\"ISO_639_language_code\":\"eng\",\"application_name\":\"Launcher SAT\"}]},"
    "{\"errors\":0,\"descriptor_tag\":2,\"descriptor_length\":5,\"protocol_id\":1,"
    "\"transport_protocol_label\":1},"
    "{\"errors\":0,\"descriptor_tag\":3,\"descriptor_length\":0,\"parameter_loop\":[]},"
    "{\"errors\":0,\"descriptor_tag\":4,\"descriptor_length\":12,\"base_directory\":\"/\","
    "\"entitypath_extension\":\"\",\"initial_entity\":\"bd.BDXlet\"}]}]}";

// Every section of every capture listing, in listing order.
const std::map<std::string, std::vector<Outcome>> kExpected = {
    {"br-isdbtb-tv-integracao-rs204.ts.sections.txt",
     {{0x0000, 0x00, 0x53631C24, 0},
      {0x0012, 0x58, 0xC134D0D9, 0},
      {0x0101, 0x02, 0x8617EA9F, 0},
      {0x1FC8, 0x02, 0x42D1ACDB, 0}}},
    {"br-isdbtb-tv-integracao.tables.bin.sections.txt",
     {{0x0000, 0x00, 0x53631C24, 0},
      {0x0001, 0x01, 0xD66DA242, kNoClass},
      {0x0010, 0x40, 0x88883EA4, 0},
      {0x0011, 0x42, 0x0A901662, 0},
      {0x0012, 0x4E, 0x4EB85D3D, 0},
      {0x0012, 0x4E, 0x80635DA2, 0},
      {0x0101, 0x02, 0x8617EA9F, 0},
      {0x1FC8, 0x02, 0x42D1ACDB, 0}}},
    {"dvb-mhp-ait-tot-excerpt.ts.sections.txt",
     {{0x0000, 0x00, 0xB594C8E0, 0},
      {0x0010, 0x40, 0xAFC41E96, 0},
      {0x0011, 0x42, 0x806B1866, 0},
      {0x0014, 0x73, 0xE2C205FF, 0, {}, kItalianTot},
      {0x0014, 0x73, 0x65AB62D7, 0},
      {0x0014, 0x73, 0xE4CCB4A2, 0},
      {0x0100, 0x02, 0xCA011D5E, 0},
      {0x0101, 0x02, 0x337DF075, 0},
      // Its one application comes over the interaction channel (protocol_id
      // 3), which the transport protocol descriptor does not take: the
      // application and so the whole table fail.
      {0x1EC5, 0x74, 0xAD9F1778, 2570, {warnLine("TAITTable::parse: Invalid item. Aborting!")}},
      {0x1EC6, 0x74, 0xF260526E, 0, {}, kItalianAit},
      {0x1EC7, 0x74, 0x0D13EC28, 0}}},
    {"isdbtb-lab-oneseg-mux.ts.sections.txt",
     {{0x0000, 0x00, 0x4A28E2B5, 0}, {0x0011, 0x42, 0x67897B4B, 0}, {0x0218, 0x02, 0x4CE7D5AC, 0}}},
    {"jp-isdb-cable-swdl.tables.bin.sections.txt",
     {{0x0000, 0x00, 0x13349683, 0},
      {0x0001, 0x01, 0x2938C7F0, kNoClass},
      {0x0010, 0x40, 0x07E17F1B, 0},
      {0x0011, 0x42, 0x06FD5950, 0},
      {0x0012, 0x4E, 0xEAB79F6E, 0},
      {0x0012, 0x4E, 0xB11643A4, 0},
      {0x0012, 0x4E, 0x57508E52, 0},
      {0x0012, 0x4E, 0x0CF15298, 0},
      {0x0021, 0x02, 0x61230D74, 0},
      {0x0022, 0x02, 0xC70E5EE5, 0}}},
    {"jp-isdbs-bs-excerpt.ts.sections.txt",
     {{0x0000, 0x00, 0xB73CAB40, 0},
      {0x0010, 0x40, 0xA98EA568, 0},
      {0x0012, 0x4F, 0xB5FA5210, 0},
      {0x0012, 0x60, 0x6E66C7A3, 0},
      {0x0012, 0x60, 0x5FE1E5B3, 0},
      {0x0101, 0x02, 0xBC314EC2, 0},
      {0x0201, 0x02, 0x1996D788, 0},
      {0x0203, 0x02, 0x607C65C2, 0}}},
    {"jp-isdbt-nhk-akita-tot.tables.bin.sections.txt",
     {{0x0011, 0x42, 0xA2534247, 0},
      {0x0014,
       0x73,
       0xA4308E26,
       0,
       {},
       "{\"table_id\":115,\"section_length\":11,\"UTC-3_time\":\"2020-04-05 19:25:22\","
       "\"descriptors\":[]}"}}},
    {"jp-isdbt-nhk-akita.tables.bin.sections.txt",
     {{0x0000, 0x00, 0x960E6368, 0},
      {0x0001, 0x01, 0xCEFADE0D, kNoClass},
      {0x0010, 0x40, 0x5E58B91A, 0},
      {0x0011, 0x42, 0xA2534247, 0},
      {0x0012, 0x4E, 0xEFBDBF6F, 0, {droppedItem(120, 1)}},
      {0x0012, 0x4E, 0x6F50DF43, 0, {droppedItem(41, 19), droppedItem(39, 7)}},
      {0x0012, 0x4E, 0xD762B222, 0},
      {0x0012, 0x4E, 0xDDB85CFA, 0},
      {0x01F0, 0x02, 0xDF2F198C, 0},
      {0x03F0, 0x02, 0xD3589779, 0},
      {0x1CF0, 0x02, 0x09872F03, 0},
      {0x1FC8, 0x02, 0xEA83D648, 0}}},
    {"jp-isdbt-nit-1.ts.sections.txt", {{0x0010, 0x40, 0x799D820E, 0}}},
    {"jp-isdbt-nit-2.ts.sections.txt", {{0x0010, 0x40, 0x1FAF43BF, 0}}},
};

// The bundled sample multiplex, in the same line format as the captures.
std::vector<CapturedSection> sampleSections() {
    return listedSections(std::string(SARN_SOURCE_DIR) + "/data/sample-sections.txt",
                          "sample-sections.txt");
}

// An exact-size copy, so that a read past the end is caught by the
// sanitizers; the CRC check is off so that damage reaches the body walk.
void parseAndRender(Bytes bytes) {
    if (!isSiTable(bytes))
        return;
    unsigned short code = 0;
    std::unique_ptr<TISDBTTable> t(parseSection(bytes.data(), length(bytes), 0, &code, 0));
    EXPECT_EQ(t == nullptr, code != 0);
    if (t != nullptr) {
        EXPECT_FALSE(t->toJSON().empty());
    }
}
}  // namespace

TEST(SICaptures, EverySectionHasItsExpectedOutcome) {
    auto all = capturedSections();
    if (all.empty())
        GTEST_SKIP() << "shared captures not present";
    std::map<std::string, size_t> seen;
    for (auto& s : all) {
        const size_t index = seen[s.file]++;
        SCOPED_TRACE(s.file + " section " + std::to_string(index));
        const auto file = kExpected.find(s.file);
        ASSERT_NE(file, kExpected.end()) << "a capture listing with no expectations";
        ASSERT_LT(index, file->second.size()) << "a section with no expectation";
        const Outcome& want = file->second[index];
        ASSERT_GE(s.bytes.size(), 4u);
        EXPECT_EQ(s.pid, want.pid);
        EXPECT_EQ(s.tableId, want.tableId);
        unsigned int crc = 0;
        for (size_t i = s.bytes.size() - 4; i < s.bytes.size(); ++i)
            crc = crc << 8 | s.bytes[i];
        EXPECT_EQ(crc, want.crc);

        EXPECT_TRUE(leavesTheHeapAsItWas(s.bytes, s.pid));
        LogCapture log;
        unsigned short code = 0xEEEE;
        std::unique_ptr<TISDBTTable> t(
            parseSection(s.bytes.data(), length(s.bytes), 1, &code, s.pid));
        EXPECT_EQ(code == ERROR_UNEXPECTED_TABLE_ID ? kNoClass : code, want.code);
        EXPECT_EQ(t != nullptr, code == 0);
        EXPECT_EQ(log.texts(), want.log);
        if (t != nullptr && !want.json.empty()) {
            EXPECT_EQ(t->toJSON(), want.json);
        }
    }
    // No listing and no section of one is missing.
    EXPECT_EQ(seen.size(), kExpected.size());
    for (const auto& file : kExpected)
        EXPECT_EQ(seen[file.first], file.second.size()) << file.first;
}

TEST(SICaptures, CutAndDamagedSectionsStayInsideTheirBytes) {
    std::vector<Bytes> sections;
    for (auto& s : sampleSections())
        sections.push_back(s.bytes);
    for (auto& s : capturedSections())
        sections.push_back(s.bytes);
    ASSERT_FALSE(sections.empty());
    LogCapture quiet;
    for (const Bytes& s : sections) {
        if (!isSiTable(s))
            continue;
        for (size_t n = 0; n <= s.size(); ++n)
            parseAndRender(Bytes(s.begin(), s.begin() + static_cast<long>(n)));
        // Every header and loop length byte near the front set to extremes.
        for (size_t i = 1; i < s.size() && i < 48; ++i) {
            for (unsigned char v : {0x00, 0x03, 0x0F, 0xFF}) {
                Bytes damaged = s;
                damaged[i] = v;
                parseAndRender(damaged);
            }
        }
        quiet.clear();
    }
}
