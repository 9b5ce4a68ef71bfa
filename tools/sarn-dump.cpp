// sarn-dump: prints the PSI/SI tables of a transport-stream capture as JSON
// Lines, one object per section, with a summary on standard error.
//
// Input: a transport stream (188, 192 or 204-byte packets), a dump of
// concatenated sections, or a section listing ("pid=0x0011 tid=0x42 len=N
// <hex>" per line); the kind is told from the content.
//
// Live use (a tuner piped in, the output piped on): lines go out one by one
// unless the output is a regular file, and SIGINT, SIGTERM or a closed
// output end the run as the end of the input does, with the summary, and
// the exit status 128 + the signal number.
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "Catalogue.h"
#include "DumpSession.h"
#include "HtmlReport.h"
#include "Views.h"

namespace {

constexpr int kExitUnreadable = 1;
constexpr int kExitUsage = 2;
constexpr int kExitSignalled = 128;  // + the signal number, as a shell reports it
constexpr size_t kReadSize = 1 << 20;

#ifndef SARN_VERSION
#define SARN_VERSION "unknown"
#endif

// The signal that ends the run; set by the handler, read by the loop.
volatile std::sig_atomic_t stopSignal = 0;

void onStopSignal(int signal) {
    stopSignal = signal;
}

const char* signalName(int signal) {
    switch (signal) {
        case SIGINT:
            return "SIGINT";
        case SIGTERM:
            return "SIGTERM";
        case SIGPIPE:
            return "SIGPIPE";
        default:
            return "a signal";
    }
}

// The session that takes the library's log lines (see __android_log_print below).
sarntool::DumpSession* logReceiver = nullptr;

void usage(std::FILE* out) {
    std::fprintf(
        out,
        "usage: sarn-dump [OPTION]... FILE|-\n"
        "Prints the PSI/SI tables of FILE (or of standard input) as JSON Lines, one object\n"
        "per section: "
        "{\"pid\":17,\"table_id\":66,\"section_number\":0,\"error\":0,\"table\":{...}}\n"
        "FILE is a transport stream (188, 192 or 204-byte packets), concatenated sections,\n"
        "or lines \"pid=0xPPPP tid=0xTT len=N HEX\"; the kind is told from the content.\n"
        "Only new tables and failures are printed; a summary goes to standard error.\n"
        "\n"
        "  --all             also print sections that repeat the previous table (error 2561)\n"
        "  --pid LIST        print only these PIDs (comma-separated, decimal or 0x hex)\n"
        "  --table LIST      print only these table_ids\n"
        "  --charset NAME    character set of broadcast text: ISO-8859-15 (default),\n"
        "                    ISO-8859-1, another single-byte set known to iconv, or raw\n"
        "                    (8-bit bytes written unchanged)\n"
        "  --raw             print the library's JSON text exactly as it is\n"
        "  --services        instead of the lines, the channel list: network, delivery,\n"
        "                    services with their streams and Ginga applications (JSON)\n"
        "  --epg             instead of the lines, the programme guide of the EITs (JSON)\n"
        "  --xmltv           the programme guide as XMLTV\n"
        "  --text            --services or --epg as aligned text instead of JSON\n"
        "  --html REPORT     instead of the lines, a report page about the input written\n"
        "                    to REPORT: overview, services, PIDs, tables, guide\n"
        "  --utc-offset OFS  the broadcast's local time offset for the guide, e.g. -03:00\n"
        "                    (default: the TOT's local time offset, else -03:00)\n"
        "  -h, --help        this text\n"
        "  --version         the version\n"
        "\n"
        "Lines that the library logs while it reads a section go into that section's line\n"
        "under \"log\". Unless the output is a regular file each line is written at once.\n"
        "Leading bytes that are not packets are skipped however many there are; an input in\n"
        "which nothing is recognised by its end, an empty one too, is refused.\n"
        "\n"
        "Exit status: 0 done, 1 input unreadable or not recognised, or output not written,\n"
        "2 bad usage, 130 on SIGINT, 143 on SIGTERM and 141 when the output is closed\n"
        "(after the summary).\n");
    if (!sarntool::haveJsonCheck())
        std::fprintf(out,
                     "This build has no JSON parser: every table is printed as a string "
                     "under \"table_text\".\n");
}

int badUsage(const char* what, const char* arg) {
    std::fprintf(stderr, "sarn-dump: %s%s\n", what, arg);
    std::fprintf(stderr, "Try 'sarn-dump --help'.\n");
    return kExitUsage;
}

/** Parses "17,0x12" into values no larger than max. */
bool parseList(const char* text, unsigned int max, std::vector<unsigned int>& values) {
    const char* p = text;
    while (true) {
        const bool hex = p[0] == '0' && (p[1] == 'x' || p[1] == 'X');
        const char* digits = hex ? p + 2 : p;
        if (!(hex ? std::isxdigit(static_cast<unsigned char>(*digits))
                  : std::isdigit(static_cast<unsigned char>(*digits))))
            return false;
        char* end = nullptr;
        errno = 0;
        const unsigned long v = std::strtoul(digits, &end, hex ? 16 : 10);
        if (errno != 0 || v > max)
            return false;
        values.push_back(static_cast<unsigned int>(v));
        if (*end == '\0')
            return true;
        if (*end != ',')
            return false;
        p = end + 1;
    }
}

/** A bar on standard error while a file of known size is read. */
class Progress {
  public:
    Progress(long long total, bool shown) : total(total), shown(shown && total > 0) {}
    void update(long long done) {
        if (!shown)
            return;
        const auto now = std::chrono::steady_clock::now();
        const int permille = static_cast<int>(done * 1000 / total);
        if (permille == lastPermille ||
            (now - lastDraw < std::chrono::milliseconds(100) && permille < 1000))
            return;
        lastPermille = permille;
        lastDraw = now;
        constexpr int kWidth = 40;
        char bar[kWidth + 1];
        const int filled = permille * kWidth / 1000;
        for (int i = 0; i < kWidth; ++i)
            bar[i] = i < filled ? '#' : '.';
        bar[kWidth] = '\0';
        std::fprintf(stderr, "\r[%s] %3d%%  %.1f/%.1f MB", bar, permille / 10, done / 1e6,
                     total / 1e6);
        std::fflush(stderr);
    }
    void clear() {
        if (shown && lastPermille >= 0)
            std::fprintf(stderr, "\r\033[K");
    }

