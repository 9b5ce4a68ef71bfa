#include "Views.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <tuple>
#include <vector>

#include "Names.h"

namespace sarntool {

namespace {

// ---------------------------------------------------------------------------
// JSON, indented by two blanks; lists of numbers stay on one line.
// ---------------------------------------------------------------------------
class JsonWriter {
  public:
    JsonWriter(std::string& out, const TextConverter& text) : out(out), text(text) {}

    JsonWriter& object() { return open('{', '}', false); }
    JsonWriter& array(bool oneLine = false) { return open('[', ']', oneLine); }
    JsonWriter& end() {
        const Level level = levels.back();
        levels.pop_back();
        if (level.count > 0 && !level.oneLine)
            newline();
        out += level.close;
        if (levels.empty())
            out += '\n';
        return *this;
    }
    JsonWriter& key(const char* name) {
        separate();
        out += '"';
        out += name;
        out += "\": ";
        afterKey = true;
        return *this;
    }
    JsonWriter& number(long long v) {
        value();
        out += std::to_string(v);
        return *this;
    }
    JsonWriter& decimal(double v, int places) {
        value();
        char buf[32];
        std::snprintf(buf, sizeof buf, "%.*f", places, v);
        out += buf;
        return *this;
    }
    JsonWriter& boolean(bool v) {
        value();
        out += v ? "true" : "false";
        return *this;
    }
    JsonWriter& null() {
        value();
        out += "null";
        return *this;
    }
    /** A UTF-8 string of the tool's own (a name, a time). */
    JsonWriter& string(const std::string& utf8) {
        value();
        out += '"';
        appendJsonStringContents(out, utf8);
        out += '"';
        return *this;
    }
    /** Broadcast text, through the character set. */
    JsonWriter& broadcast(const std::string& bytes) {
        value();
        out += '"';
        text.appendJsonString(out, bytes);
        out += '"';
        return *this;
    }
    /** A name, or null when Names.h has none. */
    JsonWriter& name(const std::string& utf8) { return utf8.empty() ? null() : string(utf8); }

    /** "key": v and "key_hex": "0x..." */
    JsonWriter& id(const char* name, unsigned int v, int digits) {
        key(name).number(v);
        const std::string hexKey = std::string(name) + "_hex";
        return key(hexKey.c_str()).string(names::hex(v, digits));
    }

  private:
    struct Level {
        char close;
        bool oneLine;
        int count;
    };
    JsonWriter& open(char c, char close, bool oneLine) {
        value();
        out += c;
        levels.push_back({close, oneLine || (!levels.empty() && levels.back().oneLine), 0});
        return *this;
    }
    void newline() {
        out += '\n';
        out.append(2 * levels.size(), ' ');
    }
    void separate() {
        if (levels.empty())
            return;
        Level& level = levels.back();
        if (level.count++ > 0)
            out += level.oneLine ? ", " : ",";
        if (!level.oneLine)
            newline();
    }
    void value() {
        if (afterKey)
            afterKey = false;
        else
            separate();
    }

