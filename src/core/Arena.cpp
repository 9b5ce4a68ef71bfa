#include "Arena.h"

#include <cstring>
#include <new>

namespace Sarn {
namespace memory {

// A block: this count, then objects, each after a Header naming the block.
//
// While the arena fills a block, its count starts from kOpen, far above any
// number of objects, and objects deleted meanwhile (a parse that fails, an
// entry displaced by a repeated key) count it down; the objects placed are
// added in one step when the arena lets the block go. The count reaches 0
// only after that, when the last object in the block is deleted.
struct Arena::Block {
    std::atomic<unsigned int> holders;
};

using Block = Arena::Block;
using Header = Arena::Header;

namespace {

constexpr unsigned int kOpen = 0x40000000u;

constexpr std::size_t kBlockHeader = Arena::roundUp(sizeof(Block));

void unhold(Block* block, unsigned int count) noexcept {
    if (block->holders.fetch_sub(count, std::memory_order_acq_rel) == count) {
        block->~Block();
        ::operator delete(block);
    }
}

}  // namespace

Arena::~Arena() {
    close();
}

void Arena::close() noexcept {
    if (block == nullptr)
        return;
    // kOpen - placed: what the block counts beyond its objects once the arena lets it go.
    unhold(block, kOpen - placed);
    block = nullptr;
    placed = 0;
}

void Arena::open(std::size_t need) {
    // A full block stays with its objects; the next one is twice as big.
    const std::size_t room = need > nextSize ? need : nextSize;
    unsigned char* raw = static_cast<unsigned char*>(::operator new(kBlockHeader + room));
    Block* fresh = new (raw) Block{{kOpen}};
    close();
    block = fresh;
    next = raw + kBlockHeader;
    free = room;
    SARN_POISON(next, free);
    nextSize *= 2;
}

void Arena::hold(TISDBTDataHolder& holder, unsigned char* copy, const unsigned char* bytes,
                 unsigned int length) {
    holder.dataLength = length;
    // As for a copy on the heap, null or empty bytes are not copied.
    holder.data = copy;
    holder.ownsData = 1;
    if (copy != nullptr) {
        std::memcpy(copy, bytes, length);
        holder.ownsData = 2;
    }
}

char* Text::room(std::size_t n, Arena* arena) {
    releaseObject(bytes);
    length = 0;
    bytes = nullptr;
    if (n != 0)
        bytes =
            static_cast<char*>(arena != nullptr ? allocateObject(n, *arena) : allocateObject(n));
    return bytes;
}

}  // namespace memory

void* allocateObject(std::size_t size) {
    memory::Header* header =
        static_cast<memory::Header*>(::operator new(sizeof(memory::Header) + size));
    header->block = nullptr;
    return header + 1;
}

void* allocateObject(std::size_t size, memory::Arena& arena) {
    return arena.take(size);
}

void releaseObject(void* object, std::size_t size) noexcept {
    if (object == nullptr)
        return;
    memory::Header* header = static_cast<memory::Header*>(object) - 1;
    if (header->block == nullptr) {
        ::operator delete(header);
        return;
    }
    memory::Block* block = header->block;
    SARN_POISON(header, sizeof(memory::Header) + size);
    memory::unhold(block, 1);
}

void releaseObject(void* object) noexcept {
    if (object == nullptr)
        return;
    memory::Header* header = static_cast<memory::Header*>(object) - 1;
    if (header->block == nullptr)
        ::operator delete(header);
    else
        memory::unhold(header->block, 1);
}

}  // namespace Sarn
