// sarn-dump: text conversion, JSON lines, repeat suppression, the input
// kinds, and the tool itself: command line, output and summary, the
// library's log, real captures, live use.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "DumpSession.h"
#include "SarnISDBTUtilsVersion.h"
#include "Sections.h"

using namespace sarntool;

namespace {

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

void writeFile(const std::string& path, const Bytes& data) {
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(data.data()),
               static_cast<std::streamsize>(data.size()));
}

std::vector<std::string> lines(const std::string& text) {
    std::vector<std::string> out;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        out.push_back(line);
    return out;
}

/** FNV-1a, to compare whole outputs with what they were. */
unsigned long long fingerprint(const std::string& s) {
    unsigned long long h = 14695981039346656037ull;
    for (unsigned char c : s)
        h = (h ^ c) * 1099511628211ull;
    return h;
}

struct ToolRun {
    int status = -1;
    std::string out, err;
};

/** Runs the sarn-dump binary with a shell argument string. */
ToolRun runTool(const std::string& args, const std::string& input = "/dev/null") {
    const std::string base = testing::TempDir() + "/sarn_dump_" + std::to_string(getpid());
    const std::string cmd = std::string(SARN_DUMP_RUNNER) + " '" + SARN_DUMP_EXE + "' " + args +
                            " >'" + base + ".out' 2>'" + base + ".err' <'" + input + "'";
    ToolRun r;
    const int rc = std::system(cmd.c_str());
    r.status = WIFEXITED(rc) ? WEXITSTATUS(rc) : -1;
    r.out = readFile(base + ".out");
    r.err = readFile(base + ".err");
    std::remove((base + ".out").c_str());
    std::remove((base + ".err").c_str());
    return r;
}

/** A section of up to 183 bytes in a 188-byte packet of its own. */
Bytes packet(unsigned int pid, unsigned int cc, const Bytes& section) {
    Bytes p = Bytes{0x47, static_cast<unsigned char>(0x40 | (pid >> 8)),
                    static_cast<unsigned char>(pid & 0xFF),
                    static_cast<unsigned char>(0x10 | (cc & 0x0F)), 0x00} +
              section;
    p.resize(188, 0xFF);
    return p;
}

// A PAT of TS 1 mapping program 1 to the PMT PID 0x0100, and that PMT with
// a digital copy control descriptor cut short (C1 01 20: a bitrate flagged,
// no byte for it), which the library drops with a warning. Three times.
Bytes craftedStream() {
    const Bytes pat = longSection(0x00, 1, 0, {0x00, 0x01, 0xE1, 0x00});
    const Bytes pmt = longSection(
        0x02, 1, 0, {0xE1, 0x11, 0xF0, 0x03, 0xC1, 0x01, 0x20, 0x1B, 0xE1, 0x11, 0xF0, 0x00});
    Bytes ts;
    for (unsigned int cc = 0; cc < 3; ++cc)
        ts = ts + packet(0, cc, pat) + packet(0x100, cc, pmt);
    return ts;
}

const std::string kHead = "{\"pid\":0,\"table_id\":0,\"section_number\":0,\"error\":";
const std::string kCraftedPat =
    kHead +
    "0,\"table\":{\"transportStreamId\":1,\"programs\":[{\"programNumber\":1,"
    "\"networkPid\":0,\"programMapPid\":256}]}}\n";
const std::string kCraftedPmt =
    "{\"pid\":256,\"table_id\":2,\"section_number\":0,\"error\":0,\"table\":{\"programNumber\":1,"
    "\"pcrPid\":273,\"programInfoDescriptors\":[],\"elementaryStreams\":[{\"streamType\":27,"
    "\"elementaryPid\":273,\"esInfoDescriptors\":[]}]},\"log\":[{\"priority\":5,\"text\":"
    "\"SarnISDBTUtils: TDigitalCopyControlDescriptor::parse: Longer data length is required: 0 < "
    "1. Aborting!\"}]}\n";
const std::string kSample = std::string(SARN_SOURCE_DIR) + "/data/sample.ts";
const std::string kTryHelp = "Try 'sarn-dump --help'.\n";

#define REQUIRE_JSON_CHECK() \
    if (!haveJsonCheck())    \
    GTEST_SKIP() << "built without RapidJSON: every table goes out as text"

}  // namespace