    std::string& out;
    const TextConverter& text;
    std::vector<Level> levels;
    bool afterKey = false;
};

/** Seconds as a calendar time, "YYYY-MM-DD" + separator + "HH:MM:SS". */
std::string calendar(long long seconds, char separator) {
    const std::time_t t = static_cast<std::time_t>(seconds);
    std::tm tm{};
    gmtime_r(&t, &tm);
    char buf[40];
    std::snprintf(buf, sizeof buf, "%04d-%02d-%02d%c%02d:%02d:%02d", tm.tm_year + 1900,
                  tm.tm_mon + 1, tm.tm_mday, separator, tm.tm_hour, tm.tm_min, tm.tm_sec);
    return buf;
}

/** XMLTV's "YYYYMMDDHHMMSS +HHMM". */
std::string xmltvTime(long long seconds, int offset) {
    const std::time_t t = static_cast<std::time_t>(seconds);
    std::tm tm{};
    gmtime_r(&t, &tm);
    char buf[40];
    std::snprintf(buf, sizeof buf, "%04d%02d%02d%02d%02d%02d ", tm.tm_year + 1900, tm.tm_mon + 1,
                  tm.tm_mday, tm.tm_hour, tm.tm_min, tm.tm_sec);
    return buf + offsetText(offset, false);
}

std::string duration(unsigned int seconds) {
    char buf[24];
    std::snprintf(buf, sizeof buf, "%02u:%02u:%02u", seconds / 3600, seconds % 3600 / 60,
                  seconds % 60);
    return buf;
}

/** A terrestrial frequency in MHz: the descriptor counts 1/7 MHz. */
double megahertz(unsigned int units) {
    return units / 7.0;
}

const ServiceEntry* serviceOf(const Catalogue& c, unsigned int id) {
    auto it = c.services().find(id);
    return it == c.services().end() ? nullptr : &it->second;
}

/** The applications of the AITs that a program's PMT points at. */
std::vector<std::pair<unsigned int, const ApplicationEntry*>> applicationsOf(
    const Catalogue& c, const ProgramEntry* program) {
    std::vector<std::pair<unsigned int, const ApplicationEntry*>> found;
    if (program == nullptr)
        return found;
    for (const StreamEntry& s : program->streams) {
        if (s.type != 0x05)
            continue;
        auto it = c.applications().find(s.pid);
        if (it == c.applications().end())
            continue;
        for (const ApplicationEntry& a : it->second)
            found.emplace_back(s.pid, &a);
    }
    return found;
}

const ProgramEntry* programOf(const Catalogue& c, unsigned int id) {
    auto it = c.programs().find(id);
    return it == c.programs().end() ? nullptr : &it->second;
}

// ---------------------------------------------------------------------------
// Text columns: widths count characters, not bytes.
// ---------------------------------------------------------------------------
size_t width(const std::string& utf8) {
    size_t n = 0;
    for (const char c : utf8)
        n += (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    return n;
}

void cell(std::string& out, const std::string& utf8, size_t columns) {
    out += utf8;
    const size_t w = width(utf8);
    out.append(w < columns ? columns - w + 2 : 2, ' ');
}

std::string plain(const TextConverter& text, const std::string& bytes) {
    std::string out;
    text.appendPlain(out, bytes);
    return out;
}

std::string quoted(const TextConverter& text, const std::string& bytes) {
    return "\"" + plain(text, bytes) + "\"";
}

std::string idText(unsigned int v, int digits) {
    return names::hex(v, digits) + " (" + std::to_string(v) + ")";
}

std::string orDash(const std::string& s) {
    return s.empty() ? "-" : s;
}

/** One row per line, columns as wide as their widest cell. */
void table(std::string& out, const std::vector<std::vector<std::string>>& rows,
           const char* indent) {
    std::vector<size_t> widths;
    for (const auto& row : rows)
        for (size_t i = 0; i < row.size(); ++i) {
            if (widths.size() <= i)
                widths.push_back(0);
            widths[i] = std::max(widths[i], width(row[i]));
        }
    for (const auto& row : rows) {
        std::string line = indent;
        for (size_t i = 0; i < row.size(); ++i) {
            if (i + 1 == row.size())
                line += row[i];
            else
                cell(line, row[i], widths[i]);
        }
        while (!line.empty() && line.back() == ' ')
            line.pop_back();
        out += line + '\n';
    }
}

// ---------------------------------------------------------------------------
// XML
// ---------------------------------------------------------------------------
/** The two-letter code XMLTV readers expect for the languages of the region, else the code. */
std::string xmlLanguage(const std::string& iso639) {
    static const char* const kPairs[][2] = {{"por", "pt"}, {"spa", "es"}, {"eng", "en"},
                                            {"jpn", "ja"}, {"ita", "it"}, {"fra", "fr"},
                                            {"deu", "de"}, {"ger", "de"}};
    for (const auto& p : kPairs)
        if (iso639 == p[0])
            return p[1];
    for (const char c : iso639)
        if (c < 'a' || c > 'z')
            return "";
    return iso639.size() == 3 ? iso639 : "";
}

std::string channelId(unsigned int service, unsigned int ts, unsigned int onid) {
    char buf[48];
    std::snprintf(buf, sizeof buf, "%04x.%04x.%04x.isdb", service, ts, onid);
    return buf;
}

void xmlElement(std::string& out, const char* indent, const char* tag, const std::string& lang,
                const std::string& utf8) {
    out += indent;
    out += '<';
    out += tag;
    if (!lang.empty())
        out += " lang=\"" + lang + "\"";
    out += '>';
    appendMarkupEscaped(out, utf8);
    out += "</";
    out += tag;
    out += ">\n";
}

}  // namespace

void appendMarkupEscaped(std::string& out, const std::string& utf8) {
    for (const char c : utf8) {
        switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            case '\'':
                out += "&#39;";
                break;
            default:
                out += c;
        }
    }
}

bool parseUtcOffset(const std::string& text, int* seconds) {
    size_t i = 0;
    int sign = 1;
    if (i < text.size() && (text[i] == '+' || text[i] == '-'))
        sign = text[i++] == '-' ? -1 : 1;
    std::string digits;
    int hours = -1, minutes = 0;
    size_t colon = text.find(':', i);
    auto allDigits = [](const std::string& s) {
        if (s.empty() || s.size() > 2)
            return false;
        for (const char c : s)
            if (c < '0' || c > '9')
                return false;
        return true;
    };
    if (colon != std::string::npos) {
        const std::string h = text.substr(i, colon - i), m = text.substr(colon + 1);
        if (!allDigits(h) || !allDigits(m) || m.size() != 2)
            return false;
        hours = std::atoi(h.c_str());
        minutes = std::atoi(m.c_str());
    } else {
        const std::string rest = text.substr(i);
        if (rest.size() == 4 && allDigits(rest.substr(0, 2)) && allDigits(rest.substr(2))) {
            hours = std::atoi(rest.substr(0, 2).c_str());
            minutes = std::atoi(rest.substr(2).c_str());
        } else if (allDigits(rest)) {
            hours = std::atoi(rest.c_str());
        } else {
            return false;
        }
    }
    if (minutes > 59 || hours * 60 + minutes > 14 * 60)
        return false;
    *seconds = sign * (hours * 3600 + minutes * 60);
    return true;
}

UtcOffset chooseOffset(const Catalogue& catalogue, const int* option) {
    UtcOffset o;
    if (option != nullptr) {
        o.seconds = *option;
        o.source = "option";
    } else if (catalogue.haveTotOffset()) {
        o.seconds = catalogue.totOffset();
        o.source = "TOT " + catalogue.totOffsetCountry();
    } else if (catalogue.unusableTotOffsets() > 0) {
        o.source = "default (TOT offset beyond what the library decodes)";
    }
    return o;
}

std::string offsetText(int seconds, bool withColon) {
    const int a = seconds < 0 ? -seconds : seconds;
    char buf[16];
    std::snprintf(buf, sizeof buf, withColon ? "%c%02d:%02d" : "%c%02d%02d",
                  seconds < 0 ? '-' : '+', a / 3600, a % 3600 / 60);
    return buf;
}

// ---------------------------------------------------------------------------
// --services
// ---------------------------------------------------------------------------
void writeServicesJson(std::string& out, const Catalogue& c, const TextConverter& text) {
    JsonWriter j(out, text);
    j.object();
    if (c.transportStreamId() >= 0)
        j.id("transport_stream_id", static_cast<unsigned int>(c.transportStreamId()), 4);
    else
        j.key("transport_stream_id").null();
    if (c.originalNetworkId() >= 0)
        j.id("original_network_id", static_cast<unsigned int>(c.originalNetworkId()), 4);
    else
        j.key("original_network_id").null();

    const NetworkEntry& n = c.network();
    j.key("network");
    if (!n.seen) {
        j.null();
    } else {
        j.object().id("network_id", n.networkId, 4).key("name").broadcast(n.name);
        j.key("transport_streams").array();
        for (const TransportStreamEntry& ts : n.transportStreams) {
            j.object()
                .id("transport_stream_id", ts.transportStreamId, 4)
                .id("original_network_id", ts.originalNetworkId, 4);
            j.key("terrestrial_delivery");
            if (ts.haveDelivery) {
                j.object()
                    .id("area_code", ts.areaCode, 3)
                    .key("guard_interval")
                    .string(names::guardInterval(ts.guardInterval))
                    .key("transmission_mode")
                    .string(names::transmissionMode(ts.transmissionMode));
                j.key("frequencies_mhz").array(true);
                for (unsigned int f : ts.frequencies)
                    j.decimal(megahertz(f), 3);
                j.end().end();
            } else {
                j.null();
            }
            j.key("ts_information");
            if (ts.haveTsInformation) {
                j.object()
                    .key("remote_control_key_id")
                    .number(ts.remoteControlKeyId)
                    .key("ts_name")
                    .broadcast(ts.tsName);
                j.key("transmission_types").array();
                for (const auto& t : ts.transmissionTypes) {
                    j.object().id("transmission_type_info", t.first, 2);
                    j.key("service_ids").array(true);
                    for (unsigned int id : t.second)
                        j.number(id);
                    j.end().key("service_ids_hex").array(true);
                    for (unsigned int id : t.second)
                        j.string(names::hex(id, 4));
                    j.end().end();
                }
                j.end().end();
            } else {
                j.null();
            }
            j.key("partial_reception");
            if (ts.havePartialReception) {
                j.object().key("service_ids").array(true);
                for (unsigned int id : ts.partialReception)
                    j.number(id);
                j.end().key("service_ids_hex").array(true);
                for (unsigned int id : ts.partialReception)
                    j.string(names::hex(id, 4));
                j.end().end();
            } else {
                j.null();
            }
            j.key("service_list").array();
            for (const auto& s : ts.serviceList)
                j.object()
                    .id("service_id", s.first, 4)
                    .id("service_type", s.second, 2)
                    .key("service_type_name")
                    .name(names::serviceType(s.second))
                    .end();
            j.end().end();
        }
        j.end().end();
    }

    j.key("services").array();
    for (unsigned int id : c.serviceIds()) {
        const ServiceEntry* s = serviceOf(c, id);
        const ProgramEntry* p = programOf(c, id);
        j.object().id("service_id", id, 4);
        if (s != nullptr && s->inSdt) {
            j.key("name").broadcast(s->name).key("provider").broadcast(s->provider);
            j.id("service_type", s->type, 2)
                .key("service_type_name")
                .name(names::serviceType(s->type));
            j.key("running_status")
                .number(s->runningStatus)
                .key("running_status_name")
                .string(names::runningStatus(s->runningStatus));
            j.key("free_ca_mode").number(s->freeCaMode);
            j.key("eit_schedule").boolean(s->eitSchedule);
            j.key("eit_present_following").boolean(s->eitPresentFollowing);
        } else {
            j.key("name").null().key("provider").null().key("service_type").null();
        }
        j.key("one_segment").boolean(c.oneSegment(id));
        if (p != nullptr) {
            j.id("pmt_pid", p->pmtPid, 4);
            if (p->havePmt)
                j.id("pcr_pid", p->pcrPid, 4);
            else
                j.key("pcr_pid").null();
        } else {
            j.key("pmt_pid").null().key("pcr_pid").null();
        }
        j.key("streams").array();
        if (p != nullptr)
            for (const StreamEntry& st : p->streams) {
                j.object()
                    .id("pid", st.pid, 4)
                    .id("stream_type", st.type, 2)
                    .key("stream_type_name")
                    .name(names::streamType(st.type));
                if (st.componentTag >= 0)
                    j.id("component_tag", static_cast<unsigned int>(st.componentTag), 2);
                else
                    j.key("component_tag").null();
                j.key("language");
                if (st.language.empty())
                    j.null();
                else
                    j.broadcast(st.language);
                j.end();
            }
        j.end();
        j.key("applications").array();
        for (const auto& a : applicationsOf(c, p)) {
            const ApplicationEntry& app = *a.second;
            j.object()
                .id("ait_pid", a.first, 4)
                .id("organization_id", app.organizationId, 8)
                .id("application_id", app.applicationId, 4)
                .key("control_code")
                .number(app.controlCode)
                .key("control_code_name")
                .name(names::controlCode(app.controlCode))
                .id("application_type", app.type, 4)
                .key("application_type_name")
                .name(names::applicationType(app.type))
                .key("name")
                .broadcast(app.name)
                .key("name_language")
                .broadcast(app.nameLanguage)
                .end();
        }
        j.end().end();
    }
    j.end().end();
}

void writeServicesText(std::string& out, const Catalogue& c, const TextConverter& text) {
    const NetworkEntry& n = c.network();
    if (n.seen)
        out += "Network " + idText(n.networkId, 4) + " " + quoted(text, n.name) + "\n";
    else
        out += "Network: no NIT\n";
    out += "Transport stream " +
           (c.transportStreamId() >= 0 ? idText(static_cast<unsigned int>(c.transportStreamId()), 4)
                                       : std::string("unknown")) +
           ", original network " +
           (c.originalNetworkId() >= 0 ? idText(static_cast<unsigned int>(c.originalNetworkId()), 4)
                                       : std::string("unknown")) +
           "\n";
    for (const TransportStreamEntry& ts : n.transportStreams) {
        out += "  NIT transport stream " + idText(ts.transportStreamId, 4) + ", original network " +
               idText(ts.originalNetworkId, 4) + "\n";
        if (ts.haveDelivery) {
            out += "    delivery: area code " + names::hex(ts.areaCode, 3) + ", guard interval " +
                   names::guardInterval(ts.guardInterval) + ", " +
                   names::transmissionMode(ts.transmissionMode);
            for (unsigned int f : ts.frequencies) {
                char buf[32];
                std::snprintf(buf, sizeof buf, ", %.3f MHz", megahertz(f));
                out += buf;
            }
            out += "\n";
        }
        if (ts.haveTsInformation) {
            out += "    TS information: remote control key " +
                   std::to_string(ts.remoteControlKeyId) + ", name " + quoted(text, ts.tsName);
            for (const auto& t : ts.transmissionTypes) {
                out += ", type " + names::hex(t.first, 2) + ":";
                for (unsigned int id : t.second)
                    out += " " + names::hex(id, 4);
            }
            out += "\n";
        }
        if (ts.havePartialReception) {
            out += "    one-segment services:";
            for (unsigned int id : ts.partialReception)
                out += " " + names::hex(id, 4);
            out += "\n";
        }
        if (!ts.serviceList.empty()) {
            out += "    service list:";
            for (const auto& s : ts.serviceList)
                out +=
                    " " + names::hex(s.first, 4) + " " + orDash(names::serviceType(s.second)) + ";";
            out.back() = '\n';
        }
    }

    std::vector<std::vector<std::string>> rows = {
        {"SERVICE", "NAME", "PROVIDER", "TYPE", "STATUS", "1SEG", "PMT", "PCR"}};
    for (unsigned int id : c.serviceIds()) {
        const ServiceEntry* s = serviceOf(c, id);
        const ProgramEntry* p = programOf(c, id);
        const bool sdt = s != nullptr && s->inSdt;
        rows.push_back(
            {idText(id, 4), sdt ? plain(text, s->name) : "-",
             sdt ? orDash(plain(text, s->provider)) : "-",
             sdt ? names::hex(s->type, 2) + " " + orDash(names::serviceType(s->type)) : "-",
             sdt ? names::runningStatus(s->runningStatus) : "-", c.oneSegment(id) ? "yes" : "no",
             p != nullptr ? names::hex(p->pmtPid, 4) : "-",
             p != nullptr && p->havePmt ? names::hex(p->pcrPid, 4) : "-"});
    }
    out += "\n";
    table(out, rows, "");
    for (unsigned int id : c.serviceIds()) {
        const ProgramEntry* p = programOf(c, id);
        if (p == nullptr || !p->havePmt)
            continue;
        out += "\nService " + idText(id, 4) + " streams\n";
        std::vector<std::vector<std::string>> streams = {
            {"PID", "TYPE", "STREAM", "TAG", "LANGUAGE"}};
        for (const StreamEntry& st : p->streams)
            streams.push_back(
                {names::hex(st.pid, 4), names::hex(st.type, 2), orDash(names::streamType(st.type)),
                 st.componentTag >= 0 ? names::hex(static_cast<unsigned int>(st.componentTag), 2)
                                      : "-",
                 st.language.empty() ? "-" : plain(text, st.language)});
        table(out, streams, "  ");
        for (const auto& a : applicationsOf(c, p)) {
            const ApplicationEntry& app = *a.second;
            out += "  Ginga application " + names::hex(app.organizationId, 8) + "/" +
                   names::hex(app.applicationId, 4) + " " +
                   orDash(names::applicationType(app.type)) + " " +
                   orDash(names::controlCode(app.controlCode)) + " " + quoted(text, app.name) +
                   " (AIT on " + names::hex(a.first, 4) + ")\n";
        }
    }
}

// ---------------------------------------------------------------------------
// --epg
// ---------------------------------------------------------------------------
void writeGuideJson(std::string& out, const Catalogue& c, const TextConverter& text,
                    const UtcOffset& offset) {
    JsonWriter j(out, text);
    const std::string zone = offsetText(offset.seconds, true);
    j.object().key("utc_offset").string(zone).key("utc_offset_source").string(offset.source);
    j.key("events").array();
    for (const EventEntry* e : c.guide()) {
        const ServiceEntry* s = serviceOf(c, e->serviceId);
        j.object()
            .id("original_network_id", e->originalNetworkId, 4)
            .id("transport_stream_id", e->transportStreamId, 4)
            .id("service_id", e->serviceId, 4);
        j.key("service_name");
        if (s != nullptr && s->inSdt)
            j.broadcast(s->name);
        else
            j.null();
        j.id("event_id", e->eventId, 4)
            .key("start")
            .string(calendar(e->start, 'T') + zone)
            .key("end")
            .string(calendar(static_cast<long long>(e->start) + e->duration, 'T') + zone)
            .key("duration")
            .string(duration(e->duration))
            .key("running_status")
            .string(names::runningStatus(e->runningStatus));
        j.key("sources").array(true);
        if (e->presentFollowing)
            j.string("present/following");
        if (e->schedule)
            j.string("schedule");
        j.string(e->oneSegment ? "one-segment" : "full-segment");
        j.end();
        j.key("language").broadcast(e->language).key("title").broadcast(e->title);
        j.key("description").broadcast(e->description);
        j.key("extended");
        if (e->items.empty() && e->extendedText.empty()) {
            j.null();
        } else {
            j.object().key("items").array();
            for (const auto& item : e->items)
                j.object()
                    .key("description")
                    .broadcast(item.first)
                    .key("text")
                    .broadcast(item.second)
                    .end();
            j.end().key("text").broadcast(e->extendedText).end();
        }
        j.key("genre");
        if (e->genre)
            j.object()
                .key("level1")
                .number(e->genre->level1)
                .key("level2")
                .number(e->genre->level2)
                .key("name")
                .name(names::genre(e->genre->level1))
                .key("subgenre")
                .name(names::subgenre(e->genre->level1, e->genre->level2))
                .end();
        else
            j.null();
        j.key("rating");
        if (e->rating) {
            j.object()
                .key("country")
                .broadcast(e->rating->country)
                .key("age")
                .name(names::ageRating(e->rating->age))
                .key("warnings")
                .array(true);
            const std::string warnings = names::contentWarnings(e->rating->warnings);
            for (size_t from = 0; from < warnings.size();) {
                size_t comma = warnings.find(',', from);
                if (comma == std::string::npos)
                    comma = warnings.size();
                j.string(warnings.substr(from, comma - from));
                from = comma + 1;
            }
            j.end().end();
        } else {
            j.null();
        }
        j.key("video");
        if (e->video)
            j.object()
                .id("stream_content", e->video->content, 2)
                .id("component_type", e->video->type, 2)
                .key("format")
                .name(names::videoComponent(e->video->type))
                .key("text")
                .broadcast(e->video->text)
                .end();
        else
            j.null();
        j.key("audio");
        if (e->audio)
            j.object()
                .id("component_type", e->audio->type, 2)
                .key("channels")
                .name(names::audioComponent(e->audio->type))
                .key("sampling_rate")
                .name(names::samplingRate(e->audio->samplingRate))
                .key("text")
                .broadcast(e->audio->text)
                .end();
        else
            j.null();
        // The library keeps no descriptors for some sections (one-segment
        // sections past the first ones, EIT p/f other); such copies only give
        // the times.
        j.key("sections_without_descriptors").number(e->bare);
        j.end();
    }
    j.end().end();
}

void writeGuideText(std::string& out, const Catalogue& c, const TextConverter& text,
                    const UtcOffset& offset) {
    out += "Times in UTC" + offsetText(offset.seconds, true) + " (" + offset.source + ")\n";
    unsigned int last = ~0u;
    for (const EventEntry* e : c.guide()) {
        if (e->serviceId != last) {
            last = e->serviceId;
            const ServiceEntry* s = serviceOf(c, e->serviceId);
            out += "\nService " + idText(e->serviceId, 4) +
                   (s != nullptr && s->inSdt ? " " + quoted(text, s->name) : std::string()) + "\n";
        }
        const std::string start = calendar(e->start, ' ');
        const std::string end = calendar(static_cast<long long>(e->start) + e->duration, ' ');
        out += "  " + start.substr(0, 16) + "-" + end.substr(11, 5) + "  " +
               names::hex(e->eventId, 4) + "  " +
               (e->title.empty() ? std::string("(no title)") : plain(text, e->title));
        if (e->genre)
            out += "  [" + orDash(names::genreText(e->genre->level1, e->genre->level2)) + "]";
        if (e->rating && *names::ageRating(e->rating->age) != '\0') {
            out += std::string("  [") + names::ageRating(e->rating->age);
            const std::string w = names::contentWarnings(e->rating->warnings);
            out += w.empty() ? "]" : " " + w + "]";
        }
        out += "\n";
        if (!e->description.empty())
            out += "      " + plain(text, e->description) + "\n";
    }
}

void writeXmltv(std::string& out, const Catalogue& c, const TextConverter& text,
                const UtcOffset& offset) {
    out +=
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<!DOCTYPE tv SYSTEM \"xmltv.dtd\">\n"
        "<tv generator-info-name=\"sarn-dump\" source-info-name=\"ISDB-T broadcast\">\n";
    const std::vector<const EventEntry*> guide = c.guide();
    // A channel for every service with events (XMLTV readers refuse a
    // channel without programmes).
    std::vector<std::tuple<unsigned int, unsigned int, unsigned int>> channels;
    const int ts = c.transportStreamId();
    for (const EventEntry* e : guide)
        channels.emplace_back(e->serviceId, e->transportStreamId, e->originalNetworkId);
    std::sort(channels.begin(), channels.end());
    channels.erase(std::unique(channels.begin(), channels.end()), channels.end());
    for (const auto& ch : channels) {
        const unsigned int service = std::get<0>(ch);
        const ServiceEntry* s = serviceOf(c, service);
        const bool named =
            s != nullptr && s->inSdt && static_cast<int>(std::get<1>(ch)) == ts && !s->name.empty();
        out += "  <channel id=\"" + channelId(service, std::get<1>(ch), std::get<2>(ch)) + "\">\n";
        xmlElement(out, "    ", "display-name", "",
                   named ? plain(text, s->name) : "Service " + names::hex(service, 4));
        out += "  </channel>\n";
    }
    for (const EventEntry* e : guide) {
        out += "  <programme start=\"" + xmltvTime(e->start, offset.seconds) + "\" stop=\"" +
               xmltvTime(static_cast<long long>(e->start) + e->duration, offset.seconds) +
               "\" channel=\"" +
               channelId(e->serviceId, e->transportStreamId, e->originalNetworkId) + "\">\n";
        const std::string lang = xmlLanguage(e->language);
        const std::string title = plain(text, e->title);
        xmlElement(out, "    ", "title", title.empty() ? "" : lang,
                   title.empty() ? "(event " + names::hex(e->eventId, 4) + ")" : title);
        if (!e->description.empty())
            xmlElement(out, "    ", "desc", lang, plain(text, e->description));
        if (!e->items.empty() || !e->extendedText.empty()) {
            std::string longer;
            for (const auto& item : e->items)
                longer += plain(text, item.first) + ": " + plain(text, item.second) + "\n";
            longer += plain(text, e->extendedText);
            while (!longer.empty() && longer.back() == '\n')
                longer.pop_back();
            xmlElement(out, "    ", "desc", lang, longer);
        }
        if (e->genre && *names::genre(e->genre->level1) != '\0') {
            xmlElement(out, "    ", "category", "pt", names::genre(e->genre->level1));
            const std::string sub = names::distinctSubgenre(e->genre->level1, e->genre->level2);
            if (!sub.empty())
                xmlElement(out, "    ", "category", "pt", sub);
        }
        if (e->rating && *names::ageRating(e->rating->age) != '\0') {
            out += "    <rating system=\"ClassInd\">\n";
            xmlElement(out, "      ", "value", "", names::ageRating(e->rating->age));
            out += "    </rating>\n";
        }
        out += "  </programme>\n";
    }
    out += "</tv>\n";
}

}  // namespace sarntool
