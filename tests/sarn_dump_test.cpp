// sarn-dump: text conversion, JSON lines, repeat suppression, input
// recognition, and the tool itself over the bundled sample and the real
// captures.
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
#include <map>
#include <sstream>
#include <string>
#include <vector>

#ifdef SARN_HAVE_RAPIDJSON
#include <rapidjson/document.h>
#include <rapidjson/error/en.h>
#endif

#include "DumpSession.h"
#include "SarnISDBTUtilsVersion.h"
#include "Sections.h"

using namespace sarntool;

namespace {

std::string convert(const TextConverter& c, const std::string& text) {
    std::string out;
    c.append(out, text.data(), text.size());
    return out;
}

Bytes readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return Bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

std::vector<std::string> lines(const std::string& text) {
    std::vector<std::string> out;
    std::istringstream in(text);
    std::string line;
    while (std::getline(in, line))
        out.push_back(line);
    return out;
}

/** One line parsed by a real JSON parser: its four numbers, whether it has a table, its log. */
struct Line {
    bool valid = false;
    unsigned int pid = 0, tableId = 0, sectionNumber = 0, error = 0;
    bool table = false, tableText = false;
    std::vector<std::string> log;  // "<priority> <text>"
};

Line parseLine(const std::string& text) {
    Line l;
#ifdef SARN_HAVE_RAPIDJSON
    rapidjson::Document doc;
    doc.Parse<rapidjson::kParseValidateEncodingFlag>(text.c_str(), text.size());
    if (doc.HasParseError() || !doc.IsObject())
        return l;
    for (const char* key : {"pid", "table_id", "section_number", "error"}) {
        if (!doc.HasMember(key) || !doc[key].IsUint())
            return l;
    }
    l.pid = doc["pid"].GetUint();
    l.tableId = doc["table_id"].GetUint();
    l.sectionNumber = doc["section_number"].GetUint();
    l.error = doc["error"].GetUint();
    l.table = doc.HasMember("table") && doc["table"].IsObject();
    l.tableText = doc.HasMember("table_text") && doc["table_text"].IsString();
    const bool log = doc.HasMember("log");
    if (log) {
        if (!doc["log"].IsArray() || doc["log"].Empty())
            return l;
        for (const auto& entry : doc["log"].GetArray()) {
            if (!entry.IsObject() || entry.MemberCount() != 2 || !entry.HasMember("priority") ||
                !entry["priority"].IsInt() || !entry.HasMember("text") || !entry["text"].IsString())
                return l;
            l.log.push_back(std::to_string(entry["priority"].GetInt()) + " " +
                            entry["text"].GetString());
        }
    }
    l.valid = doc.MemberCount() == 4u + (l.table || l.tableText ? 1u : 0u) + (log ? 1u : 0u);
#else
    (void)text;
#endif
    return l;
}

#ifdef SARN_HAVE_RAPIDJSON
#define REQUIRE_JSON_PARSER() (void)0
#else
#define REQUIRE_JSON_PARSER() GTEST_SKIP() << "built without RapidJSON"
#endif

/** A DumpSession over bytes fed in chunks of the given size; the output as text. */
struct Session {
    char* buffer = nullptr;
    size_t size = 0;
    std::FILE* out = open_memstream(&buffer, &size);
    TextConverter converter;
    DumpSession session;
    explicit Session(const DumpOptions& o = DumpOptions()) : session(o, converter, out) {}
    ~Session() {
        std::fclose(out);
        std::free(buffer);
    }
    std::string run(const Bytes& input, size_t chunk = 1 << 16) {
        for (size_t pos = 0; pos < input.size(); pos += chunk)
            session.feed(input.data() + pos, std::min(chunk, input.size() - pos));
        session.finish();
        std::fflush(out);
        return std::string(buffer, size);
    }
};

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
    const Bytes out = readFile(base + ".out"), err = readFile(base + ".err");
    r.out.assign(out.begin(), out.end());
    r.err.assign(err.begin(), err.end());
    std::remove((base + ".out").c_str());
    std::remove((base + ".err").c_str());
    return r;
}

/** The per-table rows of the summary: (PID << 8 | table_id) -> sections, parsed, repeated, crc,
 * failed, no class. */
std::map<unsigned int, std::vector<unsigned long long>> summaryRows(const std::string& err) {
    std::map<unsigned int, std::vector<unsigned long long>> rows;
    for (const std::string& l : lines(err)) {
        unsigned int pid = 0, tid = 0;
        std::vector<unsigned long long> v(6);
        if (std::sscanf(l.c_str(), "0x%4X 0x%2X %llu %llu %llu %llu %llu %llu", &pid, &tid, &v[0],
                        &v[1], &v[2], &v[3], &v[4], &v[5]) == 8)
            rows[(pid << 8) | tid] = v;
    }
    return rows;
}

void writeFile(const std::string& path, const Bytes& bytes) {
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<const char*>(bytes.data()),
              static_cast<std::streamsize>(bytes.size()));
}