TEST(SarnDump, TextConversionAndJsonLines) {
    TextConverter latin9, c;
    auto convert = [](const TextConverter& converter, const std::string& text) {
        std::string out;
        converter.append(out, text.data(), text.size());
        return out;
    };
    // Brazilian broadcast text: "AÇÃO €" in ISO/IEC 8859-15, a line feed, an
    // ESC, DEL and a C1 control.
    EXPECT_EQ(convert(latin9, "A\xC7\xC3O \xA4\n\x1B\x7F\x85\""),
              "A\xC3\x87\xC3\x83O \xE2\x82\xAC\\n\\u001b\\u007f\\u0085\"");
    EXPECT_EQ(
        convert(latin9, "\xA6\xA8\xB4\xB8\xBC\xBD\xBE\xFF\t\r\b\f\x0B"),
        "\xC5\xA0\xC5\xA1\xC5\xBD\xC5\xBE\xC5\x92\xC5\x93\xC5\xB8\xC3\xBF\\t\\r\\b\\f\\u000b");
    std::string message;
    ASSERT_TRUE(c.setCharset("latin1", &message));
    EXPECT_EQ(convert(c, "\xA4\xBD"), "\xC2\xA4\xC2\xBD");
    ASSERT_TRUE(c.setCharset("raw", &message));
    EXPECT_FALSE(c.producesUtf8());
    EXPECT_EQ(convert(c, "\xC7\x85\x01"), "\xC7\x85\\u0001");
    // Other sets through iconv, where the C library has its conversion modules:
    // bytes that are nothing there, three-byte sequences, ASCII letters.
    if (c.setCharset("CP1252", &message)) {
        EXPECT_TRUE(c.producesUtf8());
        EXPECT_EQ(convert(c, "\x80\xE9\x81"), "\xE2\x82\xAC\xC3\xA9\xEF\xBF\xBD");
        ASSERT_TRUE(c.setCharset("VISCII", &message));
        EXPECT_EQ(convert(c, "\x80"), "\xE1\xBA\xA0");
        ASSERT_TRUE(c.setCharset("IBM037", &message));
        EXPECT_EQ(convert(c, "\x81\xC1"), "aA");
        EXPECT_FALSE(c.setCharset("SHIFT_JIS", &message));
        EXPECT_EQ(message, "character set SHIFT_JIS is not a single-byte set");
    }
    ASSERT_TRUE(c.setCharset("ISO-8859-15", &message));
    EXPECT_EQ(convert(c, "\xA4"), "\xE2\x82\xAC");
    EXPECT_FALSE(c.setCharset("NO-SUCH-SET", &message));
    EXPECT_EQ(message, "unknown character set NO-SUCH-SET");

    // Lines: the library's text converted when it is valid JSON then, as a
    // string otherwise; with --raw exactly as it is. What the library logged
    // is escaped, and converted like the broadcast text but with --raw.
    JsonLineWriter writer(latin9, false), exact(latin9, true);
    const std::string good = "{\"name\":\"TV INTEGRA\xC7\xC3O\",\"n\":[1,2]}";
    const std::string quirky = "{\"text\":\"a \"quoted\" word\\q\",\"x\":1}";
    const std::string withTab = "{\"text\":\"a\tb\"}";
    const std::vector<LogEntry> logged = {{5, "a \"b\"\\ \x01 \xA4"}, {6, "x"}};
    std::string out, raw;
    writer.append(out, 17, 66, 0, 0, &good);
    writer.append(out, 18, 78, 1, 0, &quirky);
    writer.append(out, 18, 78, 2, 0, &withTab);
    writer.append(out, 16, 64, 0, 2568, nullptr, &logged);
    exact.append(raw, 18, 78, 1, 0, &quirky);
    exact.append(raw, 16, 64, 0, 2568, nullptr, &logged);
    const std::string log =
        "{\"pid\":16,\"table_id\":64,\"section_number\":0,\"error\":2568,\"log\":"
        "[{\"priority\":5,\"text\":\"a \\\"b\\\"\\\\ \\u0001 ";
    const std::string logEnd = "\"},{\"priority\":6,\"text\":\"x\"}]}\n";
    EXPECT_EQ(raw, "{\"pid\":18,\"table_id\":78,\"section_number\":1,\"error\":0,\"table\":" +
                       quirky + "}\n" + log + "\xA4" + logEnd);
    EXPECT_EQ(out.substr(out.rfind("{\"pid\":16")), log + "\xE2\x82\xAC" + logEnd);
    EXPECT_EQ(writer.textFallbacks(), haveJsonCheck() ? 1u : 3u);
    REQUIRE_JSON_CHECK();
    EXPECT_EQ(out,
              "{\"pid\":17,\"table_id\":66,\"section_number\":0,\"error\":0,\"table\":"
              "{\"name\":\"TV INTEGRA\xC3\x87\xC3\x83O\",\"n\":[1,2]}}\n"
              "{\"pid\":18,\"table_id\":78,\"section_number\":1,\"error\":0,\"table_text\":"
              "\"{\\\"text\\\":\\\"a \\\"quoted\\\" word\\\\q\\\",\\\"x\\\":1}\"}\n"
              "{\"pid\":18,\"table_id\":78,\"section_number\":2,\"error\":0,\"table\":"
              "{\"text\":\"a\\tb\"}}\n" +
                  log + "\xE2\x82\xAC" + logEnd);
    EXPECT_FALSE(isValidJson("{\"a\":1} {}", true));
    EXPECT_FALSE(isValidJson("{\"a\":\"\xC7\"}", true));  // not UTF-8
    EXPECT_TRUE(isValidJson("{\"a\":\"\xC7\"}", false));
}