  private:
    long long total;
    bool shown;
    int lastPermille = -1;
    std::chrono::steady_clock::time_point lastDraw;
};

/**
 * Whether the argument after an option can be its value: never another
 * option or "-" (standard input), and for a list only what begins with a
 * digit, so that "--pid capture.ts" does not read the input name as a list.
 */
bool canBeValue(const std::string& option, const char* next) {
    if (option == "--utc-offset" && (next[0] == '-' || next[0] == '+') &&
        std::isdigit(static_cast<unsigned char>(next[1])))
        return true;
    if (next[0] == '-')
        return false;
    return option == "--charset" || option == "--html" ||
           std::isdigit(static_cast<unsigned char>(next[0]));
}

/** Turns the stop signals into a flag; they are blocked but while the input is awaited. */
void catchStopSignals(sigset_t* waitMask) {
    struct sigaction action {};
    action.sa_handler = onStopSignal;
    sigemptyset(&action.sa_mask);
    sigset_t stopSignals;
    sigemptyset(&stopSignals);
    for (int signal : {SIGINT, SIGTERM, SIGPIPE}) {
        sigaction(signal, &action, nullptr);
        sigaddset(&stopSignals, signal);
    }
    sigprocmask(SIG_BLOCK, &stopSignals, waitMask);
    for (int signal : {SIGINT, SIGTERM, SIGPIPE})
        sigdelset(waitMask, signal);
}

}  // namespace

// The library logs through liblog's __android_log_print. Defined in the
// executable, this one takes the place of liblog's for the library: the
// lines go to the session, which attaches each to the line of the section
// that was being read, and never to standard error.
extern "C" int __android_log_print(int priority, const char* tag, const char* format, ...)
    __attribute__((format(printf, 3, 4)));
extern "C" int __android_log_print(int priority, const char* tag, const char* format, ...) {
    (void)tag;  // always the library's
    char text[1024];
    va_list args;
    va_start(args, format);
    va_list again;
    va_copy(again, args);
    const int n = std::vsnprintf(text, sizeof text, format, args);
    va_end(args);
    std::string longer;
    if (n >= static_cast<int>(sizeof text)) {
        longer.resize(static_cast<size_t>(n));
        std::vsnprintf(&longer[0], longer.size() + 1, format, again);
    }
    va_end(again);
    if (logReceiver != nullptr && n >= 0)
        logReceiver->libraryLog(priority, longer.empty() ? text : longer.c_str());
    return 1;
}