/** A section of up to 183 bytes in a 188-byte packet of its own. */
Bytes packet(unsigned int pid, unsigned int cc, const Bytes& section) {
    Bytes p = {0x47, static_cast<unsigned char>(0x40 | (pid >> 8)),
               static_cast<unsigned char>(pid & 0xFF),
               static_cast<unsigned char>(0x10 | (cc & 0x0F)), 0x00};
    p.insert(p.end(), section.begin(), section.end());
    p.resize(188, 0xFF);
    return p;
}

// A PAT of TS 1 mapping program 1 to the PMT PID 0x0100, and that PMT with
// a digital copy control descriptor cut short (C1 01 20: a bitrate flagged,
// no byte for it), which the library drops with a warning.
const Bytes kPat =
    withCrc({0x00, 0xB0, 0x0D, 0x00, 0x01, 0xC1, 0x00, 0x00, 0x00, 0x01, 0xE1, 0x00});
const Bytes kPmtDroppingADescriptor =
    withCrc({0x02, 0xB0, 0x15, 0x00, 0x01, 0xC1, 0x00, 0x00, 0xE1, 0x11,
             0xF0, 0x03, 0xC1, 0x01, 0x20, 0x1B, 0xE1, 0x11, 0xF0, 0x00});
const std::string kDroppedDescriptorLog =
    "SarnISDBTUtils: TDigitalCopyControlDescriptor::parse: Longer data length is required: 0 < 1. "
    "Aborting!";

/** PAT and PMT, three times. */
Bytes craftedStream() {
    Bytes ts;
    for (unsigned int cc = 0; cc < 3; ++cc) {
        const Bytes pat = packet(0, cc, kPat), pmt = packet(0x100, cc, kPmtDroppingADescriptor);
        ts.insert(ts.end(), pat.begin(), pat.end());
        ts.insert(ts.end(), pmt.begin(), pmt.end());
    }
    return ts;
}

/** The "log" column of the summary row of pid and table_id; -1 when there is none. */
long long logColumn(const std::string& err, unsigned int pid, unsigned int tableId) {
    char head[16];
    std::snprintf(head, sizeof head, "0x%04X 0x%02X", pid, tableId);
    for (const std::string& l : lines(err)) {
        unsigned long long v[7];
        if (l.rfind(head, 0) == 0 &&
            std::sscanf(l.c_str() + 11, "%llu %llu %llu %llu %llu %llu %llu", &v[0], &v[1], &v[2],
                        &v[3], &v[4], &v[5], &v[6]) == 7)
            return static_cast<long long>(v[6]);
    }
    return -1;
}

const std::string kSample = std::string(SARN_SOURCE_DIR) + "/data/sample.ts";
// The first line of the sample: its PAT, as a table, or as text in a build without a JSON check.
const std::string kSamplePatTable =
    "{\"pid\":0,\"table_id\":0,\"section_number\":0,\"error\":0,\"table\":{\"transportStreamId\":"
    "1601,\"programs\":[{\"programNumber\":51264,\"networkPid\":16,\"programMapPid\":256},{"
    "\"programNumber\":51288,\"networkPid\":16,\"programMapPid\":8136}]}}";
const std::string kSamplePat =
    haveJsonCheck()
        ? kSamplePatTable
        : "{\"pid\":0,\"table_id\":0,\"section_number\":0,\"error\":0,\"table_text\":\"{"
          "\\\"transportStreamId\\\":1601,\\\"programs\\\":[{\\\"programNumber\\\":51264,"
          "\\\"networkPid\\\":16,\\\"programMapPid\\\":256},{\\\"programNumber\\\":51288,"
          "\\\"networkPid\\\":16,\\\"programMapPid\\\":8136}]}\"}";

}  // namespace

TEST(SarnDump, TextConversionToUtf8) {
    TextConverter latin9;
    // Brazilian broadcast text: "AÇÃO €" in ISO/IEC 8859-15, a line feed, an
    // ESC, DEL and a C1 control.
    EXPECT_EQ(convert(latin9, "A\xC7\xC3O \xA4\n\x1B\x7F\x85\""),
              "A\xC3\x87\xC3\x83O \xE2\x82\xAC\\n\\u001b\\u007f\\u0085\"");
    EXPECT_EQ(convert(latin9, "\xBD\xBE\xFF\t\r\b\f\x0B"),
              "\xC5\x93\xC5\xB8\xC3\xBF\\t\\r\\b\\f\\u000b");

    TextConverter c;
    std::string message;
    ASSERT_TRUE(c.setCharset("latin1", &message));
    EXPECT_EQ(convert(c, "\xA4\xBD"), "\xC2\xA4\xC2\xBD");
    ASSERT_TRUE(c.setCharset("raw", &message));
    EXPECT_FALSE(c.producesUtf8());
    EXPECT_EQ(convert(c, "\xC7\x85\x01"), "\xC7\x85\\u0001");
    // Other sets through iconv, where the C library has its conversion modules.
    if (c.setCharset("CP1252", &message)) {
        EXPECT_TRUE(c.producesUtf8());
        EXPECT_EQ(convert(c, "\x80\xE9\x81"), "\xE2\x82\xAC\xC3\xA9\xEF\xBF\xBD");
        EXPECT_FALSE(c.setCharset("SHIFT_JIS", &message));
        EXPECT_EQ(message, "character set SHIFT_JIS is not a single-byte set");
    } else {
        EXPECT_EQ(message, "unknown character set CP1252");
    }
    ASSERT_TRUE(c.setCharset("ISO-8859-15", &message));
    EXPECT_EQ(convert(c, "\xA4"), "\xE2\x82\xAC");

    EXPECT_FALSE(c.setCharset("NO-SUCH-SET", &message));
    EXPECT_EQ(message, "unknown character set NO-SUCH-SET");
}

