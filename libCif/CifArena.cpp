#include "CifArena.h"

#include <algorithm>
#include <cstdlib>
#include <new>
#include <sys/mman.h>

namespace {
// A small file's model fits in the first chunk; each next one is twice the size, up to chunks of
// a few huge pages.
constexpr std::size_t first_chunk = std::size_t{16} << 10;
constexpr std::size_t largest_chunk = std::size_t{4} << 20;
constexpr std::size_t huge_page = std::size_t{2} << 20;
constexpr std::size_t header = 16;
} // namespace

CifArena::~CifArena()
{
    while (last_) {
        Chunk* previous = last_->previous;
        std::free(last_);
        last_ = previous;
    }
}

void CifArena::add_chunk(std::size_t at_least)
{
    next_size_ = next_size_ == 0 ? first_chunk : std::min(2 * next_size_, largest_chunk);
    std::size_t size = std::max(next_size_, at_least + header);
    void* memory = nullptr;
    if (size >= huge_page) {
        // Whole huge pages, on a huge page boundary: one page fault where there would be 512.
        size = (size + huge_page - 1) & ~(huge_page - 1);
        memory = std::aligned_alloc(huge_page, size);
#ifdef MADV_HUGEPAGE
        if (memory)
            ::madvise(memory, size, MADV_HUGEPAGE);
#endif
    }
    if (!memory)
        memory = std::malloc(size);
    if (!memory)
        throw std::bad_alloc();
    Chunk* chunk = static_cast<Chunk*>(memory);
    chunk->previous = last_;
    last_ = chunk;
    chunk_ = static_cast<char*>(memory) + header;
    used_ = 0;
    room_ = size - header;
}