TEST(SarnDump, RepeatsAreSuppressedPerSection) {
    // PAT of TS 1, section `number` of 0..1, program 5 on PMT PID 0x100 + pmt.
    auto pat = [](unsigned char version, unsigned char number, unsigned char pmt,
                  unsigned short ts = 1) {
        return longSection(0x00, ts, version, {0x00, 0x05, 0xE1, pmt}, number, 1);
    };
    Bytes s0 = pat(2, 0, 0x00), s1 = pat(2, 1, 0x01), s1v3 = pat(3, 1, 0x01), bad = pat(4, 0, 0x00);
    Bytes ts2 = pat(3, 1, 0x01, 2), tiny = {0x00, 0xB0},
          header = {0x00, 0xB0, 0x05, 0x00, 0x01, 0xC1, 0x03, 0x03};
    bad.back() ^= 0xFF;
    const std::string json =
        "{\"transportStreamId\":1,\"programs\":[{\"programNumber\":5,"
        "\"networkPid\":0,\"programMapPid\":25";
    SectionDispatch dispatch;
    // A later section is compared by the tool as the library compares the
    // first; the same section of another transport stream or on another PID
    // is another table.
    for (const auto& step : std::vector<std::tuple<Bytes*, unsigned int, bool, int, std::string>>{
             {&s0, 0, true, 0, json + "6}]}"},
             {&s0, 0, true, Sarn::ERROR_TABLE_UNCHANGED, ""},
             {&s1, 0, true, 0, json + "7}]}"},
             {&s1, 0, true, Sarn::ERROR_TABLE_UNCHANGED, ""},
             {&s1v3, 0, true, 0, json + "7}]}"},
             {&ts2, 0, true, 0, "{\"transportStreamId\":2" + json.substr(json.find(',')) + "7}]}"},
             {&s1v3, 0, true, Sarn::ERROR_TABLE_UNCHANGED, ""},
             {&s0, 0, true, Sarn::ERROR_TABLE_UNCHANGED, ""},
             {&s0, 0x10, false, 0, ""},
             {&bad, 0, true, Sarn::ERROR_CRC32, ""},
             {&s0, 0, true, Sarn::ERROR_TABLE_UNCHANGED, ""},
             {&tiny, 0, false, 0, ""},
             {&header, 0, true, Sarn::ERROR_DATA_TOO_SHORT, ""},
         }) {
        Bytes& section = *std::get<0>(step);
        const SectionResult r = dispatch.handle(std::get<1>(step), section.data(), length(section));
        EXPECT_EQ(r.known, std::get<2>(step));
        EXPECT_EQ(r.error, std::get<3>(step));
        EXPECT_EQ(r.json, std::get<4>(step));
        EXPECT_EQ(r.sectionNumber, section.size() >= 8 ? section[6] : 0u);
    }
}

TEST(SarnDump, InputKinds) {
    REQUIRE_JSON_CHECK();
    // The sample as a stream, a listing and a dump of its sections (PIDs
    // guessed there; stuffing between sections is allowed), fed in chunks of
    // any size; junk and packets after more than a megabyte of it, as the
    // tool reads; inputs in which nothing is found. Each gives its lines and
    // summary (fingerprinted) in the same way.
    const std::string sample = readFile(kSample);
    const std::string listing =
        readFile(std::string(SARN_SOURCE_DIR) + "/data/sample-sections.txt");
    // A comment is skipped; a PID out of range or a line of something else is not read.
    const std::string text = listing + "# comment\npid=0x2000 tid=0x00 len=3 00B000\nnot a line\n";
    Bytes dump, junk(1536 * 1024, 0x00);
    for (const std::string& l : lines(listing))
        dump = dump + Bytes(3, 0xFF) + fromHex(l.substr(l.find(' ', l.find("len=")) + 1));
    for (size_t i = 0; i < junk.size(); i += 1001)
        junk[i] = 0x47;
    using F = DumpSession::Format;
    struct Case {
        Bytes input;
        size_t chunk;
        F format;
        size_t lines;
        unsigned long long output;
    };
    const Case cases[] = {
        {Bytes(sample.begin(), sample.end()), 1 << 16, F::TransportStream, 15,
         3693511206326907593ull},
        {Bytes(sample.begin(), sample.end()), 1, F::TransportStream, 15, 3693511206326907593ull},
        {Bytes(text.begin(), text.end()), 7, F::SectionListing, 15, 4223178074754088401ull},
        {dump, 5, F::SectionDump, 15, 7534133741658150296ull},
        {junk + craftedStream(), 1 << 20, F::TransportStream, 2, 10858409025240296737ull},
        {Bytes(70000, 0x20), 1 << 16, F::Unrecognised, 0, 14695981039346656037ull},
        {Bytes(), 1, F::Unrecognised, 0, 14695981039346656037ull},
        {Bytes(3 << 20, 0x00), 1 << 20, F::Unrecognised, 0, 14695981039346656037ull},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.input.size() << " bytes by " << c.chunk);
        char* buffer = nullptr;
        size_t size = 0;
        std::FILE* out = open_memstream(&buffer, &size);
        const TextConverter converter;
        DumpSession session(DumpOptions(), converter, out);
        for (size_t pos = 0; pos < c.input.size(); pos += c.chunk)
            session.feed(c.input.data() + pos, std::min(c.chunk, c.input.size() - pos));
        session.finish();
        session.printSummary(out);
        std::fclose(out);
        const std::string text(buffer, size);
        std::free(buffer);
        EXPECT_EQ(session.format(), c.format);
        EXPECT_EQ(session.linesWritten(), c.lines);
        EXPECT_EQ(fingerprint(text), c.output) << text;
    }
}

