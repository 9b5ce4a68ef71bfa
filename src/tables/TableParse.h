#ifndef SARN_TABLES_TABLEPARSE_H
#define SARN_TABLES_TABLEPARSE_H

// What the table parsers share: the frame of a table's parse (the object
// under construction, its header checks, its end), the runs of entries that
// each take the rest of their loop, and an entry's check of its fixed
// fields, its descriptor loop and its end.
//
// An entry class offers
//   static Entry* parse(unsigned char* data, unsigned int length, int,
//                       unsigned int* bytesRead, unsigned short* error);
// and reports the bytes it used, never more than it was given.

#include <memory>

#include "Arena.h"
#include "DescriptorLoop.h"
#include "ISDBTUtils.h"
#include "Log.h"
#include "Parse.h"
#include "Reader.h"

#pragma GCC visibility push(hidden)  // internal: not exported
namespace Sarn {
namespace tables {

/**
 * The parse of a table: takes fresh, built over (bytes, length), checks its
 * common and long-form headers, then has body(table, remaining) read the
 * rest, where remaining counts the body bytes after the long-form header, up
 * to the CRC32. The finished table with the code 0; null (the table deleted)
 * when the headers are refused or body returns false, each having logged its
 * line and set its code.
 */
template <class T, class Body>
T* parse(T* fresh, unsigned char* bytes, unsigned int length, int checkCrc, unsigned short* error,
         T* previous, Body body) {
    std::unique_ptr<T> table(fresh);
    unsigned short remaining = 0;
    if (!table->parseCommonHeader(bytes, length, checkCrc, error, &remaining, previous) ||
        !body(*table, remaining))
        return nullptr;
    return parse::done(error, table);
}

/** Writes the bytes in has read through bytesRead (when non-null) and hands entry over with the
 * code 0. */
template <class T>
T* finish(const bytes::Reader& in, unsigned int* bytesRead, unsigned short* error,
          std::unique_ptr<T>& entry) {
    if (bytesRead != nullptr)
        *bytesRead = in.position();
    return parse::done(error, entry);
}

/**
 * The first block of a table's arena (core/Arena.h) for a section of length
 * bytes: room for the table and, for most sections, everything it holds, so
 * that one allocation serves the whole parse. The objects take several times
 * the bytes they are read from: about 11 per byte for a PAT, up to 17 for a
 * PMT or an SDT of small descriptors, under 6 for events and most others
 * (measured over real sections); perByte is what the caller's kind needs.
 */
inline std::size_t blockFor(unsigned int length, unsigned int perByte = 6) {
    return 256u + perByte * static_cast<std::size_t>(length);
}

/**
 * A new T built in arena (leading are the constructor's arguments before its
 * bytes and length), holding its copy of the length bytes at bytes right
 * after it in the same room.
 */
template <class T, class... A>
T* build(memory::Arena& arena, unsigned char* bytes, unsigned int length, A... leading) {
    return arena.makeHolding<T>(bytes, length, leading..., nullptr, 0u);
}

/** A reader over (data, length) at byte 8, the first after the long-form header. */
inline bytes::Reader afterHeader(const unsigned char* data, unsigned int length) {
    bytes::Reader section(data, length);
    section.skip(8);
    return section;
}

/**
 * True when in holds the n bytes of an entry's fixed fields; otherwise logs
 * "<entry>::parse: Item length not valid: <shown>" and sets the code 2564
 * (ERROR_DATA_TOO_SHORT).
 */
inline bool hasFixed(const bytes::Reader& in, unsigned int n, const char* entry, unsigned int shown,
                     unsigned short* error) {
    if (in.has(n))
        return true;
    SARN_LOGW("%s: %s::parse: Item length not valid: %u. Aborting!", entry, shown);
    return parse::refuse(error, ERROR_DATA_TOO_SHORT);
}

/**
 * Walks the n bytes at in's position as owner's descriptor loop, building
 * the descriptors in arena (on the heap when null), and steps over them: the bytes the walk used,
 * fewer than n when the loop ends in a stray byte or a descriptor that overruns it.
 */
inline unsigned int readDescriptors(memory::Arena* arena, DescriptorLoop& owner, bytes::Reader& in,
                                    unsigned int n) {
    const unsigned int read = memory::Builder::descriptors(arena, owner, in.mutableCurrent(), n);
    in.skip(n);
    return read;
}

/**
 * The Entry at body's position, parsed from every byte left in body, which
 * steps over the bytes it reports (also written to read when non-null). Null
 * when it fails: logged as "<table>::parse: Invalid item" with the code 2562
 * (ERROR_INVALID_ITEM).
 */
template <class Entry>
Entry* nextEntry(memory::Arena& arena, bytes::Reader& body, const char* table,
                 unsigned short* error, unsigned int* read = nullptr) {
    unsigned int n = 0;
    Entry* entry = memory::Builder::build<Entry>(&arena, body.mutableCurrent(), body.remaining(), 1,
                                                 &n, error);
    if (entry == nullptr) {
        SARN_LOGW("%s: %s::parse: Invalid item. Aborting!", table);
        return parse::fail(error, ERROR_INVALID_ITEM);
    }
    body.skip(n);
    if (read != nullptr)
        *read = n;
    return entry;
}

/** Entries until body is at its end, each handed to store (which owns it): false at a failure. */
template <class Entry, class Store>
bool readToEnd(memory::Arena& arena, bytes::Reader& body, const char* table, unsigned short* error,
               Store store) {
    while (!body.atEnd()) {
        Entry* entry = nextEntry<Entry>(arena, body, table, error);
        if (entry == nullptr)
            return false;
        store(entry);
    }
    return true;
}

/**
 * Entries while loopLength, less the bytes of each, is not 0, each handed to
 * store: false at a failure. The count runs down to exactly 0: one that is
 * not a sum of whole entries wraps, and the walk goes on until an entry
 * fails, at the latest at the end of body.
 */
template <class Entry, class Store>
bool readLoop(memory::Arena& arena, bytes::Reader& body, unsigned short loopLength,
              const char* table, unsigned short* error, Store store) {
    while (loopLength != 0) {
        unsigned int read = 0;
        Entry* entry = nextEntry<Entry>(arena, body, table, error, &read);
        if (entry == nullptr)
            return false;
        store(entry);
        loopLength = static_cast<unsigned short>(loopLength - read);
    }
    return true;
}

}  // namespace tables
}  // namespace Sarn
#pragma GCC visibility pop

#endif
