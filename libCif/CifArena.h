#ifndef CIFWARD_CIFARENA_H
#define CIFWARD_CIFARENA_H

#include "THandle.h"

#include <cstddef>
#include <new>
#include <string>
#include <unordered_set>
#include <utility>

// Memory for the model of one document: taken in chunks that grow as the document does, handed
// out in order, and given back all at once when the last thing placed in it has gone. A file of
// half a million data items would otherwise cost half a million allocations to read and as many
// to free, and a page fault for every few of them; large chunks are put on huge pages where the
// system offers them.
//
// Objects made here are handled like any other (THandle), and each keeps the arena alive, so a
// handle that outlives its document stays valid. The arena is used by one thread at a time.
class CifArena {
public:
    // A share in an arena, which lives as long as any share does.
    class Ref {
    public:
        Ref() = default;
        explicit Ref(CifArena* arena) : arena_(arena)
        {
            if (arena_)
                ++arena_->uses_;
        }
        Ref(const Ref& other) : Ref(other.arena_) {}
        Ref& operator=(Ref other) noexcept
        {
            std::swap(arena_, other.arena_);
            return *this;
        }
        ~Ref()
        {
            if (arena_)
                arena_->release();
        }
        CifArena* get() const { return arena_; }
        CifArena* operator->() const { return arena_; }
        explicit operator bool() const { return arena_ != nullptr; }

    private:
        CifArena* arena_ = nullptr;
    };

    CifArena(const CifArena&) = delete;
    CifArena& operator=(const CifArena&) = delete;

    static Ref create() { return Ref(new CifArena); }

    // Room for `size` bytes, aligned for any object of the model; never given back on its own.
    void* allocate(std::size_t size)
    {
        size = (size + alignment - 1) & ~(alignment - 1);
        if (size > room_ - used_)
            add_chunk(size);
        void* at = chunk_ + used_;
        used_ += size;
        return at;
    }

    // An object placed here, with its count beside it; the arena lives at least as long.
    template <class T, class... Args> THandle<T> make(Args&&... args)
    {
        static_assert(alignof(T) <= alignment, "the arena aligns to 8 bytes");
        constexpr std::size_t count_size = (sizeof(THandleCounts) + alignment - 1) & ~(alignment - 1);
        char* memory = static_cast<char*>(allocate(count_size + sizeof(T)));
        T* object = new (memory + count_size) T(std::forward<Args>(args)...);
        ++uses_;
        auto* count = new (memory) THandleCounts{1, 0, &CifArena::give_back, this};
        return THandle<T>(object, count);
    }

    // One copy of each text asked for, as long as the arena lives: the data names of a document
    // repeat from block to block, and each item would otherwise hold its own.
    const std::string& intern(const std::string& text) { return *interned_.insert(text).first; }

private:
    static constexpr std::size_t alignment = 8;

    CifArena() = default;
    ~CifArena();
    void release()
    {
        if (--uses_ == 0)
            delete this;
    }
    static void give_back(void* arena) { static_cast<CifArena*>(arena)->release(); }
    void add_chunk(std::size_t at_least);

    struct Chunk {
        Chunk* previous;
    };

    Chunk* last_ = nullptr;
    char* chunk_ = nullptr;
    std::size_t used_ = 0;
    std::size_t room_ = 0;
    std::size_t next_size_ = 0;
    std::unordered_set<std::string> interned_;
    long uses_ = 0;
};

#endif