TEST(SarnDump, CommandLine) {
    const std::string dir = testing::TempDir(), readme = SARN_SOURCE_DIR "/README.md";
    const std::string usage = "usage: sarn-dump [OPTION]... FILE|-\n";
    const std::string notFound = ": not a transport stream, a section dump or a section listing\n";
    struct Case {
        std::string args;
        int status;
        std::string out, err;  // out: what it begins with
    };
    for (const Case& c : std::vector<Case>{
             {"--help", 0, usage, ""},
             {"-h", 0, usage, ""},
             {"--version", 0, std::string("sarn-dump ") + SARN_ISDBT_UTILS_VERSION + "\n", ""},
             {"", 2, "", "no input given\n"},
             {"--bogus x", 2, "", "unknown option --bogus\n"},
             {"--all=1 x", 2, "", "unknown option --all=1\n"},
             {"--version=1", 2, "", "unknown option --version=1\n"},
             {"a b", 2, "", "more than one input: b\n"},
             {"--pid", 2, "", "missing value for --pid\n"},
             // An option's value is neither the input nor another option.
             {"--pid capture.ts", 2, "", "missing value for --pid\n"},
             {"--table --all x", 2, "", "missing value for --table\n"},
             {"--charset - x", 2, "", "missing value for --charset\n"},
             {"--pid 0x2000 x", 2, "", "bad PID list: 0x2000\n"},
             {"--pid 1,,2 x", 2, "", "bad PID list: 1,,2\n"},
             {"--pid 12x x", 2, "", "bad PID list: 12x\n"},
             {"--table 256 x", 2, "", "bad table_id list: 256\n"},
             {"--charset NO-SUCH-SET x", 2, "", "unknown character set NO-SUCH-SET\n"},
             {"--services --epg x", 2, "", "one view at a time: --epg\n"},
             {"--html r.html --epg x", 2, "", "one view at a time: --epg\n"},
             {"--html --all x", 2, "", "missing value for --html\n"},
             {"--xmltv --services x", 2, "", "one view at a time: --services\n"},
             {"--text x", 2, "", "--text goes with --services or --epg\n"},
             {"--xmltv --text x", 2, "", "--text goes with --services or --epg\n"},
             {"--xmltv --charset raw x", 2, "", "--xmltv writes UTF-8: not with --charset raw\n"},
             {"--epg --utc-offset -3:7 x", 2, "", "bad UTC offset (e.g. -03:00): -3:7\n"},
             {"--epg --utc-offset +14:01 x", 2, "", "bad UTC offset (e.g. -03:00): +14:01\n"},
             {"/nonexistent/file.ts", 1, "",
              "cannot read /nonexistent/file.ts: No such file or directory\n"},
             {"-- --all", 1, "", "cannot read --all: No such file or directory\n"},
             {"'" + dir + "'", 1, "", "cannot read " + dir + ": is a directory\n"},
             {"'" + readme + "'", 1, "", readme + notFound},
             {"-", 1, "", "-" + notFound},
         }) {
        SCOPED_TRACE(c.args);
        const ToolRun r = runTool(c.args);
        EXPECT_EQ(r.status, c.status);
        EXPECT_EQ(c.out.empty() ? r.out : r.out.substr(0, c.out.size()), c.out);
        EXPECT_EQ(r.err,
                  c.err.empty() ? "" : "sarn-dump: " + c.err + (c.status == 2 ? kTryHelp : ""));
    }
}