TEST(SarnDump, JsonLinesAreAlwaysValid) {
    TextConverter latin9;
    JsonLineWriter writer(latin9, false);
    std::string out;
    const std::string good = "{\"name\":\"TV INTEGRA\xC7\xC3O\",\"n\":[1,2]}";
    const std::string quirky = "{\"text\":\"a \"quoted\" word\\q\",\"x\":1}";
    const std::string withTab = "{\"text\":\"a\tb\"}";
    writer.append(out, 17, 66, 0, 0, &good);
    writer.append(out, 18, 78, 1, 0, &quirky);
    writer.append(out, 18, 78, 2, 0, &withTab);
    writer.append(out, 0, 0, 0, 2566, nullptr);
    if (haveJsonCheck()) {
        EXPECT_EQ(out,
                  "{\"pid\":17,\"table_id\":66,\"section_number\":0,\"error\":0,\"table\":"
                  "{\"name\":\"TV INTEGRA\xC3\x87\xC3\x83O\",\"n\":[1,2]}}\n"
                  "{\"pid\":18,\"table_id\":78,\"section_number\":1,\"error\":0,\"table_text\":"
                  "\"{\\\"text\\\":\\\"a \\\"quoted\\\" word\\\\q\\\",\\\"x\\\":1}\"}\n"
                  "{\"pid\":18,\"table_id\":78,\"section_number\":2,\"error\":0,\"table\":"
                  "{\"text\":\"a\\tb\"}}\n"
                  "{\"pid\":0,\"table_id\":0,\"section_number\":0,\"error\":2566}\n");
        EXPECT_EQ(writer.textFallbacks(), 1u);
        EXPECT_TRUE(isValidJson("{\"a\":[true,null,-1.5e3]}", true));
        EXPECT_FALSE(isValidJson("{\"a\":1} {}", true));
        EXPECT_FALSE(isValidJson("{\"a\":\"\xC7\"}", true));  // not UTF-8
        EXPECT_TRUE(isValidJson("{\"a\":\"\xC7\"}", false));
        EXPECT_FALSE(isValidJson("", false));
    } else {
        EXPECT_EQ(writer.textFallbacks(), 3u);
    }
    // What the library logged for a section: escaped, converted like the
    // broadcast text; with --raw only escaped.
    const std::vector<LogEntry> logged = {{5, "a \"b\"\\ \x01 \xA4"}, {6, "x"}};
    std::string withLog, rawLog;
    writer.append(withLog, 16, 64, 0, 2568, nullptr, &logged);
    EXPECT_EQ(withLog,
              "{\"pid\":16,\"table_id\":64,\"section_number\":0,\"error\":2568,\"log\":[{"
              "\"priority\":5,\"text\":\"a \\\"b\\\"\\\\ \\u0001 \xE2\x82\xAC\"},"
              "{\"priority\":6,\"text\":\"x\"}]}\n");
    JsonLineWriter(latin9, true).append(rawLog, 16, 64, 0, 2568, nullptr, &logged);
    EXPECT_EQ(rawLog,
              "{\"pid\":16,\"table_id\":64,\"section_number\":0,\"error\":2568,\"log\":[{"
              "\"priority\":5,\"text\":\"a \\\"b\\\"\\\\ \\u0001 \xA4\"},"
              "{\"priority\":6,\"text\":\"x\"}]}\n");
    REQUIRE_JSON_PARSER();
    for (const std::string& l : lines(out))
        EXPECT_TRUE(parseLine(l).valid) << l;
    const Line parsed = parseLine(withLog);
    EXPECT_TRUE(parsed.valid);
    EXPECT_EQ(parsed.log, (std::vector<std::string>{"5 a \"b\"\\ \x01 \xE2\x82\xAC", "6 x"}));

    // --raw: the library's text exactly, whatever it is.
    JsonLineWriter exact(latin9, true);
    out.clear();
    exact.append(out, 18, 78, 1, 0, &quirky);
    EXPECT_EQ(out, "{\"pid\":18,\"table_id\":78,\"section_number\":1,\"error\":0,\"table\":" +
                       quirky + "}\n");
}

