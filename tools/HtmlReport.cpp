#include "HtmlReport.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <map>
#include <set>

#ifdef SARN_HAVE_RAPIDJSON
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>
#endif

#include "Names.h"

namespace sarntool {

void ReportCollector::onLine(unsigned int pid, unsigned int tableId, unsigned int sectionNumber,
                             unsigned int error, const std::string* table,
                             const std::vector<LogEntry>& log) {
    lines.push_back({pid, tableId, sectionNumber, error, table != nullptr,
                     table != nullptr ? *table : std::string(), log});
}

namespace {

// ---------------------------------------------------------------------------
// Small HTML helpers
// ---------------------------------------------------------------------------
std::string esc(const std::string& utf8) {
    std::string out;
    appendMarkupEscaped(out, utf8);
    return out;
}

/** Broadcast text, converted and escaped. */
std::string escText(const TextConverter& text, const std::string& bytes) {
    std::string utf8;
    text.appendPlain(utf8, bytes);
    return esc(utf8);
}

std::string num(unsigned long long v) {
    return std::to_string(v);
}

std::string fixed(double v, int places) {
    char buf[48];
    std::snprintf(buf, sizeof buf, "%.*f", places, v);
    return buf;
}

std::string hexAndDecimal(unsigned int v, int digits) {
    return "<code>" + names::hex(v, digits) + "</code> (" + num(v) + ")";
}

/** Wall-clock time of seconds (counted as if UTC): "YYYY-MM-DD HH:MM". */
std::string clock(long long seconds, bool withDate) {
    const std::time_t t = static_cast<std::time_t>(seconds);
    std::tm tm{};
    gmtime_r(&t, &tm);
    char buf[64];
    if (withDate)
        std::snprintf(buf, sizeof buf, "%04d-%02d-%02d %02d:%02d", tm.tm_year + 1900, tm.tm_mon + 1,
                      tm.tm_mday, tm.tm_hour, tm.tm_min);
    else
        std::snprintf(buf, sizeof buf, "%02d:%02d", tm.tm_hour, tm.tm_min);
    return buf;
}

const char kStyle[] = R"(
:root { --fg: #1b1b1b; --bg: #ffffff; --muted: #555; --line: #c8c8c8; --accent: #0b5394;
        --warn-bg: #fff4ce; --warn: #7a5200; --err-bg: #fde7e9; --err: #a4262c; }
* { box-sizing: border-box; }
[hidden] { display: none !important; }
body { font: 1rem/1.5 system-ui, -apple-system, "Segoe UI", Roboto, sans-serif; color: var(--fg);
       background: var(--bg); margin: 0; }
header, main { padding: 0 1rem; max-width: 90rem; margin: 0 auto; }
h1 { font-size: 1.6rem; margin: 1rem 0 .25rem; }
h2 { font-size: 1.3rem; border-bottom: 2px solid var(--accent); padding-bottom: .2rem; margin-top: 2rem; }
h3 { font-size: 1.1rem; }
a { color: var(--accent); }
a:focus, summary:focus, select:focus, button:focus { outline: 3px solid #f5a623; outline-offset: 2px; }
.skip { position: absolute; left: -999rem; }
.skip:focus { left: 1rem; top: 1rem; background: var(--bg); padding: .5rem; z-index: 10; }
nav ul { list-style: none; display: flex; flex-wrap: wrap; gap: 1rem; padding: 0; margin: .5rem 0; }
.scroll { overflow-x: auto; }
table { border-collapse: collapse; margin: .5rem 0 1rem; }
th, td { border: 1px solid var(--line); padding: .2rem .5rem; text-align: left; vertical-align: top; }
th { background: #eef3f8; }
#services-table td ul { margin: 0; padding-left: 1rem; min-width: 16rem; }
th[scope="row"] { white-space: nowrap; }
td.n { text-align: right; font-variant-numeric: tabular-nums; white-space: nowrap; }
dl.facts { display: grid; grid-template-columns: max-content 1fr; gap: .2rem 1rem; }
dl.facts dt { font-weight: 600; }
dl.facts dd { margin: 0; }
code { font-family: ui-monospace, "DejaVu Sans Mono", monospace; font-size: .95em; }
.bad { color: var(--err); font-weight: 600; }
figure { margin: 1rem 0; }
svg.chart { width: 100%; max-width: 60rem; height: auto; border: 1px solid var(--line); }
ul.legend { list-style: none; padding: 0; display: flex; flex-wrap: wrap; gap: .5rem 1.5rem; }
.swatch { display: inline-block; width: 1.5rem; height: .5rem; margin-right: .4rem; vertical-align: middle; }
details.section { border: 1px solid var(--line); border-radius: 4px; margin: .3rem 0; }
details.section > summary { padding: .3rem .5rem; cursor: pointer; }
details.section[open] > summary { background: #eef3f8; }
details.section > div { padding: .3rem .8rem .6rem; }
ul.tree, ul.tree ul { list-style: none; margin: 0; padding-left: 1.2rem; }
ul.tree { padding-left: 0; }
ul.tree summary { cursor: pointer; }
.k { color: #6b2c91; }
.s { color: #0a6b2c; }
.num { color: #0b5394; }
.lit { color: #a4262c; }
ul.log { list-style: none; padding: 0; margin: .3rem 0; }
ul.log li { padding: .2rem .5rem; border-left: 4px solid var(--warn); background: var(--warn-bg); margin: .2rem 0; }
ul.log li.error { border-color: var(--err); background: var(--err-bg); }
.flag { font-size: .85em; padding: 0 .4rem; border-radius: 3px; background: var(--warn-bg); color: var(--warn); }
.flag.error { background: var(--err-bg); color: var(--err); }
form.filters { display: flex; flex-wrap: wrap; gap: 1rem; align-items: end; margin: .5rem 0; }
form.filters label { display: flex; flex-direction: column; font-weight: 600; }
select { font: inherit; padding: .2rem; }
.guide { position: relative; min-width: 48rem; }
.guide .row { display: grid; grid-template-columns: 12rem 1fr; border-bottom: 1px solid var(--line); }
.guide .svc { padding: .4rem; font-weight: 600; }
.guide .track { position: relative; min-height: 3.2rem; }
.guide .axis .track { min-height: 1.6rem; }
.guide .tick { position: absolute; top: 0; font-size: .8rem; color: var(--muted);
               border-left: 1px solid var(--line); padding-left: .2rem; white-space: nowrap; }
details.ev { position: absolute; top: .2rem; bottom: .2rem; overflow: hidden;
             background: #e8f0fa; border: 1px solid #9db7d6; border-radius: 3px; }
details.ev > summary { padding: .1rem .3rem; font-size: .85rem; cursor: pointer; white-space: nowrap;
                       overflow: hidden; text-overflow: ellipsis; }
details.ev[open] { overflow: visible; z-index: 5; bottom: auto; min-width: 18rem; background: #fff;
                   box-shadow: 0 2px 8px rgba(0,0,0,.3); }
details.ev .info { padding: .3rem .5rem; font-size: .9rem; }
.muted { color: var(--muted); }
)";

const char kScript[] = R"(
(function () {
  var form = document.getElementById('filters');
  if (!form) return;
  form.hidden = false;
  var pid = document.getElementById('filter-pid');
  var table = document.getElementById('filter-table');
  var count = document.getElementById('filter-count');
  function apply() {
    var shown = 0;
    document.querySelectorAll('details.section').forEach(function (d) {
      var ok = (pid.value === '' || d.dataset.pid === pid.value) &&
               (table.value === '' || d.dataset.table === table.value);
      d.hidden = !ok;
      if (ok) shown++;
    });
    count.textContent = shown + ' shown';
  }
  pid.addEventListener('change', apply);
  table.addEventListener('change', apply);
  apply();
})();
)";

// ---------------------------------------------------------------------------
// The decoded tree of a table: the JSON the tool prints, as nested lists
// with a <details> for each object and array (no script needed).
// ---------------------------------------------------------------------------
#ifdef SARN_HAVE_RAPIDJSON
class TreeWriter {
  public:
    explicit TreeWriter(std::string& out) : out(out) {}

    bool Null() { return scalar("lit", "null"); }
    bool Bool(bool b) { return scalar("lit", b ? "true" : "false"); }
    bool Int(int) { return true; }
    bool Uint(unsigned) { return true; }
    bool Int64(int64_t) { return true; }
    bool Uint64(uint64_t) { return true; }
    bool Double(double) { return true; }
    bool RawNumber(const char* s, rapidjson::SizeType n, bool) {
        return scalar("num", std::string(s, n));
    }
    bool String(const char* s, rapidjson::SizeType n, bool) {
        return scalar("s", "\"" + esc(std::string(s, n)) + "\"", false);
    }
    bool Key(const char* s, rapidjson::SizeType n, bool) {
        key = std::string(s, n);
        return true;
    }
    bool StartObject() { return open("{\xE2\x80\xA6}"); }
    bool EndObject(rapidjson::SizeType) { return close(); }
    bool StartArray() { return open("[\xE2\x80\xA6]"); }
    bool EndArray(rapidjson::SizeType) { return close(); }

  private:
    struct Level {
        bool array;
        unsigned int index;
    };
    std::string label() {
        if (levels.empty())
            return "";
        Level& l = levels.back();
        if (l.array)
            return "<span class=\"k\">[" + num(l.index++) + "]</span> ";
        return "<span class=\"k\">" + esc(key) + "</span>: ";
    }
    bool scalar(const char* cls, const std::string& text, bool escape = true) {
        out += "<li>" + label() + "<span class=\"" + cls + "\">" + (escape ? esc(text) : text) +
               "</span></li>";
        return true;
    }
    bool open(const char* marker) {
        const bool root = levels.empty();
        if (root)
            out += "<ul class=\"tree\">";
        else
            out += "<li><details><summary>" + label() + "<span class=\"muted\">" + marker +
                   "</span></summary><ul>";
        levels.push_back({marker[0] == '[', 0});
        return true;
    }
    bool close() {
        levels.pop_back();
        out += levels.empty() ? "</ul>" : "</ul></details></li>";
        return true;
    }

    std::string& out;
    std::vector<Level> levels;
    std::string key;
};
#endif

/** The tree of a table's JSON text (UTF-8), or the text itself where it is not JSON. */
void appendTree(std::string& out, const std::string& json) {
#ifdef SARN_HAVE_RAPIDJSON
    if (isValidJson(json, true)) {
        std::string tree;
        TreeWriter writer(tree);
        rapidjson::MemoryStream in(json.data(), json.size());
        rapidjson::Reader reader;
        constexpr unsigned int flags =
            rapidjson::kParseIterativeFlag | rapidjson::kParseNumbersAsStringsFlag;
        if (!reader.Parse<flags>(in, writer).IsError()) {
            out += tree;
            return;
        }
    }
#endif
    out += "<pre>" + esc(json) + "</pre>";
}

// ---------------------------------------------------------------------------
// Sections of the page
// ---------------------------------------------------------------------------
struct Totals {
    unsigned long long sections = 0, tables = 0, errors = 0;
};

Totals totals(const DumpSession& session) {
    Totals t;
    for (const auto& entry : session.tableCounts()) {
        t.sections += entry.second.sections;
        t.tables += entry.second.parsed;
        t.errors += entry.second.crcErrors + entry.second.failed;
    }
    return t;
}

const TransportStreamEntry* ownTransportStream(const Catalogue& c) {
    const auto& all = c.network().transportStreams;
    for (const TransportStreamEntry& ts : all)
        if (static_cast<int>(ts.transportStreamId) == c.transportStreamId())
            return &ts;
    return all.empty() ? nullptr : &all.front();
}

const char* formatName(DumpSession::Format f) {
    switch (f) {
        case DumpSession::Format::TransportStream:
            return "transport stream";
        case DumpSession::Format::SectionDump:
            return "section dump";
        case DumpSession::Format::SectionListing:
            return "section listing";
        default:
            return "not recognised";
    }
}

void overview(std::string& out, const std::string& title, const DumpSession& session,
              const ReportCollector& r, const TextConverter& text) {
    const Totals t = totals(session);
    const Catalogue& c = r.catalogue;
    out +=
        "<section id=\"overview\" aria-labelledby=\"h-overview\"><h2 id=\"h-overview\">"
        "Overview</h2><dl class=\"facts\">";
    auto fact = [&](const std::string& name, const std::string& value) {
        out += "<dt>" + name + "</dt><dd>" + value + "</dd>";
    };
    fact("File", esc(title));
    const TsDemux* ts = session.transportStream();
    if (ts != nullptr) {
        fact("Input", "transport stream of " + num(ts->packetSize()) + "-byte packets, " +
                          num(ts->packetCount()) + " packets");
    } else {
        fact("Input", formatName(session.format()));
    }
    if (r.packets.clockPid() >= 0 && r.packets.duration() > 0)
        fact("Duration", fixed(r.packets.duration(), 2) + " s (PCR of PID " +
                             hexAndDecimal(static_cast<unsigned int>(r.packets.clockPid()), 4) +
                             ")");
    else
        fact("Duration", "<span class=\"muted\">unknown (no PCR)</span>");
    const NetworkEntry& n = c.network();
    fact("Network", n.seen ? hexAndDecimal(n.networkId, 4) + " " + escText(text, n.name)
                           : "<span class=\"muted\">no NIT</span>");
    fact("Transport stream",
         c.transportStreamId() >= 0
             ? hexAndDecimal(static_cast<unsigned int>(c.transportStreamId()), 4)
             : "<span class=\"muted\">unknown</span>");
    if (const TransportStreamEntry* own = ownTransportStream(c)) {
        if (own->haveDelivery) {
            std::string d;
            for (unsigned int f : own->frequencies)
                d += fixed(f / 7.0, 3) + " MHz, ";
            d += std::string(names::transmissionMode(own->transmissionMode)) + ", guard interval " +
                 names::guardInterval(own->guardInterval);
            fact("Delivery", d);
        }
    }
    fact("Sections", num(t.sections));
    fact("Tables", num(t.tables));
    fact("Errors", t.errors == 0 ? "0" : "<span class=\"bad\">" + num(t.errors) + "</span>");
    fact("Log lines", num(session.logLines()));
    out += "</dl></section>\n";
}

void services(std::string& out, const ReportCollector& r, const TextConverter& text) {
    const Catalogue& c = r.catalogue;
    out +=
        "<section id=\"services\" aria-labelledby=\"h-services\"><h2 id=\"h-services\">"
        "Services</h2>";
    const std::vector<unsigned int> ids = c.serviceIds();
    if (ids.empty()) {
        out += "<p class=\"muted\">No PAT or SDT in this input.</p></section>\n";
        return;
    }
    out +=
        "<div class=\"scroll\"><table id=\"services-table\"><caption class=\"muted\">"
        "From the PAT, PMTs, SDT, NIT and AITs</caption><thead><tr><th scope=\"col\">"
        "Service</th><th scope=\"col\">Name</th><th scope=\"col\">Provider</th><th "
        "scope=\"col\">Type</th><th scope=\"col\">Status</th><th scope=\"col\">One-seg</th>"
        "<th scope=\"col\">PMT PID</th><th scope=\"col\">PCR PID</th><th scope=\"col\">"
        "Streams</th><th scope=\"col\">Ginga applications</th></tr></thead><tbody>";
    for (unsigned int id : ids) {
        auto s = c.services().find(id);
        const ServiceEntry* sv = s != c.services().end() && s->second.inSdt ? &s->second : nullptr;
        auto p = c.programs().find(id);
        const ProgramEntry* pg = p != c.programs().end() ? &p->second : nullptr;
        out += "<tr><th scope=\"row\">" + hexAndDecimal(id, 4) + "</th><td>" +
               (sv ? escText(text, sv->name) : "-") + "</td><td>" +
               (sv ? escText(text, sv->provider) : "-") + "</td><td>" +
               (sv ? "<code>" + names::hex(sv->type, 2) + "</code> " +
                         esc(names::serviceType(sv->type))
                   : "-") +
               "</td><td>" + (sv ? esc(names::runningStatus(sv->runningStatus)) : "-") +
               "</td><td>" + (c.oneSegment(id) ? "yes" : "no") + "</td><td>" +
               (pg ? "<code>" + names::hex(pg->pmtPid, 4) + "</code>" : "-") + "</td><td>" +
               (pg && pg->havePmt ? "<code>" + names::hex(pg->pcrPid, 4) + "</code>" : "-") +
               "</td><td>";
        if (pg != nullptr && !pg->streams.empty()) {
            out += "<ul>";
            for (const StreamEntry& st : pg->streams) {
                out += "<li><code>" + names::hex(st.pid, 4) + "</code> <code>" +
                       names::hex(st.type, 2) + "</code> " + esc(names::streamType(st.type));
                if (st.componentTag >= 0)
                    out += ", tag <code>" +
                           names::hex(static_cast<unsigned int>(st.componentTag), 2) + "</code>";
                if (!st.language.empty())
                    out += ", " + escText(text, st.language);
                out += "</li>";
            }
            out += "</ul>";
        } else {
            out += "-";
        }
        out += "</td><td>";
        bool any = false;
        if (pg != nullptr)
            for (const StreamEntry& st : pg->streams) {
                auto a = c.applications().find(st.pid);
                if (st.type != 0x05 || a == c.applications().end())
                    continue;
                for (const ApplicationEntry& app : a->second) {
                    out += std::string(any ? "<br>" : "") + "<code>" +
                           names::hex(app.organizationId, 8) + "/" +
                           names::hex(app.applicationId, 4) + "</code> " +
                           esc(names::applicationType(app.type)) + " " +
                           esc(names::controlCode(app.controlCode)) + " &ldquo;" +
                           escText(text, app.name) + "&rdquo;";
                    any = true;
                }
            }
        out += any ? "</td></tr>" : "-</td></tr>";
    }
    out += "</tbody></table></div></section>\n";
}

/** What each PID carries: the tables seen on it and the streams the PMTs give it. */
std::map<unsigned int, std::string> pidRoles(const DumpSession& session, const Catalogue& c) {
    std::map<unsigned int, std::string> roles;
    auto add = [&](unsigned int pid, const std::string& what) {
        std::string& r = roles[pid];
        if (r.find(what) == std::string::npos)
            r += (r.empty() ? "" : "; ") + what;
    };
    for (const auto& entry : session.tableCounts()) {
        const char* name = names::table(entry.first & 0xFF);
        add(entry.first >> 8, *name != '\0' ? name : names::hex(entry.first & 0xFF, 2));
    }
    for (const auto& p : c.programs()) {
        const std::string service = "service " + names::hex(p.first, 4);
        for (const StreamEntry& s : p.second.streams) {
            const char* type = names::streamType(s.type);
            add(s.pid,
                (*type != '\0' ? std::string(type) : "stream type " + names::hex(s.type, 2)) +
                    ", " + service);
        }
        if (p.second.havePmt)
            add(p.second.pcrPid, "PCR, " + service);
    }
    add(kNullPid, "null packets");
    return roles;
}

void pids(std::string& out, const DumpSession& session, const ReportCollector& r) {
    out += "<section id=\"pids\" aria-labelledby=\"h-pids\"><h2 id=\"h-pids\">PIDs</h2>";
    const PacketStats& ps = r.packets;
    if (ps.packets() == 0) {
        out += "<p class=\"muted\">Not a transport stream: no packets to count.</p></section>\n";
        return;
    }
    const std::map<unsigned int, std::string> roles = pidRoles(session, r.catalogue);
    const double seconds = ps.duration();
    out +=
        "<div class=\"scroll\"><table id=\"pid-table\"><thead><tr><th scope=\"col\">PID</th>"
        "<th scope=\"col\">Packets</th><th scope=\"col\">Share</th><th scope=\"col\">"
        "Bitrate</th><th scope=\"col\">Continuity breaks</th><th scope=\"col\">Scrambled</th>"
        "<th scope=\"col\">Errored</th><th scope=\"col\">Carries</th></tr></thead><tbody>";
    for (unsigned int pid : ps.pids()) {
        const PidTally& t = ps.tally(pid);
        auto role = roles.find(pid);
        auto count = [](unsigned long long v) {
            return v == 0 ? std::string("0") : "<span class=\"bad\">" + num(v) + "</span>";
        };
        out +=
            "<tr><th scope=\"row\">" + hexAndDecimal(pid, 4) + "</th><td class=\"n\">" +
            num(t.packets) + "</td><td class=\"n\">" +
            fixed(100.0 * static_cast<double>(t.packets) / static_cast<double>(ps.packets()), 2) +
            " %</td><td class=\"n\">" +
            (seconds > 0 ? fixed(t.packets * 188.0 * 8 / seconds / 1000, 1) + " kbit/s" : "-") +
            "</td><td class=\"n\">" + count(t.continuityBreaks) + "</td><td class=\"n\">" +
            count(t.scrambled) + "</td><td class=\"n\">" + count(t.transportErrors) + "</td><td>" +
            (role != roles.end() ? esc(role->second) : "-") + "</td></tr>";
    }
    out += "</tbody></table></div>";

    // Bitrate over time of the busiest PIDs, between marks about half a
    // second apart.
    const auto& marks = ps.marks();
    if (marks.size() < 3 || seconds <= 0) {
        out += ps.clockPid() < 0 ? "<p class=\"muted\">No bitrate chart: the stream carries no "
                                   "PCR to time it.</p></section>\n"
                                 : "<p class=\"muted\">No bitrate chart: the PCRs span less than "
                                   "a second.</p></section>\n";
        return;
    }
    std::vector<unsigned int> busiest = ps.pids();
    busiest.erase(std::remove(busiest.begin(), busiest.end(), kNullPid), busiest.end());
    std::stable_sort(busiest.begin(), busiest.end(), [&](unsigned int a, unsigned int b) {
        return ps.tally(a).packets > ps.tally(b).packets;
    });
    if (busiest.size() > 6)
        busiest.resize(6);
    auto countAt = [](const PacketStats::Mark& m, unsigned int pid) {
        for (const auto& e : m.packets)
            if (e.first == pid)
                return e.second;
        return 0ull;
    };
    std::vector<std::vector<std::pair<double, double>>> series(busiest.size());
    double top = 0;
    for (size_t i = 0; i + 1 < marks.size(); ++i) {
        const double dt = marks[i + 1].seconds - marks[i].seconds;
        if (dt <= 0)
            continue;
        for (size_t k = 0; k < busiest.size(); ++k) {
            const double packets = static_cast<double>(countAt(marks[i + 1], busiest[k]) -
                                                       countAt(marks[i], busiest[k]));
            const double kbps = packets * 188 * 8 / dt / 1000;
            series[k].emplace_back((marks[i].seconds + marks[i + 1].seconds) / 2, kbps);
            top = std::max(top, kbps);
        }
    }
    // A round top for the axis: 1, 2 or 5 times a power of ten.
    double step = std::pow(10.0, std::floor(std::log10(std::max(top, 1.0))));
    double axisTop = step;
    for (double f : {1.0, 2.0, 5.0, 10.0})
        if (f * step >= top) {
            axisTop = f * step;
            break;
        }
    static const char* const kColours[] = {"#0b5394", "#a4262c", "#0a6b2c",
                                           "#7a5200", "#6b2c91", "#1b1b1b"};
    const double w = 800, h = 260, left = 60, right = 10, topPad = 10, bottom = 30;
    const double pw = w - left - right, ph = h - topPad - bottom;
    const double end = marks.back().seconds;
    out +=
        "<figure><svg class=\"chart\" viewBox=\"0 0 800 260\" role=\"img\" "
        "aria-labelledby=\"chart-title\"><title id=\"chart-title\">Bitrate over time of the "
        "busiest PIDs, in kbit/s</title>";
    for (int g = 0; g <= 4; ++g) {
        const double y = topPad + ph - ph * g / 4;
        out += "<line x1=\"" + fixed(left, 0) + "\" x2=\"" + fixed(w - right, 0) + "\" y1=\"" +
               fixed(y, 1) + "\" y2=\"" + fixed(y, 1) + "\" stroke=\"#ddd\"/><text x=\"" +
               fixed(left - 4, 0) + "\" y=\"" + fixed(y + 4, 1) +
               "\" font-size=\"11\" text-anchor=\"end\">" + fixed(axisTop * g / 4, 0) + "</text>";
    }
    for (int g = 0; g <= 4; ++g) {
        const double x = left + pw * g / 4;
        out += "<text x=\"" + fixed(x, 1) + "\" y=\"" + fixed(h - 10, 0) +
               "\" font-size=\"11\" text-anchor=\"" + (g == 4 ? "end" : "middle") + "\">" +
               fixed(end * g / 4, 1) + " s</text>";
    }
    for (size_t k = 0; k < series.size(); ++k) {
        std::string points;
        for (const auto& pt : series[k])
            points += fixed(left + pw * pt.first / end, 1) + "," +
                      fixed(topPad + ph - ph * std::min(pt.second / axisTop, 1.0), 1) + " ";
        out += "<polyline fill=\"none\" stroke-width=\"2\" stroke=\"" + std::string(kColours[k]) +
               "\" points=\"" + points + "\"><title>PID " + names::hex(busiest[k], 4) +
               "</title></polyline>";
    }
    out += "</svg><figcaption><ul class=\"legend\">";
    for (size_t k = 0; k < busiest.size(); ++k) {
        auto role = roles.find(busiest[k]);
        out += "<li><span class=\"swatch\" style=\"background:" + std::string(kColours[k]) +
               "\"></span>PID <code>" + names::hex(busiest[k], 4) + "</code>" +
               (role != roles.end() ? " " + esc(role->second) : "") + "</li>";
    }
    out += "</ul></figcaption></figure></section>\n";
}

void tables(std::string& out, const ReportCollector& r, const TextConverter& text) {
    out +=
        "<section id=\"tables\" aria-labelledby=\"h-tables\"><h2 id=\"h-tables\">Tables</h2>"
        "<p>Every new table and every failure, in arrival order. Open one to see its decoded "
        "fields.</p>";
    std::set<unsigned int> pidSet, tableSet;
    for (const auto& l : r.lines) {
        pidSet.insert(l.pid);
        tableSet.insert(l.tableId);
    }
    out +=
        "<form class=\"filters\" id=\"filters\" hidden><label for=\"filter-pid\">PID<select "
        "id=\"filter-pid\"><option value=\"\">all</option>";
    for (unsigned int pid : pidSet)
        out += "<option value=\"" + names::hex(pid, 4) + "\">" + names::hex(pid, 4) + "</option>";
    out +=
        "</select></label><label for=\"filter-table\">Table<select id=\"filter-table\">"
        "<option value=\"\">all</option>";
    for (unsigned int id : tableSet) {
        const char* name = names::table(id);
        out += "<option value=\"" + names::hex(id, 2) + "\">" + names::hex(id, 2) +
               (*name != '\0' ? std::string(" ") + name : "") + "</option>";
    }
    out += "</select></label><output id=\"filter-count\" aria-live=\"polite\"></output></form>";
    std::string converted;
    for (size_t i = 0; i < r.lines.size(); ++i) {
        const auto& l = r.lines[i];
        const char* name = names::table(l.tableId);
        out += "<details class=\"section\" id=\"section-" + num(i) + "\" data-pid=\"" +
               names::hex(l.pid, 4) + "\" data-table=\"" + names::hex(l.tableId, 2) +
               "\"><summary>PID <code>" + names::hex(l.pid, 4) + "</code>, table <code>" +
               names::hex(l.tableId, 2) + "</code> " + esc(name) + ", section " +
               num(l.sectionNumber);
        if (l.error != 0)
            out += " <span class=\"flag error\">error " + num(l.error) + "</span>";
        if (!l.log.empty())
            out += " <span class=\"flag\">" + num(l.log.size()) + " log line" +
                   (l.log.size() == 1 ? "" : "s") + "</span>";
        out += "</summary><div>";
        if (!l.log.empty()) {
            out += "<ul class=\"log\" aria-label=\"Logged by the library\">";
            for (const LogEntry& e : l.log)
                out += std::string("<li class=\"") + (e.priority >= 6 ? "error" : "warn") + "\">" +
                       (e.priority >= 6 ? "error: " : "warning: ") + escText(text, e.text) +
                       "</li>";
            out += "</ul>";
        }
        if (l.haveTable) {
            converted.clear();
            text.append(converted, l.table.data(), l.table.size());
            appendTree(out, converted);
        } else {
            out += "<p class=\"muted\">No table: the library's code is " + num(l.error) + ".</p>";
        }
        out += "</div></details>\n";
    }
    if (r.lines.empty())
        out += "<p class=\"muted\">No table was read.</p>";
    out += "</section>\n";
}

void guide(std::string& out, const ReportCollector& r, const TextConverter& text,
           const UtcOffset& offset) {
    const Catalogue& c = r.catalogue;
    const std::vector<const EventEntry*> events = c.guide();
    const std::string zone = offsetText(offset.seconds, true);
    out +=
        "<section id=\"guide\" aria-labelledby=\"h-guide\"><h2 id=\"h-guide\">Programme "
        "guide</h2>";
    if (events.empty()) {
        out += "<p class=\"muted\">No events: the input has no EIT.</p></section>\n";
        return;
    }
    long long first = events.front()->start, last = first;
    for (const EventEntry* e : events) {
        first = std::min<long long>(first, e->start);
        last = std::max<long long>(last, static_cast<long long>(e->start) + e->duration);
    }
    // Whole hours around the events.
    first -= first % 3600;
    last += (3600 - last % 3600) % 3600;
    const double span = static_cast<double>(std::max(last - first, 3600ll));
    out += "<p>Times in UTC" + zone + " (" + esc(offset.source) +
           "). Select an event for its details.</p><div class=\"scroll\"><div class=\"guide\" "
           "role=\"list\" style=\"width:" +
           fixed(std::max(48.0, 12 + 8 * span / 3600), 0) +
           "rem\"><div class=\"row axis\" aria-hidden=\"true\"><div class=\"svc\"></div>"
           "<div class=\"track\">";
    for (long long t = first; t < last; t += 3600)
        out += "<span class=\"tick\" style=\"left:" +
               fixed(100.0 * static_cast<double>(t - first) / span, 3) + "%\">" +
               (t == first || t % 86400 == 0 ? clock(t, true).substr(5) : clock(t, false)) +
               "</span>";
    out += "</div></div>";
    unsigned int service = ~0u;
    for (const EventEntry* e : events) {
        if (e->serviceId != service) {
            if (service != ~0u)
                out += "</div></div>";
            service = e->serviceId;
            auto s = c.services().find(service);
            out +=
                "<div class=\"row\" role=\"listitem\"><div class=\"svc\">" +
                (s != c.services().end() && s->second.inSdt ? escText(text, s->second.name) + "<br>"
                                                            : std::string()) +
                "<code>" + names::hex(service, 4) + "</code></div><div class=\"track\">";
        }
        const double left = 100.0 * static_cast<double>(e->start - first) / span;
        const double width = std::max(100.0 * e->duration / span, 0.5);
        const std::string title = e->title.empty() ? "(event " + names::hex(e->eventId, 4) + ")"
                                                   : escText(text, e->title);
        const std::string start = clock(e->start, true);
        out += "<details class=\"ev\" style=\"left:" + fixed(left, 3) +
               "%;width:" + fixed(width, 3) + "%\" data-start=\"" + start + "\" data-event=\"" +
               names::hex(e->eventId, 4) + "\"><summary>" + start.substr(11) + " " + title +
               "</summary><div class=\"info\"><strong>" + title + "</strong><br>" + start +
               "&ndash;" + clock(static_cast<long long>(e->start) + e->duration, false) + " " +
               zone;
        if (!e->description.empty())
            out += "<br>" + escText(text, e->description);
        if (e->genre && *names::genre(e->genre->level1) != '\0')
            out += "<br>Genre: " + esc(names::genreText(e->genre->level1, e->genre->level2));
        if (e->rating && *names::ageRating(e->rating->age) != '\0')
            out += "<br>Rating: " + esc(names::ageRating(e->rating->age)) +
                   (e->rating->warnings != 0
                        ? " (" + esc(names::contentWarnings(e->rating->warnings)) + ")"
                        : "");
        if (!e->extendedText.empty())
            out += "<br>" + escText(text, e->extendedText);
        out += "<br><span class=\"muted\">Event <code>" + names::hex(e->eventId, 4) +
               "</code></span></div></details>";
    }
    out += "</div></div></div></div></section>\n";
}

}  // namespace

void writeHtmlReport(std::string& out, const std::string& title, const DumpSession& session,
                     const ReportCollector& report, const TextConverter& text,
                     const UtcOffset& offset) {
    out +=
        "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
        "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
        "<meta name=\"generator\" content=\"sarn-dump\">\n<title>Capture report: " +
        esc(title) + "</title>\n<style>" + kStyle +
        "</style>\n</head>\n<body>\n"
        "<a class=\"skip\" href=\"#main\">Skip to the report</a>\n<header><h1>Capture "
        "report: " +
        esc(title) +
        "</h1><nav aria-label=\"Report sections\"><ul><li><a href=\"#overview\">Overview</a>"
        "</li><li><a href=\"#services\">Services</a></li><li><a href=\"#pids\">PIDs</a></li>"
        "<li><a href=\"#tables\">Tables</a></li><li><a href=\"#guide\">Programme guide</a>"
        "</li></ul></nav></header>\n<main id=\"main\">\n";
    overview(out, title, session, report, text);
    services(out, report, text);
    pids(out, session, report);
    tables(out, report, text);
    guide(out, report, text, offset);
    out += "</main>\n<script>" + std::string(kScript) + "</script>\n</body>\n</html>\n";
}

}  // namespace sarntool