// The channel list and the programme guide: exact output on the bundled
// sample and on a real Brazilian capture, and valid JSON on every capture
// (the XMLTV of every capture goes through the XMLTV validator in
// tools.xmltv_validates).
TEST(SarnDump, ServicesAndProgrammeGuide) {
    const std::string expected = std::string(SARN_SOURCE_DIR) + "/tests/expected/";
    const std::string real = std::string(SARN_SHARED_DIR) + "/captures/";
    const std::string integracao = real + "br-isdbtb-tv-integracao.tables.bin";
    for (const auto& c : std::vector<std::pair<std::string, std::string>>{
             {"--services '" + kSample + "'", "sample.services.json"},
             {"--services --text '" + kSample + "'", "sample.services.txt"},
             {"--epg --text '" + kSample + "'", "sample.epg.txt"},
             {"--epg --xmltv '" + kSample + "'", "sample.xmltv"},
             {"--services --text '" + integracao + "'", "br-isdbtb-tv-integracao.services.txt"},
             {"--epg '" + integracao + "'", "br-isdbtb-tv-integracao.epg.json"},
         }) {
        SCOPED_TRACE(c.first);
        const ToolRun r = runTool(c.first);
        EXPECT_EQ(r.status, 0);
        EXPECT_EQ(r.out, readFile(expected + c.second));
    }
    // The offset given wins over the TOT's; the times are the broadcast's own.
    ToolRun r = runTool("--epg --text --utc-offset +0530 '" + kSample + "'");
    EXPECT_EQ(lines(r.out).at(0), "Times in UTC+05:30 (option)");
    EXPECT_EQ(lines(r.out).at(3),
              "  2026-11-22 18:00-19:00  0x0101  Jornal SARN  "
              "[Jornalismo / Telejornais]  [L]");
    // A PID filter narrows what the views see: the one-segment EIT alone.
    r = runTool("--epg --text --pid 0x27 '" + kSample + "'");
    EXPECT_EQ(r.out,
              "Times in UTC-03:00 (default (no TOT))\n\n"
              "Service 0xC858 (51288)\n"
              "  2026-11-22 18:00-19:00  0x0201  Jornal SARN  [Jornalismo / Telejornais]  [L]\n");

    // The report goes to its file; one that cannot be written fails the run.
    const std::string report = testing::TempDir() + "/sarn_report.html";
    r = runTool("--html '" + report + "' '" + kSample + "'");
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "");
    const std::string page = readFile(report);
    EXPECT_EQ(page.rfind("<!DOCTYPE html>\n<html lang=\"en\">", 0), 0u);
    EXPECT_EQ(page.find("http"), std::string::npos);  // nothing fetched from anywhere
    for (const char* piece :
         {// The clock of the video PID; a PID's row; the first table's tree;
          // the log line of the damaged section; the first event in the guide.
          "<dt>Duration</dt><dd>3.96 s (PCR of PID <code>0x0111</code> (273))</dd>",
          "<tr><th scope=\"row\"><code>0x0111</code> (273)</th><td class=\"n\">400</td><td "
          "class=\"n\">53.05 %</td><td class=\"n\">151.9 kbit/s</td><td class=\"n\">0</td><td "
          "class=\"n\">0</td><td class=\"n\">0</td><td>H.264/AVC video, service 0xC840; PCR, "
          "service 0xC840</td></tr>",
          "<ul class=\"tree\"><li><span class=\"k\">transportStreamId</span>: <span "
          "class=\"num\">1601</span></li><li><details><summary><span "
          "class=\"k\">programs</span>: ",
          "section 0 <span class=\"flag\">1 log line</span></summary><div><ul class=\"log\" "
          "aria-label=\"Logged by the library\"><li class=\"warn\">warning: ",
          "data-start=\"2026-11-22 18:00\" data-event=\"0x0101\"><summary>18:00 Jornal "
          "SARN</summary>"})
        EXPECT_NE(page.find(piece), std::string::npos) << piece;
    std::remove(report.c_str());
    r = runTool("--html /nonexistent/r.html '" + kSample + "'");
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err.rfind("sarn-dump: cannot write /nonexistent/r.html: No such file or "
                          "directory\n",
                          0),
              0u);

    std::vector<std::string> inputs = {kSample};
    for (const char* name : {"br-isdbtb-tv-integracao-rs204.ts", "dvb-mhp-ait-tot-excerpt.ts",
                             "isdbtb-lab-oneseg-mux.ts", "jp-isdbs-bs-excerpt.ts",
                             "jp-isdbt-nit-1.ts", "jp-isdbt-nit-2.ts",
                             "br-isdbtb-tv-integracao.tables.bin", "jp-isdb-cable-swdl.tables.bin",
                             "jp-isdbt-nhk-akita-tot.tables.bin", "jp-isdbt-nhk-akita.tables.bin"})
        inputs.push_back(real + name);
    for (const std::string& input : inputs) {
        SCOPED_TRACE(input);
        for (const char* view : {"--services", "--epg"}) {
            r = runTool(std::string(view) + " '" + input + "'");
            EXPECT_EQ(r.status, 0);
            if (haveJsonCheck()) {
                EXPECT_TRUE(isValidJson(r.out, true)) << r.out;
            }
        }
        r = runTool("--xmltv '" + input + "'");
        EXPECT_EQ(r.out.rfind("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n", 0), 0u);
        EXPECT_EQ(r.out.substr(r.out.size() - 6), "</tv>\n");
    }
}