TEST(SarnDump, RepeatsAreSuppressedPerSection) {
    SectionDispatch dispatch;
    // PAT of TS 1, version 2, section 0 of 1 and section 1 of 1.
    auto pat = [](unsigned int version, unsigned int number, unsigned int pmt) {
        return withCrc({0x00, 0xB0, 0x0D, 0x00, 0x01,
                        static_cast<unsigned char>(0xC1 | (version << 1)),
                        static_cast<unsigned char>(number), 0x01, 0x00, 0x05, 0xE1,
                        static_cast<unsigned char>(pmt)});
    };
    Bytes s0 = pat(2, 0, 0x00), s1 = pat(2, 1, 0x01), s1b = pat(2, 1, 0x01), s1v3 = pat(3, 1, 0x01);
    auto handle = [&](Bytes& b) {
        return dispatch.handle(0, b.data(), static_cast<unsigned int>(b.size()));
    };
    SectionResult r = handle(s0);
    EXPECT_TRUE(r.known);
    EXPECT_EQ(r.error, 0);
    EXPECT_EQ(r.json,
              "{\"transportStreamId\":1,\"programs\":[{\"programNumber\":5,"
              "\"networkPid\":0,\"programMapPid\":256}]}");
    EXPECT_EQ(handle(s0).error, Sarn::ERROR_TABLE_UNCHANGED);
    // A later section is compared by the tool: no "multi-section" refusal.
    r = handle(s1);
    EXPECT_EQ(r.error, 0);
    EXPECT_EQ(r.sectionNumber, 1u);
    EXPECT_FALSE(r.json.empty());
    r = handle(s1b);
    EXPECT_EQ(r.error, Sarn::ERROR_TABLE_UNCHANGED);
    EXPECT_TRUE(r.json.empty());
    EXPECT_EQ(handle(s1v3).error, 0);
    EXPECT_EQ(handle(s0).error, Sarn::ERROR_TABLE_UNCHANGED);
    // The same section on another PID is another table; a broken one fails.
    Bytes bad = pat(4, 0, 0x00);
    bad.back() ^= 0xFF;
    EXPECT_FALSE(dispatch.handle(0x10, s0.data(), static_cast<unsigned int>(s0.size())).known);
    EXPECT_EQ(handle(bad).error, Sarn::ERROR_CRC32);
    EXPECT_EQ(handle(s0).error, Sarn::ERROR_TABLE_UNCHANGED);
    Bytes tiny = {0x00, 0xB0};
    EXPECT_FALSE(handle(tiny).known);
}

TEST(SarnDump, RecognisesItsInputs) {
    const Bytes ts = readFile(kSample);
    ASSERT_GT(ts.size(), 100000u);
    Session whole, bytewise;
    const std::string out = whole.run(ts);
    EXPECT_EQ(whole.session.format(), DumpSession::Format::TransportStream);
    EXPECT_EQ(bytewise.run(ts, 1), out);  // chunking does not matter
    const std::vector<std::string> printed = lines(out);
    ASSERT_FALSE(printed.empty());
    EXPECT_EQ(printed[0], kSamplePat);
    // 40 PATs, one printed; every section is accounted for.
    const TableCounts& pat = whole.session.tableCounts().at(0);
    EXPECT_EQ(pat.sections, 40u);
    EXPECT_EQ(pat.parsed, 1u);
    EXPECT_EQ(pat.repeated, 39u);
    unsigned long long shown = 0;
    for (const auto& e : whole.session.tableCounts()) {
        const TableCounts& c = e.second;
        EXPECT_EQ(c.sections, c.parsed + c.repeated + c.crcErrors + c.failed + c.noClass);
        shown += c.parsed + c.crcErrors + c.failed;
    }
    EXPECT_EQ(whole.session.linesWritten(), shown);
    EXPECT_EQ(printed.size(), shown);
    EXPECT_EQ(whole.session.tableCounts().at((0x0012 << 8) | 0x50).sections, 2u);  // spans packets
    const TsDemux* demux = whole.session.transportStream();
    ASSERT_NE(demux, nullptr);
    EXPECT_EQ(demux->counters(0x0901).packets, 4u);  // the AIT PID, learnt from the PMT
    EXPECT_EQ(demux->counters(0x0111).packets, 0u);  // video: not followed

    DumpOptions o;
    o.all = true;
    o.pids = {0};
    Session all(o);
    EXPECT_EQ(lines(all.run(ts)).size(), 40u);
    o.pids = {0x10, 0x11};
    o.tables = {0};
    Session none(o);
    EXPECT_EQ(none.run(ts), "");

    // The same sections as a listing and as a dump (PIDs guessed there).
    const Bytes listing = readFile(std::string(SARN_SOURCE_DIR) + "/data/sample-sections.txt");
    Session text;
    const std::vector<std::string> fromListing = lines(text.run(listing, 7));
    EXPECT_EQ(text.session.format(), DumpSession::Format::SectionListing);
    ASSERT_FALSE(fromListing.empty());
    EXPECT_EQ(fromListing[0], kSamplePat);
    Bytes dump;
    for (const std::string& l : lines(std::string(listing.begin(), listing.end()))) {
        const Bytes b = fromHex(l.substr(l.find(' ', l.find("len=")) + 1));
        dump.insert(dump.end(), 3, 0xFF);  // stuffing between sections is allowed
        dump.insert(dump.end(), b.begin(), b.end());
    }
    Session sections;
    const std::vector<std::string> fromDump = lines(sections.run(dump, 5));
    EXPECT_EQ(sections.session.format(), DumpSession::Format::SectionDump);
    EXPECT_EQ(fromDump.size(), fromListing.size());
    EXPECT_EQ(fromDump[0], kSamplePat);
    auto total = [](const Session& x) {
        unsigned long long n = 0;
        for (const auto& e : x.session.tableCounts())
            n += e.second.sections;
        return n;
    };
    EXPECT_EQ(total(sections), lines(std::string(listing.begin(), listing.end())).size());
    EXPECT_EQ(total(sections), total(text));
    EXPECT_EQ(sections.session.tableCounts().at((0x0100 << 8) | 0x02).sections, 1u);  // via the PAT

    Session garbage;
    EXPECT_EQ(garbage.run(Bytes(70000, 0x20)), "");
    EXPECT_EQ(garbage.session.format(), DumpSession::Format::Unrecognised);
    Session empty;
    EXPECT_EQ(empty.run(Bytes()), "");
    EXPECT_EQ(empty.session.format(), DumpSession::Format::Unrecognised);
}

