#include "Arena.h"

#include <cstring>
#include <new>

namespace Sarn {
namespace memory {

// A block: this header, then objects, each after a Header naming the block.
//
// While the arena fills a block, its count starts from kOpen, far above any
// number of objects, and objects deleted meanwhile (a parse that fails, an
// entry displaced by a repeated key) count it down; the objects placed are
// added in one step when the arena lets the block go. The count reaches 0
// only after that, when the last object in the block is deleted.
struct Arena::Block {
    std::atomic<unsigned int> holders;
    std::size_t size;
    std::size_t used;
};

using Block = Arena::Block;

namespace {

constexpr unsigned int kOpen = 0x40000000u;

// Eight bytes on every target, so that an object after it is aligned for
// 64-bit fields on 32-bit ARM as well.
struct alignas(8) Header {
    Block* block;
};

constexpr std::size_t kAlign = alignof(Header);

constexpr std::size_t roundUp(std::size_t n) {
    return (n + kAlign - 1) & ~(kAlign - 1);
}

constexpr std::size_t kBlockHeader = roundUp(sizeof(Block));

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
    const std::size_t total = kBlockHeader + (need > nextSize ? need : nextSize);
    Block* fresh = new (::operator new(total)) Block{{kOpen}, total, kBlockHeader};
    close();
    block = fresh;
    nextSize *= 2;
}

void* Arena::take(std::size_t size) {
    const std::size_t need = roundUp(sizeof(Header) + size);
    if (block == nullptr || block->size - block->used < need)
        open(need);
    Header* header =
        reinterpret_cast<Header*>(reinterpret_cast<unsigned char*>(block) + block->used);
    block->used += need;
    ++placed;
    header->block = block;
    return header + 1;
}

void Arena::holdCopy(TISDBTDataHolder& holder, const unsigned char* bytes, unsigned int length) {
    holder.dataLength = length;
    // As for a copy on the heap, null or empty bytes are not copied.
    if (bytes == nullptr || length == 0) {
        holder.data = nullptr;
        holder.ownsData = 1;
        return;
    }
    holder.data = static_cast<unsigned char*>(take(length));
    std::memcpy(holder.data, bytes, length);
    holder.ownsData = 2;
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