// Damaged copies of a real capture (100 packets of PSI: a PAT, a NIT, an
// SDT over three packets, PMTs over two, TOTs, AITs): only the sections that
// the damage touches are lost, each loss counted by its cause, and every
// other line comes out as before.
TEST(SarnDump, DamagedStreamsLoseOnlyWhatTheDamageTouches) {
    const std::string whole =
        readFile(std::string(SARN_SHARED_DIR) + "/captures/dvb-mhp-ait-tot-excerpt.ts");
    ASSERT_EQ(whole.size(), 100u * 188);
    std::vector<Bytes> packets;
    for (size_t i = 0; i < 100; ++i)
        packets.emplace_back(whole.begin() + i * 188, whole.begin() + (i + 1) * 188);
    const std::string file = testing::TempDir() + "/sarn_damaged.ts";
    auto runOn = [&](const std::vector<Bytes>& stream, size_t cut = ~size_t(0)) {
        Bytes all;
        for (const Bytes& p : stream)
            all.insert(all.end(), p.begin(), p.end());
        all.resize(std::min(cut, all.size()));
        writeFile(file, all);
        ToolRun r = runTool("--all '" + file + "'");
        EXPECT_EQ(r.status, 0);
        for (const std::string& line : lines(r.out))
            if (haveJsonCheck()) {
                EXPECT_TRUE(isValidJson(line, true)) << line;
            }
        return r;
    };
    // The counts of a PID: its row in the packet table, or in the table of sections.
    auto row = [](const std::string& err, const std::string& start) {
        for (const std::string& line : lines(err))
            if (line.rfind(start, 0) == 0)
                return line.substr(start.size());
        return std::string("none");
    };
    const ToolRun base = runOn(packets);
    const std::vector<std::string> before = lines(base.out);
    ASSERT_EQ(before.size(), 57u);
    std::vector<size_t> sdt, pmt;  // the lines of the SDT and of the PMT on PID 0x0100
    for (size_t i = 0; i < before.size(); ++i) {
        if (before[i].rfind("{\"pid\":17,", 0) == 0)
            sdt.push_back(i);
        if (before[i].rfind("{\"pid\":256,", 0) == 0)
            pmt.push_back(i);
    }
    ASSERT_EQ(sdt.size(), 2u);
    EXPECT_EQ(row(base.err, "0x0011  "),
              "       6         0         0         0         0         0  SDT actual");
    auto without = [&](std::vector<size_t> gone) {
        std::vector<std::string> kept;
        for (size_t i = 0; i < before.size(); ++i)
            if (std::find(gone.begin(), gone.end(), i) == gone.end())
                kept.push_back(before[i]);
        return kept;
    };
    // The first SDT lost: the second, a repeat before, is the new table now.
    std::vector<std::string> firstSdtLost = without({sdt[0]});
    firstSdtLost[sdt[1] - 1] = before[sdt[0]];
    const std::string sdtOnce =
        " 0x42  SDT actual                  1         1         0         0"
        "         0         0         0  -";

    // A packet dropped inside the SDT's three.
    std::vector<Bytes> stream = packets;
    stream.erase(stream.begin() + 19);
    ToolRun r = runOn(stream);
    EXPECT_EQ(lines(r.out), firstSdtLost);
    EXPECT_EQ(row(r.err, "0x0011  "),
              "       5         1         1         0         0         0  SDT actual");
    EXPECT_EQ(row(r.err, "0x0011"), sdtOnce);
    // The report shows the break and the loss in the PID's row.
    const std::string report = testing::TempDir() + "/sarn_damaged.html";
    ASSERT_EQ(runTool("--html '" + report + "' '" + file + "'").status, 0);
    EXPECT_NE(readFile(report).find("<code>0x0011</code> (17)</th><td class=\"n\">5</td><td "
                                    "class=\"n\">5.05 %</td><td class=\"n\">-</td><td "
                                    "class=\"n\"><span class=\"bad\">1</span></td>"),
              std::string::npos);
    std::remove(report.c_str());
    // The same packet sent twice: nothing lost.
    stream = packets;
    stream.insert(stream.begin() + 20, packets[19]);
    r = runOn(stream);
    EXPECT_EQ(r.out, base.out);
    EXPECT_EQ(row(r.err, "0x0011  "),
              "       7         0         0         0         0         0  SDT actual");
    // With transport_error_indicator: skipped, and the section with it.
    stream = packets;
    stream[19][1] |= 0x80;
    r = runOn(stream);
    EXPECT_EQ(lines(r.out), firstSdtLost);
    EXPECT_EQ(row(r.err, "0x0011  "),
              "       6         1         1         1         0         0  SDT actual");
    // The continuity counter jumps by five in the second SDT and goes on from there.
    stream = packets;
    for (size_t i = 62; i < stream.size(); ++i)
        if ((stream[i][1] & 0x1F) == 0 && stream[i][2] == 0x11)
            stream[i][3] =
                static_cast<unsigned char>((stream[i][3] & 0xF0) | ((stream[i][3] + 5) & 0x0F));
    r = runOn(stream);
    EXPECT_EQ(lines(r.out), without({sdt[1]}));
    EXPECT_EQ(row(r.err, "0x0011  "),
              "       6         1         1         0         0         0  SDT actual");
    // A pointer_field past the end of the packet that starts the third PMT.
    stream = packets;
    ASSERT_EQ(stream[16][2], 0x00);
    stream[16][4] = 0xB7;
    r = runOn(stream);
    EXPECT_EQ(lines(r.out), without({pmt[2]}));
    EXPECT_EQ(row(r.err, "0x0100  "),
              "      34         0         1         0         0         0  PMT");
    // A flipped byte: the section fails its CRC, the next copy is the table.
    stream = packets;
    stream[19][60] ^= 0xFF;
    r = runOn(stream);
    std::vector<std::string> crcFailed = before;
    crcFailed[sdt[0]] = lines(r.out).at(sdt[0]);
    crcFailed[sdt[1]] = before[sdt[0]];
    EXPECT_EQ(lines(r.out), crcFailed);
    EXPECT_EQ(crcFailed[sdt[0]].rfind(
                  "{\"pid\":17,\"table_id\":66,\"section_number\":0,\"error\":2566,\"log\":[", 0),
              0u);
    EXPECT_EQ(row(r.err, "0x0011"),
              " 0x42  SDT actual                  2         1         0         1"
              "         0         0         1  -");
    // The end of the input in the middle of the second SDT's second packet.
    r = runOn(packets, 62 * 188 + 100);
    EXPECT_EQ(lines(r.out), std::vector<std::string>(before.begin(), before.begin() + sdt[1]));
    EXPECT_EQ(lines(r.err).at(0),
              "sarn-dump: transport stream of 188-byte packets: 62 packets, 100 bytes skipped, 0 "
              "resyncs");
    EXPECT_EQ(row(r.err, "0x0011  "),
              "       4         0         0         0         0         1  SDT actual");
    std::remove(file.c_str());
}

