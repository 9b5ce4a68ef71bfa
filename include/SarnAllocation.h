#ifndef SARN_SARNALLOCATION_H
#define SARN_SARNALLOCATION_H

#include <cstddef>
#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

/** A member that only the library itself calls: not exported from it. */
#define SARN_INTERNAL __attribute__((visibility("hidden")))

namespace Sarn {
namespace memory {
/**
 * The blocks a table's parse builds its objects in (internal to the
 * library): the table, its entries and their descriptors share one block, so
 * that a parse asks the allocator once instead of once per object.
 */
class Arena;
/** How the library's parse builds objects in an arena (internal to the library). */
struct Builder;
}  // namespace memory

/** Room for an object of size bytes on the heap, as for an object that a caller creates. */
void* allocateObject(std::size_t size);
/** Room for an object of size bytes in arena's block. */
void* allocateObject(std::size_t size, memory::Arena& arena);
/**
 * Gives back the room of an object that one of the above provided: to the
 * heap, or to its block, which is freed with the last of its objects, in
 * whatever order they are deleted (an entry that a caller took out of a
 * table may outlive the table).
 */
void releaseObject(void* object) noexcept;
/** The same for an object of size bytes (which memory checkers then see as freed). */
void releaseObject(void* object, std::size_t size) noexcept;

namespace memory {

/**
 * The allocator of the vectors inside parsed objects: while a parse fills
 * them they take their room in its arena; otherwise from the heap. Any
 * instance frees what any other gave (releaseObject knows where the room
 * came from), so all compare equal.
 */
template <class T>
struct BlockAllocator {
    using value_type = T;
    using propagate_on_container_move_assignment = std::true_type;
    using is_always_equal = std::true_type;

    BlockAllocator() noexcept : arena(nullptr) {}
    explicit BlockAllocator(Arena* inArena) noexcept : arena(inArena) {}
    template <class U>
    BlockAllocator(const BlockAllocator<U>& other) noexcept : arena(other.arena) {}

    T* allocate(std::size_t n) {
        const std::size_t size = n * sizeof(T);
        return static_cast<T*>(arena != nullptr ? allocateObject(size, *arena)
                                                : allocateObject(size));
    }
    void deallocate(T* p, std::size_t n) noexcept { releaseObject(p, n * sizeof(T)); }

    template <class U>
    bool operator==(const BlockAllocator<U>&) const noexcept {
        return true;
    }
    template <class U>
    bool operator!=(const BlockAllocator<U>&) const noexcept {
        return false;
    }

    Arena* arena;
};

/** A vector of a parsed object: see BlockAllocator. */
template <class T>
using BlockVector = std::vector<T, BlockAllocator<T>>;

/**
 * The text of a parsed object (a service name, an event title): its bytes,
 * without a terminating zero, in the block of the parse that built the
 * object, or on the heap for an object built or copied outside one. Getters
 * hand out a std::string of it.
 */
class Text {
  public:
    Text() noexcept : bytes(nullptr), length(0) {}
    Text(const Text& other) : Text() { assign(other.bytes, other.length); }
    Text& operator=(const Text& other) {
        if (this != &other)
            assign(other.bytes, other.length);
        return *this;
    }
    ~Text() { releaseObject(bytes); }

    std::string str() const { return std::string(data(), length); }
    const char* data() const noexcept { return bytes != nullptr ? bytes : ""; }
    std::size_t size() const noexcept { return length; }
    bool empty() const noexcept { return length == 0; }

    /**
     * Room for n bytes in arena (on the heap without one), which the text
     * then holds, in place of what it held; keep() sets how many of them
     * count.
     */
    SARN_INTERNAL char* room(std::size_t n, Arena* arena);
    void keep(std::size_t n) noexcept { length = static_cast<unsigned int>(n); }

  private:
    void assign(const char* from, std::size_t n) {
        char* to = n != 0 ? static_cast<char*>(allocateObject(n)) : nullptr;
        if (n != 0)
            std::memcpy(to, from, n);
        releaseObject(bytes);
        bytes = to;
        length = static_cast<unsigned int>(n);
    }

    char* bytes;
    unsigned int length;
};

}  // namespace memory
}  // namespace Sarn

/**
 * The private build behind a descriptor class's parse: the same parse,
 * building in the library's arena when it has one (the library's own).
 */
#define SARN_DESCRIPTOR_BUILD(T)                                                     \
    friend struct ::Sarn::memory::Builder;                                           \
    SARN_INTERNAL static T* build(::Sarn::memory::Arena* arena, unsigned char* data, \
                                  unsigned int length, unsigned int* bytesRead,      \
                                  unsigned short* error);

/** The same for a table's loop entry, whose parse takes an integer it does not use. */
#define SARN_ENTRY_BUILD(T)                                                          \
    friend struct ::Sarn::memory::Builder;                                           \
    SARN_INTERNAL static T* build(::Sarn::memory::Arena* arena, unsigned char* data, \
                                  unsigned int length, int, unsigned int* bytesRead, \
                                  unsigned short* error);

// The usual operator delete of those classes: the sized one under
// AddressSanitizer, so that the library can poison the room of a deleted
// object (at class scope the unsized one would be chosen when both exist);
// otherwise the unsized one, a little cheaper.
#if defined(__SANITIZE_ADDRESS__)
#define SARN_SIZED_DELETE 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define SARN_SIZED_DELETE 1
#endif
#endif
#ifdef SARN_SIZED_DELETE
#define SARN_OPERATOR_DELETE                                               \
    static void operator delete(void* object, std::size_t size) noexcept { \
        ::Sarn::releaseObject(object, size);                               \
    }
#else
#define SARN_OPERATOR_DELETE                             \
    static void operator delete(void* object) noexcept { \
        ::Sarn::releaseObject(object);                   \
    }
#endif

/**
 * The allocation functions of a class whose objects a parse may build in a
 * block: new and delete work as for any class, and an object knows where its
 * room came from. new (where) T(...) still constructs in the caller's room.
 */
#define SARN_ALLOCATION_FUNCTIONS                                                \
    static void* operator new(std::size_t size) {                                \
        return ::Sarn::allocateObject(size);                                     \
    }                                                                            \
    static void* operator new(std::size_t size, ::Sarn::memory::Arena& arena) {  \
        return ::Sarn::allocateObject(size, arena);                              \
    }                                                                            \
    SARN_OPERATOR_DELETE                                                         \
    static void operator delete(void* object, ::Sarn::memory::Arena&) noexcept { \
        ::Sarn::releaseObject(object);                                           \
    }                                                                            \
    static void* operator new(std::size_t, void* where) noexcept {               \
        return where;                                                            \
    }                                                                            \
    static void operator delete(void*, void*) noexcept {}

#endif
