#ifndef CIFWARD_THANDLE_H
#define CIFWARD_THANDLE_H

#include <cstdint>
#include <stdexcept>
#include <utility>

// The counts behind a handle: strong handles keep the object, weak ones only the counts, so that
// a weak handle can tell that its object has gone. An object placed in memory that is given back
// as a whole (an arena) has its counts beside it, and `give_back` is called with `place` once the
// object has been destroyed, instead of the object and its counts being deleted; such objects
// take no weak handles.
struct THandleCounts {
    std::int32_t strong = 1;
    std::int32_t weak = 0;
    void (*give_back)(void* place) = nullptr;
    void* place = nullptr;
};

template <class T> class TWeakHandle;

// Reference-counted handle. The counts are plain integers (an object is used by one thread at a
// time), allocated
// apart from the object so that a handle to a base class can share them with a handle to the
// derived class.
template <class T> class THandle {
public:
    THandle() = default;
    explicit THandle(T* object) : object_(object), counts_(object ? new THandleCounts : nullptr) {}
    // For an object placed by an allocator, whose counts it has set up.
    THandle(T* object, THandleCounts* counts) : object_(object), counts_(counts) {}
    THandle(const THandle& other) : object_(other.object_), counts_(other.counts_) { acquire(); }
    THandle(THandle&& other) noexcept : object_(other.object_), counts_(other.counts_)
    {
        other.object_ = nullptr;
        other.counts_ = nullptr;
    }
    template <class U> THandle(const THandle<U>& other) : object_(other.object_), counts_(other.counts_)
    {
        acquire();
    }
    ~THandle() { release(); }

    THandle& operator=(THandle other) noexcept
    {
        std::swap(object_, other.object_);
        std::swap(counts_, other.counts_);
        return *this;
    }

    T& operator*() const { return *checked(); }
    T* operator->() const { return checked(); }
    T* get() const { return object_; }
    explicit operator bool() const { return object_ != nullptr; }
    bool is_null() const { return object_ == nullptr; }
    std::int32_t use_count() const { return counts_ ? counts_->strong : 0; }

    // The same object seen as a U, sharing the counts; null when it is not a U.
    template <class U> THandle<U> cast() const
    {
        THandle<U> result;
        if (U* u = dynamic_cast<U*>(object_)) {
            result.object_ = u;
            result.counts_ = counts_;
            result.acquire();
        }
        return result;
    }

    friend bool operator==(const THandle& a, const THandle& b) { return a.object_ == b.object_; }
    friend bool operator!=(const THandle& a, const THandle& b) { return a.object_ != b.object_; }
    friend bool operator<(const THandle& a, const THandle& b) { return a.object_ < b.object_; }

private:
    template <class U> friend class THandle;
    template <class U> friend class TWeakHandle;

    T* checked() const
    {
        if (!object_)
            throw std::logic_error("Internal error: access of null handle");
        return object_;
    }
    void acquire()
    {
        if (counts_)
            ++counts_->strong;
    }
    void release()
    {
        THandleCounts* counts = counts_;
        T* object = object_;
        object_ = nullptr;
        counts_ = nullptr;
        if (!counts || --counts->strong != 0)
            return;
        if (counts->give_back) {
            // The counts lie in the memory given back, so what the giving back needs is read first.
            void (*give_back)(void*) = counts->give_back;
            void* place = counts->place;
            object->~T();
            give_back(place);
            return;
        }
        // The object may hold weak handles to itself: keep the counts alive while it goes.
        ++counts->weak;
        delete object;
        if (--counts->weak == 0)
            delete counts;
    }

    T* object_ = nullptr;
    THandleCounts* counts_ = nullptr;
};

// A handle that does not keep its object: it gives a strong handle while the object lives and a
// null one afterwards.
template <class T> class TWeakHandle {
public:
    TWeakHandle() = default;
    template <class U> TWeakHandle(const THandle<U>& h) : object_(h.object_), counts_(h.counts_)
    {
        acquire();
    }
    TWeakHandle(const TWeakHandle& other) : object_(other.object_), counts_(other.counts_) { acquire(); }
    ~TWeakHandle() { release(); }
    TWeakHandle& operator=(TWeakHandle other) noexcept
    {
        std::swap(object_, other.object_);
        std::swap(counts_, other.counts_);
        return *this;
    }

    bool expired() const { return !counts_ || counts_->strong == 0; }
    THandle<T> lock() const
    {
        THandle<T> h;
        if (!expired()) {
            h.object_ = object_;
            h.counts_ = counts_;
            h.acquire();
        }
        return h;
    }
    // The address it was made from, alive or not: for identity, never for access.
    const T* address() const { return object_; }

private:
    void acquire()
    {
        if (counts_)
            ++counts_->weak;
    }
    void release()
    {
        if (counts_ && --counts_->weak == 0 && counts_->strong == 0)
            delete counts_;
        object_ = nullptr;
        counts_ = nullptr;
    }

    T* object_ = nullptr;
    THandleCounts* counts_ = nullptr;
};

#endif