TEST(SarnDump, OutputSummaryAndTheLibrarysLog) {
    REQUIRE_JSON_CHECK();
    // The crafted stream, then a PAT with a bad CRC, a NIT cut short, after
    // a continuity jump a section that no class takes, and an SDT whose
    // service name holds a double quote, which the library writes as it is;
    // the SDT again, errored and scrambled.
    Bytes badPat = longSection(0x00, 1, 1, {0x00, 0x01, 0xE1, 0x00});
    badPat.back() ^= 1;
    const Bytes sdt = longSection(0x42, 1, 0,
                                  {0x00, 0x01, 0xFF, 0x00, 0x10, 0xFC, 0x80, 0x08, 0x48, 0x06, 0x01,
                                   0x00, 0x03, 'A', '"', 'B'});
    Bytes errored = packet(0x11, 1, sdt), scrambled = packet(0x11, 1, sdt);
    errored[1] |= 0x80;
    scrambled[3] |= 0x80;
    const std::string path = testing::TempDir() + "/sarn_dump_" + std::to_string(getpid()) + ".ts";
    writeFile(path, craftedStream() + packet(0, 3, badPat) +
                        packet(0x10, 0, longSection(0x40, 1, 0, {0xF0, 0x20})) +
                        packet(0x10, 2, longSection(0x41, 2, 0, {0xF0, 0x00, 0xF0, 0x00})) +
                        packet(0x11, 0, sdt) + errored + scrambled);
    const std::string badCrc =
        kHead +
        "2566,\"log\":[{\"priority\":6,\"text\":\"SarnISDBTUtils: TISDBTTable::parse: CRC32  "
        "FAIL! (0x76578E5F != 0x76578E5E). Data may be corrupted!\"}]}\n";
    const std::string nit =
        "{\"pid\":16,\"table_id\":64,\"section_number\":0,\"error\":2563,\"log\":[{\"priority\":5,"
        "\"text\":\"SarnISDBTUtils: TISDBTTable::parse: Longer data length is required: 14 < 16. "
        "Aborting!\"}]}\n";
    const std::string sdtHead = "{\"pid\":17,\"table_id\":66,\"section_number\":0,\"error\":0,";
    const std::string sdtText =
        "transportStreamId\\\":1,\\\"originalNetworkId\\\":1,\\\"services\\\":[{\\\"serviceId\\\":"
        "16,"
        "\\\"eitScheduleFlag\\\":0,\\\"eitPresentFollowingFlag\\\":0,\\\"runningStatus\\\":4,\\\""
        "freeCaMode\\\":0,\\\"serviceDescriptors\\\":[{\\\"name\\\":\\\"serviceDescriptor\\\",\\\""
        "serviceType\\\":1,\\\"serviceProvider\\\":\\\"\\\",\\\"serviceName\\\":\\\"A\\\"B\\\"}]}]"
        "}";
    std::string sdtRaw = sdtText;  // the library's text as it is
    sdtRaw.erase(std::remove(sdtRaw.begin(), sdtRaw.end(), '\\'), sdtRaw.end());

    ToolRun r = runTool("'" + path + "'");
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, kCraftedPat + kCraftedPmt + badCrc + nit + sdtHead + "\"table_text\":\"{\\\"" +
                         sdtText + "\"}\n");
    EXPECT_EQ(r.err,
              "sarn-dump: transport stream of 188-byte packets: 12 packets, 0 bytes skipped, 0 "
              "resyncs\n"
              "pid    table kind                 sections    parsed  repeated   crc_err    failed  "
              "no_class       log  failures by code\n"
              "0x0000 0x00  PAT                         4         1         2         1         0  "
              "       "
              "0         1  -\n"
              "0x0010 0x40  NIT actual                  1         0         0         0         1  "
              "       "
              "0         1  2563:1\n"
              "0x0010 0x41  NIT other                   1         0         0         0         0  "
              "       "
              "1         0  -\n"
              "0x0011 0x42  SDT actual                  1         1         0         0         0  "
              "       "
              "0         0  -\n"
              "0x0100 0x02  PMT                         3         1         2         0         0  "
              "       "
              "0         1  -\n"
              "pid      packets cc_breaks discarded       tei scrambled cut_short  carries\n"
              "0x0000         4         0         0         0         0         0  PAT\n"
              "0x0010         2         1         0         0         0         0  NIT actual, "
              "NIT other\n"
              "0x0011         3         0         0         1         1         0  SDT actual\n"
              "0x0100         3         0         0         0         0         0  PMT\n"
              "sarn-dump: lines logged by the library: 3, 3 of them under \"log\" in the output\n"
              "sarn-dump: 1 tables printed as \"table_text\" (not valid JSON)\n");
    // Filtered out, a line goes; its log lines are still counted.
    r = runTool("--pid 0 --table 0 '" + path + "'");
    EXPECT_EQ(r.out, kCraftedPat + badCrc);
    EXPECT_NE(r.err.find("\nsarn-dump: lines logged by the library: 3, 1 of them under \"log\" in "
                         "the output\n"),
              std::string::npos);
    // --raw --all: the library's text exactly; the repeats logged nothing.
    r = runTool("--raw --all '" + path + "'");
    const std::string repeat = kHead + "2561}\n";
    const std::string pmtRepeat =
        "{\"pid\":256,\"table_id\":2,\"section_number\":0,\"error\":2561}\n";
    EXPECT_EQ(r.out, kCraftedPat + kCraftedPmt + repeat + pmtRepeat + repeat + pmtRepeat + badCrc +
                         nit + sdtHead + "\"table\":{\"" + sdtRaw + "}\n");
    std::remove(path.c_str());

    // The sample from standard input: every PAT, repeats too.
    r = runTool("--pid=0x0000 --table 0 --all --charset latin1 -", kSample);
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(lines(r.out).size(), 40u);
    EXPECT_EQ(lines(r.out)[39], kHead + "2561}");
}