TEST(SarnDump, CommandLine) {
    ToolRun r = runTool("--help");
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out.rfind("usage: sarn-dump [OPTION]... FILE|-\n", 0), 0u);
    for (const char* bad : {"", "--bogus x", "--pid", "--pid 0x2000 x", "--pid 1,,2 x",
                            "--table 256 x", "--charset NO-SUCH-SET x", "a b", "--all=1 x"}) {
        r = runTool(bad);
        EXPECT_EQ(r.status, 2) << bad;
        EXPECT_TRUE(r.out.empty()) << bad;
        EXPECT_NE(r.err.find("Try 'sarn-dump --help'."), std::string::npos) << bad;
    }
    // An option's value is neither the input nor another option.
    const std::string tryHelp = "Try 'sarn-dump --help'.\n";
    r = runTool("--pid capture.ts");
    EXPECT_EQ(r.status, 2);
    EXPECT_EQ(r.err, "sarn-dump: missing value for --pid\n" + tryHelp);
    EXPECT_EQ(runTool("--table --all x").err, "sarn-dump: missing value for --table\n" + tryHelp);
    EXPECT_EQ(runTool("--charset - x").err, "sarn-dump: missing value for --charset\n" + tryHelp);
    EXPECT_EQ(runTool("--pid 12x x").err, "sarn-dump: bad PID list: 12x\n" + tryHelp);

    // The version is the project's.
    r = runTool("--version");
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, std::string("sarn-dump ") + SARN_ISDBT_UTILS_VERSION + "\n");

    r = runTool("/nonexistent/file.ts");
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "sarn-dump: cannot read /nonexistent/file.ts: No such file or directory\n");
    r = runTool("'" + testing::TempDir() + "'");
    EXPECT_EQ(r.status, 1);
    r = runTool("'" + std::string(SARN_SOURCE_DIR) + "/README.md'");
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.err.find("not a transport stream, a section dump or a section listing"),
              std::string::npos);

    // The bundled sample, from a file and from standard input.
    r = runTool("'" + kSample + "'");
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out.substr(0, kSamplePat.size() + 1), kSamplePat + "\n");
    EXPECT_NE(r.err.find("sarn-dump: transport stream of 188-byte packets: 754 packets, 0 bytes "
                         "skipped, 0 resyncs\n"),
              std::string::npos);
    EXPECT_EQ(summaryRows(r.err)[0], (std::vector<unsigned long long>{40, 1, 39, 0, 0, 0}));
    // The sample's one damaged section (the extended schedule EIT) is the only
    // line with the library's log, and the log goes nowhere else.
    std::vector<std::string> logged;
    for (const std::string& l : lines(r.out))
        if (l.find("\"log\":") != std::string::npos)
            logged.push_back(l);
    ASSERT_EQ(logged.size(), 1u);
    EXPECT_EQ(logged[0].substr(0, 50),
              "{\"pid\":18,\"table_id\":88,\"section_number\":0,\"error\"");
    const std::string damaged =
        ",\"log\":[{\"priority\":5,\"text\":\"SarnISDBTUtils: TExtendedEventDescriptorItem::"
        "parse Declared description length is larger than the buffer size (97 > 25)\"}]}";
    EXPECT_EQ(logged[0].substr(logged[0].size() - std::min(logged[0].size(), damaged.size())),
              damaged);
    EXPECT_EQ(r.err.find("TExtendedEventDescriptorItem"), std::string::npos);
    EXPECT_NE(r.err.find("sarn-dump: lines logged by the library: 1, 1 of them under \"log\""),
              std::string::npos);
    ToolRun piped = runTool("--pid=0x0000 --table 0 --all -", kSample);
    EXPECT_EQ(piped.status, 0);
    EXPECT_EQ(lines(piped.out).size(), 40u);
    EXPECT_EQ(lines(piped.out)[1],
              "{\"pid\":0,\"table_id\":0,\"section_number\":0,\"error\":2561}");
    r = runTool("--raw --charset raw '" + kSample + "'");
    EXPECT_EQ(r.out.substr(0, kSamplePatTable.size()), kSamplePatTable);

    REQUIRE_JSON_PARSER();
    for (const std::string& l : lines(runTool("--all '" + kSample + "'").out))
        EXPECT_TRUE(parseLine(l).valid) << l;
}