int main(int argc, char** argv) {
    sarntool::DumpOptions options;
    sarntool::TextConverter converter;
    const char* path = nullptr;
    enum class View { Lines, Services, Guide, Xmltv, Html } view = View::Lines;
    const char* reportPath = nullptr;
    bool asText = false;
    bool haveOffset = false;
    int utcOffset = 0;
    bool endOfOptions = false;
    for (int i = 1; i < argc; ++i) {
        const char* arg = argv[i];
        std::string name = arg;
        const char* value = nullptr;
        if (!endOfOptions && name.rfind("--", 0) == 0 && name.find('=') != std::string::npos) {
            value = arg + name.find('=') + 1;
            name.resize(name.find('='));
        }
        const bool takesValue = name == "--pid" || name == "--table" || name == "--charset" ||
                                name == "--utc-offset" || name == "--html";
        if (!endOfOptions && takesValue && value == nullptr) {
            if (i + 1 >= argc || !canBeValue(name, argv[i + 1]))
                return badUsage("missing value for ", arg);
            value = argv[++i];
        }
        if (endOfOptions || arg[0] != '-' || name == "-") {
            if (path != nullptr)
                return badUsage("more than one input: ", arg);
            path = arg;
        } else if (name == "--") {
            endOfOptions = true;
        } else if (name == "--help" || name == "-h") {
            usage(stdout);
            return 0;
        } else if (name == "--version" && value == nullptr) {
            std::printf("sarn-dump %s\n", SARN_VERSION);
            return 0;
        } else if (name == "--all" && value == nullptr) {
            options.all = true;
        } else if (name == "--raw" && value == nullptr) {
            options.exactText = true;
        } else if ((name == "--services" || name == "--epg" || name == "--xmltv") &&
                   value == nullptr) {
            const View wanted = name == "--services" ? View::Services
                                : name == "--epg"    ? View::Guide
                                                     : View::Xmltv;
            // --epg --xmltv is the guide as XMLTV.
            if (view == View::Html ||
                (view != View::Lines && !(view != View::Services && wanted != View::Services)))
                return badUsage("one view at a time: ", arg);
            if (view != View::Xmltv)
                view = wanted;
        } else if (name == "--html") {
            if (view != View::Lines)
                return badUsage("one view at a time: ", arg);
            view = View::Html;
            reportPath = value;
        } else if (name == "--text" && value == nullptr) {
            asText = true;
        } else if (name == "--utc-offset") {
            if (!sarntool::parseUtcOffset(value, &utcOffset))
                return badUsage("bad UTC offset (e.g. -03:00): ", value);
            haveOffset = true;
        } else if (name == "--pid") {
            if (!parseList(value, sarntool::kNullPid, options.pids))
                return badUsage("bad PID list: ", value);
        } else if (name == "--table") {
            if (!parseList(value, 0xFF, options.tables))
                return badUsage("bad table_id list: ", value);
        } else if (name == "--charset") {
            std::string message;
            if (!converter.setCharset(value, &message))
                return badUsage(message.c_str(), "");
        } else {
            return badUsage("unknown option ", arg);
        }
    }
    if (path == nullptr)
        return badUsage("no input given", "");
    if (asText && (view == View::Lines || view == View::Xmltv || view == View::Html))
        return badUsage("--text goes with --services or --epg", "");
    if (view == View::Xmltv && !converter.producesUtf8())
        return badUsage("--xmltv writes UTF-8: not with --charset raw", "");
    options.lines = view == View::Lines;

    const bool standardInput = std::strcmp(path, "-") == 0;
    const int fd = standardInput ? STDIN_FILENO : open(path, O_RDONLY);
    struct stat st {};
    if (fd < 0 || fstat(fd, &st) != 0 || S_ISDIR(st.st_mode)) {
        std::fprintf(stderr, "sarn-dump: cannot read %s: %s\n", path,
                     fd >= 0 && S_ISDIR(st.st_mode) ? "is a directory" : std::strerror(errno));
        return kExitUnreadable;
    }
    Progress progress(S_ISREG(st.st_mode) ? static_cast<long long>(st.st_size) : 0,
                      isatty(STDERR_FILENO) && !isatty(STDOUT_FILENO));
    struct stat outStat {};
    options.flushEachLine = fstat(STDOUT_FILENO, &outStat) != 0 || !S_ISREG(outStat.st_mode);
    sigset_t waitMask;
    catchStopSignals(&waitMask);

    sarntool::DumpSession session(options, converter, STDOUT_FILENO);
    sarntool::Catalogue catalogue;
    sarntool::ReportCollector report;
    if (view == View::Html) {
        session.observe(&report);
        session.observePackets(&report.packets);
    } else if (view != View::Lines) {
        session.observe(&catalogue);
    }
    logReceiver = &session;
    std::vector<unsigned char> buffer(kReadSize);
    long long done = 0;
    int status = 0;
    while (stopSignal == 0 && session.writeError() == 0) {
        // A stop signal is let in only here, so that none is missed between
        // the check above and a read that would wait for input.
        pollfd input{fd, POLLIN, 0};
        if (ppoll(&input, 1, nullptr, &waitMask) < 0 && errno == EINTR)
            continue;
        const ssize_t n = read(fd, buffer.data(), buffer.size());
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0) {
            progress.clear();
            std::fprintf(stderr, "sarn-dump: error reading %s: %s\n", path, std::strerror(errno));
            status = kExitUnreadable;
            break;
        }
        if (n == 0)
            break;
        session.feed(buffer.data(), static_cast<size_t>(n));
        done += n;
        progress.update(done);
    }
    if (!standardInput)
        close(fd);
    session.finish();
    logReceiver = nullptr;
    progress.clear();

    // A closed output shows as EPIPE: SIGPIPE is blocked while lines are written.
    const int signal = stopSignal != 0                 ? static_cast<int>(stopSignal)
                       : session.writeError() == EPIPE ? SIGPIPE
                                                       : 0;
    if (signal == SIGPIPE)
        std::fprintf(stderr, "sarn-dump: stopped: the output was closed\n");
    else if (signal != 0)
        std::fprintf(stderr, "sarn-dump: stopped by %s\n", signalName(signal));
    else if (session.writeError() != 0)
        std::fprintf(stderr, "sarn-dump: error writing the output: %s\n",
                     std::strerror(session.writeError()));
    if (session.format() == sarntool::DumpSession::Format::Unrecognised && signal == 0 &&
        status == 0) {
        std::fprintf(stderr,
                     "sarn-dump: %s: not a transport stream, a section dump or a section "
                     "listing\n",
                     path);
        return kExitUnreadable;
    }
    if (view == View::Html) {
        std::string page;
        const char* slash = std::strrchr(path, '/');
        const std::string title = standardInput ? "standard input" : slash ? slash + 1 : path;
        sarntool::writeHtmlReport(
            page, title, session, report, converter,
            sarntool::chooseOffset(report.catalogue, haveOffset ? &utcOffset : nullptr));
        std::FILE* file = std::fopen(reportPath, "wb");
        const bool written =
            file != nullptr && std::fwrite(page.data(), 1, page.size(), file) == page.size();
        if (file == nullptr || std::fclose(file) != 0 || !written) {
            std::fprintf(stderr, "sarn-dump: cannot write %s: %s\n", reportPath,
                         std::strerror(errno));
            status = kExitUnreadable;
        }
    } else if (view != View::Lines && session.writeError() == 0 && signal != SIGPIPE) {
        std::string text;
        const sarntool::UtcOffset offset =
            sarntool::chooseOffset(catalogue, haveOffset ? &utcOffset : nullptr);
        if (view == View::Services && asText)
            sarntool::writeServicesText(text, catalogue, converter);
        else if (view == View::Services)
            sarntool::writeServicesJson(text, catalogue, converter);
        else if (view == View::Guide && asText)
            sarntool::writeGuideText(text, catalogue, converter, offset);
        else if (view == View::Guide)
            sarntool::writeGuideJson(text, catalogue, converter, offset);
        else
            sarntool::writeXmltv(text, catalogue, converter, offset);
        if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() ||
            std::fflush(stdout) != 0) {
            std::fprintf(stderr, "sarn-dump: error writing the output: %s\n", std::strerror(errno));
            status = kExitUnreadable;
        }
    }
    if (session.writeError() != 0 && signal == 0)
        status = kExitUnreadable;
    session.printSummary(stderr);
    return signal != 0 ? kExitSignalled + signal : status;
}
