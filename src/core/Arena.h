#ifndef SARN_CORE_ARENA_H
#define SARN_CORE_ARENA_H

// Blocks shared by the objects of one parsed table.
//
// A table's parse opens an Arena and builds the table, its entries and
// their descriptors in it with new (arena) T(...). The arena hands out room
// from a block it takes from the heap, and opens a further block when one is
// full. Each object is preceded by a header that names its block (or none,
// for an object a caller created with new), and each block counts the
// objects in it; delete gives an object's room back through releaseObject,
// and the block goes back to the heap with its last object. So ownership
// stays per object, exactly as the classes declare it: a table deletes what
// it owns, and an entry that a caller took out of it lives on until the
// caller deletes it. (Internal: the export map leaves these out.)

#include <atomic>
#include <cstddef>
#include <utility>

#include "SarnAllocation.h"
#include "TISDBTDataHolder.h"

// Under AddressSanitizer the free room of a block and the room of every
// object deleted from it are poisoned, so that a use of a deleted object is
// reported although its block lives on.
#if defined(__SANITIZE_ADDRESS__)
#define SARN_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define SARN_ASAN 1
#endif
#endif
#ifdef SARN_ASAN
#include <sanitizer/asan_interface.h>
#define SARN_POISON(p, n) ASAN_POISON_MEMORY_REGION(p, n)
#define SARN_UNPOISON(p, n) ASAN_UNPOISON_MEMORY_REGION(p, n)
#else
#define SARN_POISON(p, n) ((void)(p), (void)(n))
#define SARN_UNPOISON(p, n) ((void)(p), (void)(n))
#endif

namespace Sarn {
namespace memory {

class Arena {
  public:
    struct Block;
    /**
     * What precedes every object: its block, or null on the heap. Eight
     * bytes on every target, so that the object after it is aligned for
     * 64-bit fields on 32-bit ARM as well.
     */
    struct alignas(8) Header {
        Block* block;
    };
    static constexpr std::size_t kAlign = alignof(Header);
    /** n rounded up to the alignment of every room. */
    static constexpr std::size_t roundUp(std::size_t n) { return (n + kAlign - 1) & ~(kAlign - 1); }

    /** An arena whose first block, taken at the first object, holds at least firstBlock bytes. */
    explicit Arena(std::size_t firstBlock)
        : block(nullptr), next(nullptr), free(0), placed(0), nextSize(firstBlock) {}
    Arena(const Arena&) = delete;
    Arena& operator=(const Arena&) = delete;
    ~Arena();

    /** Room for size bytes, after a header naming the block. */
    void* take(std::size_t size) {
        const std::size_t need = roundUp(sizeof(Header) + size);
        if (block == nullptr || free < need)
            open(need);
        Header* header = reinterpret_cast<Header*>(next);
        SARN_UNPOISON(header, need);
        next += need;
        free -= need;
        ++placed;
        header->block = block;
        return header + 1;
    }

    /**
     * A new T (constructed from args, which give it no bytes) holding its
     * copy of the length bytes at bytes: one room in the block for both, so
     * the copy goes with the object.
     */
    template <class T, class... A>
    T* makeHolding(const unsigned char* bytes, unsigned int length, A... args) {
        const std::size_t object = roundUp(sizeof(T));
        const bool copied = bytes != nullptr && length != 0;
        unsigned char* room = static_cast<unsigned char*>(take(object + (copied ? length : 0)));
        T* holder = ::new (room) T(args...);
        hold(*holder, copied ? room + object : nullptr, bytes, length);
        return holder;
    }

  private:
    /** Copies bytes to copy (null: none to copy) and gives them to holder. */
    static void hold(TISDBTDataHolder& holder, unsigned char* copy, const unsigned char* bytes,
                     unsigned int length);
    void open(std::size_t need);
    void close() noexcept;

    Block* block;
    unsigned char* next;  // the free room of the block, from here
    std::size_t free;     // and this long
    unsigned int placed;  // objects put in the block since it was opened
    std::size_t nextSize;
};

/**
 * The way into the parses that build in an arena: a class whose parse can
 * build in one declares build(Arena*, the arguments of its parse), private,
 * with this struct as a friend; its public parse is build(nullptr, ...),
 * which builds on the heap.
 */
struct Builder {
    template <class T, class... A>
    static T* build(Arena* arena, A... args) {
        return T::build(arena, args...);
    }
    /** owner's descriptor loop over (data, length), its descriptors built in arena. */
    template <class Loop>
    static unsigned int descriptors(Arena* arena, Loop& owner, unsigned char* data,
                                    unsigned int length) {
        return owner.parseDescriptorsLoop(arena, data, length);
    }
};

/**
 * While it lives, vector (empty, a BlockVector) takes its room in arena
 * (when there is one); afterwards it keeps what it holds and grows on the
 * heap again, since the arena lives no longer than the parse.
 */
template <class Vector>
class VectorInArena {
  public:
    VectorInArena(Vector& filled, Arena* arena) : vector(filled) {
        if (arena != nullptr && vector.capacity() == 0)
            vector = Vector(typename Vector::allocator_type(arena));
    }
    VectorInArena(const VectorInArena&) = delete;
    VectorInArena& operator=(const VectorInArena&) = delete;
    ~VectorInArena() { vector = Vector(std::move(vector), typename Vector::allocator_type()); }

  private:
    Vector& vector;
};

/** Room for n values of T (left as it is), in arena when there is one; freed with releaseObject. */
template <class T>
T* newArray(Arena* arena, std::size_t n) {
    const std::size_t size = n * sizeof(T);
    return static_cast<T*>(arena != nullptr ? allocateObject(size, *arena) : allocateObject(size));
}

/** new (arena) T(args...) with an arena, new T(args...) without one. */
template <class T, class... A>
T* make(Arena* arena, A&&... args) {
    return arena != nullptr ? new (*arena) T(static_cast<A&&>(args)...)
                            : new T(static_cast<A&&>(args)...);
}

}  // namespace memory
}  // namespace Sarn

/**
 * Defines T::parse of a descriptor class as its build on the heap, and opens
 * the definition of T::build with the given parameter names:
 *     SARN_DESCRIPTOR_PARSE(TXxxDescriptor, arena, data, length, bytesRead, error) {
 *         ...
 *     }
 */
#define SARN_DESCRIPTOR_PARSE(T, arena, data, length, bytesRead, error)             \
    T* T::parse(unsigned char* data, unsigned int length, unsigned int* bytesRead,  \
                unsigned short* error) {                                            \
        return build(nullptr, data, length, bytesRead, error);                      \
    }                                                                               \
    T* T::build([[maybe_unused]] ::Sarn::memory::Arena* arena, unsigned char* data, \
                unsigned int length, [[maybe_unused]] unsigned int* bytesRead,      \
                [[maybe_unused]] unsigned short* error)

/** The same for a table's loop entry (the integer of its parse is not used). */
#define SARN_ENTRY_PARSE(T, arena, data, length, bytesRead, error)                             \
    T* T::parse(unsigned char* data, unsigned int length, int unused, unsigned int* bytesRead, \
                unsigned short* error) {                                                       \
        return build(nullptr, data, length, unused, bytesRead, error);                         \
    }                                                                                          \
    T* T::build([[maybe_unused]] ::Sarn::memory::Arena* arena, unsigned char* data,            \
                unsigned int length, int, [[maybe_unused]] unsigned int* bytesRead,            \
                [[maybe_unused]] unsigned short* error)

#endif
