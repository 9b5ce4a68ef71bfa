#ifndef SARN_CORE_READER_H
#define SARN_CORE_READER_H

// The bounded cursor through which parsers read the bytes handed in.
//
// A Reader covers (data, length) and nothing else. Every read checks that its
// bytes lie inside; a read that would go past the end reads nothing, returns
// 0 (or null, or an empty sub-reader) and leaves the reader failed for good:
// every later read fails too, remaining() is 0 and ok() is false. A parser
// therefore reads a whole structure and tests ok() once where its format
// allows a short structure to be refused with one message and one code.
// Where the broadcast format (and our log) distinguishes checks, with their
// own message and error code, the parser keeps those checks explicit, with
// has() or remaining(), before it reads.
//
// sub(n) hands out the next n bytes as a reader of their own and steps over
// them, so a nested loop cannot read past its own length; when fewer than n
// bytes are left it fails (both the sub-reader and its parent).

#include <string>

#include "Bytes.h"
#include "ISDBTUtils.h"
#include "ParserUtils.h"
#include "SarnAllocation.h"

#pragma GCC visibility push(hidden)  // internal: not exported
namespace Sarn {

// Strings of 8-unit text, as ParserUtils::parseStr reads them.
namespace text {
/**
 * The string at data (after its length byte when length is 0): text and size
 * receive where it is and how long, and the bytes used are returned; -1 with
 * parseStr's log line when they run past available.
 */
int locate(const unsigned char* data, unsigned int length, unsigned int available,
           const unsigned char*& text, unsigned int& size);
/** The size bytes at text, their control codes dropped, written to out: how many were kept. */
unsigned int filter(const unsigned char* text, unsigned int size, char* out);
}  // namespace text

namespace bytes {

class Reader {
  public:
    Reader() = default;
    Reader(const unsigned char* data, unsigned int length) : base(data), size(data ? length : 0) {}

    bool ok() const { return !failed; }
    /** Bytes read so far. */
    unsigned int position() const { return pos; }
    /** Bytes left (0 once failed). */
    unsigned int remaining() const { return failed ? 0 : size - pos; }
    bool atEnd() const { return remaining() == 0; }
    /** True when n more bytes can be read; never fails the reader. */
    bool has(unsigned int n) const { return !failed && n <= size - pos; }
    /** The next byte to read (null once failed or at the start of an empty reader). */
    const unsigned char* current() const {
        return failed || base == nullptr ? nullptr : base + pos;
    }
    unsigned char* mutableCurrent() const { return const_cast<unsigned char*>(current()); }

    unsigned char u8() { return take(1) ? base[pos - 1] : 0; }
    unsigned short u16() { return take(2) ? be16(base + pos - 2) : 0; }
    unsigned int u24() { return take(3) ? be24(base + pos - 3) : 0; }
    unsigned int u32() { return take(4) ? be32(base + pos - 4) : 0; }
    /** 13-bit PID after three reserved bits. */
    unsigned short pid() { return take(2) ? pid13(base + pos - 2) : 0; }
    /** 12-bit length after four reserved bits. */
    unsigned short length12() { return take(2) ? len12(base + pos - 2) : 0; }

    /** Three BCD bytes hh mm ss, as seconds (hours are not limited to 23). */
    unsigned int bcdTime() {
        const unsigned int hours = ISDBTUtils::bcd2U8(u8());
        const unsigned int minutes = ISDBTUtils::bcd2U8(u8());
        return hours * 3600u + minutes * 60u + ISDBTUtils::bcd2U8(u8());
    }
    /**
     * A 16-bit MJD and BCD hh mm ss, as seconds since 1970: the broadcast's
     * wall-clock time taken as UTC (days up to 1970-01-01 read as that day).
     */
    unsigned int mjdTime() {
        const unsigned int day = ISDBTUtils::mjd2unix(u16());
        return day + bcdTime();
    }

    /** The byte at offset from the current position, without reading it; 0 outside. */
    unsigned char peek(unsigned int offset = 0) const {
        return has(offset + 1) && offset + 1 != 0 ? base[pos + offset] : 0;
    }

    /** Steps over n bytes. */
    void skip(unsigned int n) { take(n); }
    /**
     * The two header bytes (tag and length) of the next descriptor, without
     * reading them: false when fewer than two bytes are left.
     */
    bool peekHeader(unsigned char& tag, unsigned char& length) const {
        if (!has(2))
            return false;
        tag = base[pos];
        length = base[pos + 1];
        return true;
    }
    /** The next n bytes (stepped over), or null. */
    const unsigned char* bytes(unsigned int n) { return take(n) ? base + pos - n : nullptr; }

    /** The next n bytes as a reader of their own, stepped over here. */
    Reader sub(unsigned int n) {
        if (!take(n)) {
            Reader none;
            none.failed = true;
            return none;
        }
        return Reader(base + pos - n, n);
    }
    /**
     * The next n bytes, or all that is left when fewer, as a reader of its
     * own, stepped over here: for a count that may run past the bytes handed
     * in and is then bounded by them (it fails only a reader already failed).
     */
    Reader subAtMost(unsigned int n) { return sub(n < remaining() ? n : remaining()); }
    /** What is left, as a reader of its own; this reader is then at its end. */
    Reader rest() { return sub(remaining()); }

    /**
     * A string of n bytes through ParserUtils::parseStr, control codes removed:
     * the bytes consumed, or -1 (the reader fails) when they are not there.
     */
    template <class Out>
    int string(Out& out, unsigned int n, memory::Arena* arena = nullptr) {
        if (!has(n)) {
            failed = true;
            return -1;
        }
        return loggedString(out, n, arena);
    }

    /**
     * As string(), but a string longer than what is left still goes to
     * ParserUtils::parseStr, whose own log line reports the shortage. A
     * memory::Text takes its room in arena, when there is one.
     */
    int loggedString(std::string& out, unsigned int n, memory::Arena* = nullptr) {
        if (failed)
            return -1;
        return advance(ParserUtils::parseStr(mutableCurrent(), out, n, size - pos));
    }
    int loggedString(memory::Text& out, unsigned int n, memory::Arena* arena = nullptr) {
        if (failed)
            return -1;
        const unsigned char* text = nullptr;
        unsigned int length = 0;
        const int used = text::locate(current(), n, size - pos, text, length);
        if (used >= 0)
            out.keep(text::filter(text, length, out.room(length, arena)));
        return advance(used);
    }

    /**
     * n bytes copied through ParserUtils::parseByteArray into target (an owned
     * array, freed with delete[]), with that function's log lines: true when
     * target holds them. When fewer than n bytes are left nothing is read,
     * target is left alone and the reader fails.
     */
    bool byteArray(unsigned char*& target, unsigned char n) {
        if (!has(n)) {
            failed = true;
            return false;
        }
        ParserUtils::parseByteArray(mutableCurrent(), target, n);
        pos += n;
        return target != nullptr;
    }

    /** Marks the reader failed (a value read was out of range for the format). */
    void fail() { failed = true; }

  private:
    /** Steps over used bytes, or fails the reader for -1: used, either way. */
    int advance(int used) {
        if (used < 0) {
            failed = true;
            return -1;
        }
        pos += static_cast<unsigned int>(used);
        return used;
    }

    bool take(unsigned int n) {
        if (failed || n > size - pos) {
            failed = true;
            return false;
        }
        pos += n;
        return true;
    }

    const unsigned char* base = nullptr;
    unsigned int size = 0;
    unsigned int pos = 0;
    bool failed = false;
};

}  // namespace bytes
}  // namespace Sarn
#pragma GCC visibility pop

#endif