TEST(SarnDump, ProgressBarOnATerminal) {
    // Standard error a terminal, standard output not: a bar while a file is
    // read, drawn at once, then at most every tenth of a second and at the
    // end, and cleared before anything else is written there.
    if (std::system("command -v script >/dev/null 2>&1") != 0)
        GTEST_SKIP() << "no script(1) to give the tool a terminal";
    const std::string path = testing::TempDir() + "/sarn_dump_bar_" + std::to_string(getpid());
    const std::string full = "\r[" + std::string(40, '#') + "] 100%  ";
    for (const auto& c : std::vector<std::pair<size_t, std::string>>{
             {1, full + "0.0/0.0 MB"},
             {2 << 20, "\r[" + std::string(20, '#') + std::string(20, '.') + "]  50%  1.0/2.1 MB" +
                           full + "2.1/2.1 MB"}}) {
        writeFile(path, Bytes(c.first, 0x00));
        const std::string command = "script -qec \"" + std::string(SARN_DUMP_RUNNER) + " '" +
                                    SARN_DUMP_EXE + "' '" + path + "' >/dev/null\" /dev/null >'" +
                                    path + ".out'";
        EXPECT_NE(std::system(command.c_str()), 0);
        EXPECT_EQ(readFile(path + ".out"), c.second + "\r\033[Ksarn-dump: " + path +
                                               ": not a transport stream, a section dump or a "
                                               "section listing\r\n");
    }
    std::remove(path.c_str());
    std::remove((path + ".out").c_str());
}

namespace {

/** sarn-dump on standard input, with the given descriptors as its input and output. */
pid_t startTool(int in, int out, const std::string& errPath) {
    const std::string command =
        "exec " + std::string(SARN_DUMP_RUNNER) + " '" + SARN_DUMP_EXE + "' -";
    const pid_t pid = fork();
    if (pid == 0) {
        dup2(in, STDIN_FILENO);
        dup2(out, STDOUT_FILENO);
        dup2(open(errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644), STDERR_FILENO);
        for (int signal : {SIGINT, SIGTERM, SIGPIPE})
            std::signal(signal, SIG_DFL);
        sigset_t none;
        sigemptyset(&none);
        sigprocmask(SIG_SETMASK, &none, nullptr);
        execl("/bin/sh", "sh", "-c", command.c_str(), static_cast<char*>(nullptr));
        _exit(127);
    }
    return pid;
}

/** What arrives on fd until a line is complete (or, with all, the end), or ten quiet seconds. */
std::string readFrom(int fd, bool all) {
    std::string got;
    char buffer[4096];
    pollfd p{fd, POLLIN, 0};
    ssize_t n = 0;
    while ((all || got.find('\n') == std::string::npos) && poll(&p, 1, 10000) > 0 &&
           (n = read(fd, buffer, sizeof buffer)) > 0)
        got.append(buffer, static_cast<size_t>(n));
    return got;
}

/** The tool's exit status; -1 when it did not exit. */
int waitFor(pid_t pid) {
    int status = 0;
    return waitpid(pid, &status, 0) == pid && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace

TEST(SarnDump, LiveUseLineByLineAndStopSignals) {
    const auto previousSigpipe = std::signal(SIGPIPE, SIG_IGN);
    const std::string base = testing::TempDir() + "/sarn_dump_live_" + std::to_string(getpid());
    const Bytes ts = craftedStream();
    const std::string packets = "sarn-dump: transport stream of 188-byte packets: ";
    for (int stop : {SIGTERM, SIGINT}) {
        SCOPED_TRACE(stop);
        // Part of a stream through a pipe that stays open: the first line
        // comes out at once, not when a buffer fills or the input ends.
        int in[2], out[2];
        ASSERT_EQ(pipe2(in, O_CLOEXEC), 0);
        ASSERT_EQ(pipe2(out, O_CLOEXEC), 0);
        const pid_t pid = startTool(in[0], out[1], base + ".err");
        close(in[0]);
        close(out[1]);
        ASSERT_EQ(write(in[1], ts.data(), 5 * 188), 5 * 188);
        const std::string first = readFrom(out[0], false);
        EXPECT_EQ(first.substr(0, kCraftedPat.size()), kCraftedPat);
        // Stopped: the lines of what was read, the summary, 128 + the signal.
        kill(pid, stop);
        EXPECT_EQ(waitFor(pid), 128 + stop);
        EXPECT_EQ(first + readFrom(out[0], true), kCraftedPat + kCraftedPmt);
        close(in[1]);
        close(out[0]);
        const std::string err = readFile(base + ".err");
        EXPECT_EQ(err.substr(0, err.find(" 0 bytes")), std::string("sarn-dump: stopped by ") +
                                                           (stop == SIGINT ? "SIGINT" : "SIGTERM") +
                                                           "\n" + packets + "5 packets,");
        EXPECT_NE(err.find("\n0x0100 0x02  PMT                         2         1         1"),
                  std::string::npos);
    }
    // A closed output: the summary, and the status of SIGPIPE.
    writeFile(base + ".ts", ts);
    int out[2];
    ASSERT_EQ(pipe2(out, O_CLOEXEC), 0);
    close(out[0]);
    const int in = open((base + ".ts").c_str(), O_RDONLY | O_CLOEXEC);
    const pid_t pid = startTool(in, out[1], base + ".err");
    close(in);
    close(out[1]);
    EXPECT_EQ(waitFor(pid), 128 + SIGPIPE);
    const std::string err = readFile(base + ".err");
    EXPECT_EQ(err.substr(0, err.find(" 0 bytes")),
              "sarn-dump: stopped: the output was closed\n" + packets + "6 packets,");
    std::remove((base + ".ts").c_str());
    std::remove((base + ".err").c_str());
    std::signal(SIGPIPE, previousSigpipe);
}