namespace {

// An independent count of the sections in a capture, the plain way: per
// PID, payloads concatenated from the first unit start on and walked by
// section_length. Good enough for clean captures.
std::map<unsigned int, Bytes> payloadStreams(const Bytes& file, size_t size) {
    std::map<unsigned int, Bytes> streams;
    for (size_t off = 0; off + 188 <= file.size(); off += size) {
        const unsigned char* p = &file[off];
        const unsigned int pid = ((p[1] & 0x1F) << 8) | p[2];
        if (p[0] != 0x47 || (p[1] & 0x80) || (p[3] & 0xC0) || !(p[3] & 0x10))
            continue;
        size_t start = (p[3] & 0x20) ? 5 + p[4] : 4;
        if (start >= 188)
            continue;
        const bool begun = streams.count(pid) > 0;
        if (p[1] & 0x40)
            start += begun ? 1 : 1 + p[start];
        else if (!begun)
            continue;
        Bytes& s = streams[pid];
        if (start < 188)
            s.insert(s.end(), p + start, p + 188);
    }
    return streams;
}

std::vector<Bytes> walkSections(const Bytes& stream) {
    std::vector<Bytes> out;
    size_t pos = 0;
    while (pos + 3 <= stream.size()) {
        if (stream[pos] == 0xFF) {
            ++pos;
            continue;
        }
        const size_t length = 3 + (((stream[pos + 1] & 0x0F) << 8) | stream[pos + 2]);
        if (pos + length > stream.size())
            break;
        out.emplace_back(stream.begin() + static_cast<std::ptrdiff_t>(pos),
                         stream.begin() + static_cast<std::ptrdiff_t>(pos + length));
        pos += length;
    }
    return out;
}

bool crcOk(const Bytes& s) {
    return referenceCrc32(s.data(), s.size()) == 0;
}

std::map<unsigned int, unsigned long long> referenceCounts(const Bytes& file) {
    size_t size = 0;
    for (size_t s : {188, 204}) {
        bool inStep = true;
        for (size_t k = 0; k < 10 && k * s < file.size(); ++k)
            inStep = inStep && file[k * s] == 0x47;
        if (inStep && size == 0)
            size = s;
    }
    auto streams = payloadStreams(file, size);
    std::vector<unsigned int> pids = {0x00, 0x10, 0x11, 0x12, 0x14, 0x23, 0x26, 0x27, 0x28};
    std::vector<unsigned int> pmts;
    for (const Bytes& s : walkSections(streams[0])) {
        for (size_t i = 8; s[0] == 0 && crcOk(s) && i + 4 <= s.size() - 4; i += 4)
            (((s[i] << 8) | s[i + 1]) ? pmts : pids).push_back(((s[i + 2] & 0x1F) << 8) | s[i + 3]);
    }
    for (unsigned int pmt : pmts) {
        pids.push_back(pmt);
        for (const Bytes& s : walkSections(streams[pmt])) {
            if (s[0] != 0x02 || !crcOk(s))
                continue;
            for (size_t i = 12 + (((s[10] & 0x0F) << 8) | s[11]); i + 5 <= s.size() - 4;
                 i += 5 + (((s[i + 3] & 0x0F) << 8) | s[i + 4])) {
                if (s[i] == 0x05 || (s[i] >= 0x0B && s[i] <= 0x0D))
                    pids.push_back(((s[i + 1] & 0x1F) << 8) | s[i + 2]);
            }
        }
    }
    std::map<unsigned int, unsigned long long> counts;
    std::sort(pids.begin(), pids.end());
    pids.erase(std::unique(pids.begin(), pids.end()), pids.end());
    for (unsigned int pid : pids) {
        for (const Bytes& s : walkSections(streams[pid]))
            ++counts[(pid << 8) | s[0]];
    }
    return counts;
}

}  // namespace

TEST(SarnDump, RealCapturesGiveValidLinesAndEverySection) {
    const std::string dir = std::string(SARN_SHARED_DIR) + "/captures";
    if (capturesDir().empty())
        GTEST_SKIP() << "no captures in " << dir;
    REQUIRE_JSON_PARSER();
    int files = 0;
    for (const char* name :
         {"br-isdbtb-tv-integracao-rs204.ts", "isdbtb-lab-oneseg-mux.ts", "jp-isdbs-bs-excerpt.ts",
          "jp-isdbt-nit-1.ts", "jp-isdbt-nit-2.ts", "br-isdbtb-tv-integracao.tables.bin",
          "jp-isdb-cable-swdl.tables.bin", "jp-isdbt-nhk-akita.tables.bin",
          "jp-isdbt-nhk-akita-tot.tables.bin", "dvb-mhp-ait-tot-excerpt.ts"}) {
        SCOPED_TRACE(name);
        const std::string path = dir + "/" + name;
        const Bytes file = readFile(path);
        ASSERT_FALSE(file.empty());
        ++files;
        const ToolRun r = runTool("--all '" + path + "'");
        EXPECT_EQ(r.status, 0);
        const auto rows = summaryRows(r.err);
        ASSERT_FALSE(rows.empty()) << r.err;

        // Every line is JSON, and --all prints one line per section that a
        // table class of the library takes.
        std::map<unsigned int, unsigned long long> printed;
        for (const std::string& l : lines(r.out)) {
            const Line line = parseLine(l);
            EXPECT_TRUE(line.valid) << l;
            EXPECT_EQ(line.table || line.tableText, line.error == 0) << l;
            ++printed[(line.pid << 8) | line.tableId];
        }
        std::map<unsigned int, unsigned long long> sections, known;
        for (const auto& row : rows) {
            sections[row.first] = row.second[0];
            if (row.second[0] > row.second[5])
                known[row.first] = row.second[0] - row.second[5];
            EXPECT_EQ(row.second[3], 0u) << "CRC errors";
            // The one failing table of the captures: the Italian AIT whose
            // application comes over the interaction channel, twice in the stream.
            const bool interactionAit = row.first == ((0x1EC5u << 8) | 0x74);
            EXPECT_EQ(row.second[4], interactionAit ? 2u : 0u) << "failed sections";
        }
        EXPECT_EQ(printed, known);

        // The section counts against an independent count.
        const std::string n = name;
        if (n.size() > 4 && n.compare(n.size() - 4, 4, ".bin") == 0) {
            std::map<unsigned int, unsigned long long> byTable, expected;
            for (const auto& s : sections)
                byTable[s.first & 0xFF] += s.second;
            for (const Bytes& s : walkSections(file))
                ++expected[s[0]];
            EXPECT_EQ(byTable, expected);
        } else {
            EXPECT_EQ(sections, referenceCounts(file));
        }
    }
    EXPECT_EQ(files, 10);
}

