#ifndef SARN_TESTS_LOGCAPTURE_H
#define SARN_TESTS_LOGCAPTURE_H

#include <string>
#include <vector>

// The test executable defines __android_log_print itself, which takes
// precedence over liblog's for the library. While a LogCapture is alive every
// line is recorded; otherwise lines are dropped.
struct LogLine {
    int priority;
    std::string tag;
    std::string text;
};

class LogCapture {
  public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    const std::vector<LogLine>& lines() const { return captured; }
    /** Each line as "<priority> <text>", e.g. "5 SarnISDBTUtils: ...". */
    std::vector<std::string> texts() const;
    void clear() { captured.clear(); }
    void record(int priority, const char* tag, const char* text) {
        captured.push_back({priority, tag ? tag : "", text});
    }

  private:
    std::vector<LogLine> captured;
    LogCapture* outer;
};

/** A line as LogCapture::texts() shows it: "<priority> SarnISDBTUtils: <text>". */
inline std::string logLine(int priority, const std::string& text) {
    return std::to_string(priority) + " SarnISDBTUtils: " + text;
}

/** A warning line (priority 5) as LogCapture::texts() shows it. */
inline std::string warnLine(const std::string& text) {
    return logLine(5, text);
}

#endif
