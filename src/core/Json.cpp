#include "Json.h"

#include <ctime>

namespace Sarn {
namespace json {

Out& Out::zeroFilled(long long v, int width) {
    // Same text as a stream with setfill('0') and setw(width): the padding
    // goes in front of the whole number, sign included.
    char buf[24];
    auto r = std::to_chars(buf, buf + sizeof buf, v);
    for (int i = static_cast<int>(r.ptr - buf); i < width; ++i)
        s.push_back('0');
    s.append(buf, static_cast<size_t>(r.ptr - buf));
    return *this;
}

Out& Out::escaped(const char* text, std::size_t size) {
    // Copy the runs between the characters that need a backslash in one go.
    const char* p = text;
    const char* const end = p + size;
    while (p != end) {
        const char* run = p;
        while (p != end && *p != '"' && *p != '\\')
            ++p;
        s.append(run, static_cast<size_t>(p - run));
        if (p == end)
            break;
        s.push_back('\\');
        s.push_back(*p++);
    }
    return *this;
}

void appendUtcTime(Out& out, int seconds) {
    // Broadcast times are seconds since 1970 in a signed 32-bit value; widen
    // before gmtime_r so that 32- and 64-bit time_t render alike.
    time_t t = static_cast<time_t>(seconds);
    struct tm tm {};
    gmtime_r(&t, &tm);
    out << (tm.tm_year + 1900) << '-';
    out.zeroFilled(tm.tm_mon + 1, 2) << '-';
    out.zeroFilled(tm.tm_mday, 2) << ' ';
    out.zeroFilled(tm.tm_hour, 2) << ':';
    out.zeroFilled(tm.tm_min, 2) << ':';
    out.zeroFilled(tm.tm_sec, 2);
}

}  // namespace json
}  // namespace Sarn
