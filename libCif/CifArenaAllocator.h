#ifndef CIFWARD_CIFARENAALLOCATOR_H
#define CIFWARD_CIFARENAALLOCATOR_H

#include "CifArena.h"

#include <cstddef>

// A standard allocator over an arena, for the containers of the model: what they free stays in
// the arena until the arena goes. Whoever owns the container keeps the arena alive.
template <class T> class CifArenaAllocator {
public:
    using value_type = T;

    explicit CifArenaAllocator(CifArena* arena) : arena_(arena) {}
    template <class U> CifArenaAllocator(const CifArenaAllocator<U>& other) : arena_(other.arena()) {}

    T* allocate(std::size_t n) { return static_cast<T*>(arena_->allocate(n * sizeof(T))); }
    void deallocate(T*, std::size_t) {}
    CifArena* arena() const { return arena_; }

    friend bool operator==(const CifArenaAllocator& a, const CifArenaAllocator& b)
    {
        return a.arena_ == b.arena_;
    }
    friend bool operator!=(const CifArenaAllocator& a, const CifArenaAllocator& b)
    {
        return a.arena_ != b.arena_;
    }

private:
    CifArena* arena_;
};

#endif