TEST(SarnDump, NoStreamFoundAndLeadingJunk) {
    // One rule for an input in which nothing is found: empty or megabytes
    // of zeros, it is refused the same way.
    Session empty, zeros;
    EXPECT_EQ(empty.run(Bytes()), "");
    EXPECT_EQ(empty.session.format(), DumpSession::Format::Unrecognised);
    EXPECT_EQ(zeros.run(Bytes(3 << 20, 0x00), 1 << 20), "");
    EXPECT_EQ(zeros.session.format(), DumpSession::Format::Unrecognised);
    const std::string base = testing::TempDir() + "/sarn_dump_input_" + std::to_string(getpid());
    writeFile(base + ".empty", Bytes());
    writeFile(base + ".zeros", Bytes(3 << 20, 0x00));
    for (const char* kind : {".empty", ".zeros"}) {
        const ToolRun r = runTool("-", base + kind);
        EXPECT_EQ(r.status, 1) << kind;
        EXPECT_EQ(r.out, "") << kind;
        EXPECT_EQ(r.err,
                  "sarn-dump: -: not a transport stream, a section dump or a section listing\n")
            << kind;
        std::remove((base + kind).c_str());
    }

    // Packets after more than a megabyte of junk (sync bytes here and there
    // in it) are found, fed as the tool reads.
    Bytes junk(1536 * 1024, 0x00);
    for (size_t i = 0; i < junk.size(); i += 1001)
        junk[i] = 0x47;
    const Bytes ts = craftedStream();
    Bytes input = junk;
    input.insert(input.end(), ts.begin(), ts.end());
    Session late;
    const std::vector<std::string> printed = lines(late.run(input, 1 << 20));
    EXPECT_EQ(late.session.format(), DumpSession::Format::TransportStream);
    ASSERT_EQ(printed.size(), 2u);
    EXPECT_EQ(printed[0].rfind("{\"pid\":0,\"table_id\":0,\"section_number\":0,\"error\":0,", 0),
              0u);
    ASSERT_NE(late.session.transportStream(), nullptr);
    EXPECT_EQ(late.session.transportStream()->skippedBytes(), junk.size());
    EXPECT_EQ(late.session.tableCounts().at(0).sections, 3u);
}

TEST(SarnDump, LibraryLogGoesIntoTheSectionLine) {
    const std::string path =
        testing::TempDir() + "/sarn_dump_log_" + std::to_string(getpid()) + ".ts";
    writeFile(path, craftedStream());
    const std::string tail =
        ",\"log\":[{\"priority\":5,\"text\":\"" + kDroppedDescriptorLog + "\"}]}";

    // The PMT's line carries the warning; the repeats of the PMT are not
    // parsed again, so they log nothing.
    ToolRun r = runTool("'" + path + "'");
    EXPECT_EQ(r.status, 0);
    std::vector<std::string> printed = lines(r.out);
    ASSERT_EQ(printed.size(), 2u);
    EXPECT_EQ(printed[0].find("\"log\""), std::string::npos);
    ASSERT_GT(printed[1].size(), tail.size());
    EXPECT_EQ(printed[1].rfind("{\"pid\":256,\"table_id\":2,\"section_number\":0,\"error\":0,", 0),
              0u);
    EXPECT_EQ(printed[1].substr(printed[1].size() - tail.size()), tail);
    // Nothing of it on standard error but the counts.
    EXPECT_EQ(r.err.find("TDigitalCopyControlDescriptor"), std::string::npos) << r.err;
    EXPECT_EQ(logColumn(r.err, 0x100, 0x02), 1);
    EXPECT_EQ(logColumn(r.err, 0x000, 0x00), 0);
    EXPECT_NE(r.err.find("\nsarn-dump: lines logged by the library: 1, 1 of them under \"log\" in "
                         "the output\n"),
              std::string::npos)
        << r.err;

    // Filtered out, the line goes, the count stays.
    r = runTool("--pid 0 '" + path + "'");
    EXPECT_EQ(r.out.find("\"log\""), std::string::npos);
    EXPECT_EQ(logColumn(r.err, 0x100, 0x02), 1);
    EXPECT_NE(r.err.find("lines logged by the library: 1, 0 of them"), std::string::npos);

    // --raw keeps it, and --all shows that the repeats logged nothing.
    const std::string pmtLine = printed[1];
    r = runTool("--raw --all '" + path + "'");
    printed = lines(r.out);
    ASSERT_EQ(printed.size(), 6u);
    EXPECT_EQ(printed[1].substr(printed[1].size() - tail.size()), tail);
    EXPECT_EQ(printed[3], "{\"pid\":256,\"table_id\":2,\"section_number\":0,\"error\":2561}");
    std::remove(path.c_str());
    REQUIRE_JSON_PARSER();
    const Line line = parseLine(pmtLine);
    EXPECT_TRUE(line.valid);
    EXPECT_TRUE(line.table);
    EXPECT_EQ(line.log, std::vector<std::string>{"5 " + kDroppedDescriptorLog});
}

namespace {

/** sarn-dump on standard input, with the given descriptors as its input and output. */
pid_t startTool(int in, int out, const std::string& errPath) {
    const std::string command =
        "exec " + std::string(SARN_DUMP_RUNNER) + " '" + SARN_DUMP_EXE + "' -";
    const pid_t pid = fork();
    if (pid == 0) {
        const int err = open(errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        dup2(in, STDIN_FILENO);
        dup2(out, STDOUT_FILENO);
        dup2(err, STDERR_FILENO);
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

/** What arrives on fd until a line is complete, the end, or ten seconds without data. */
std::string readLine(int fd) {
    std::string got;
    while (got.find('\n') == std::string::npos) {
        pollfd p{fd, POLLIN, 0};
        char buffer[4096];
        if (poll(&p, 1, 10000) <= 0)
            break;
        const ssize_t n = read(fd, buffer, sizeof buffer);
        if (n <= 0)
            break;
        got.append(buffer, static_cast<size_t>(n));
    }
    return got;
}

std::string readAll(int fd) {
    std::string got, more;
    while (!(more = readLine(fd)).empty())
        got += more;
    return got;
}

}  // namespace

TEST(SarnDump, LiveUseLineByLineAndStopSignals) {
    const auto previousSigpipe = std::signal(SIGPIPE, SIG_IGN);
    const std::string base = testing::TempDir() + "/sarn_dump_live_" + std::to_string(getpid());
    const Bytes ts = craftedStream();
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
        std::string got = readLine(out[0]);
        EXPECT_NE(got.find('\n'), std::string::npos) << "no line before the end of the input";
        // Stopped: the lines of what was read, the summary, 128 + the signal.
        kill(pid, stop);
        int status = 0;
        ASSERT_EQ(waitpid(pid, &status, 0), pid);
        ASSERT_TRUE(WIFEXITED(status));
        EXPECT_EQ(WEXITSTATUS(status), 128 + stop);
        got += readAll(out[0]);
        const std::vector<std::string> printed = lines(got);
        ASSERT_EQ(printed.size(), 2u) << got;  // the PAT, then the PMT with its log
        EXPECT_EQ(got.back(), '\n');
        EXPECT_EQ(
            printed[0].rfind("{\"pid\":0,\"table_id\":0,\"section_number\":0,\"error\":0,", 0), 0u);
        EXPECT_NE(printed[1].find(",\"log\":[{\"priority\":5,"), std::string::npos);
        close(in[1]);
        close(out[0]);
        const Bytes errBytes = readFile(base + ".err");
        const std::string err(errBytes.begin(), errBytes.end());
        EXPECT_EQ(err.rfind(std::string("sarn-dump: stopped by ") +
                                (stop == SIGINT ? "SIGINT" : "SIGTERM") +
                                "\nsarn-dump: transport stream of 188-byte packets: 5 packets",
                            0),
                  0u)
            << err;
        EXPECT_EQ(summaryRows(err)[0], (std::vector<unsigned long long>{3, 1, 2, 0, 0, 0}));
    }

    // A closed output: the summary, and the status of SIGPIPE.
    const std::string path = base + ".ts";
    writeFile(path, ts);
    int out[2];
    ASSERT_EQ(pipe2(out, O_CLOEXEC), 0);
    close(out[0]);
    const int in = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_GE(in, 0);
    const pid_t pid = startTool(in, out[1], base + ".err");
    close(in);
    close(out[1]);
    int status = 0;
    ASSERT_EQ(waitpid(pid, &status, 0), pid);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 128 + SIGPIPE);
    const Bytes errBytes = readFile(base + ".err");
    const std::string err(errBytes.begin(), errBytes.end());
    EXPECT_EQ(err.rfind("sarn-dump: stopped: the output was closed\nsarn-dump: transport stream of "
                        "188-byte packets: 6 packets",
                        0),
              0u)
        << err;
    std::remove(path.c_str());
    std::remove((base + ".err").c_str());
    std::signal(SIGPIPE, previousSigpipe);
}
