#ifndef CIFWARD_THANDLE_H
#define CIFWARD_THANDLE_H

#include <cstdint>
#include <stdexcept>
#include <utility>

// The count of a handled object. An object placed in memory that is given back as a whole (an
// arena) has its count beside it, and `give_back` is called with `place` once the object has been
// destroyed, instead of the object and its count being deleted.
struct THandleCount {
    std::int32_t uses = 1;
    void (*give_back)(void* place) = nullptr;
    void* place = nullptr;
};

// Reference-counted handle. The count is a plain integer (an object is used by one thread at a
// time), allocated apart from the object so that a handle to a base class can share it with a
// handle to the derived class.
template <class T> class THandle {
public:
    THandle() = default;
    explicit THandle(T* object) : object_(object), count_(object ? new THandleCount : nullptr) {}
    // For an object placed by an allocator, whose count it has set up.
    THandle(T* object, THandleCount* count) : object_(object), count_(count) {}
    THandle(const THandle& other) : object_(other.object_), count_(other.count_) { acquire(); }
    THandle(THandle&& other) noexcept : object_(other.object_), count_(other.count_)
    {
        other.object_ = nullptr;
        other.count_ = nullptr;
    }
    template <class U> THandle(const THandle<U>& other) : object_(other.object_), count_(other.count_)
    {
        acquire();
    }
    ~THandle() { release(); }

    THandle& operator=(THandle other) noexcept
    {
        std::swap(object_, other.object_);
        std::swap(count_, other.count_);
        return *this;
    }

    T& operator*() const { return *checked(); }
    T* operator->() const { return checked(); }
    T* get() const { return object_; }
    explicit operator bool() const { return object_ != nullptr; }
    bool is_null() const { return object_ == nullptr; }
    std::int32_t use_count() const { return count_ ? count_->uses : 0; }

    friend bool operator==(const THandle& a, const THandle& b) { return a.object_ == b.object_; }
    friend bool operator!=(const THandle& a, const THandle& b) { return a.object_ != b.object_; }
    friend bool operator<(const THandle& a, const THandle& b) { return a.object_ < b.object_; }

private:
    template <class U> friend class THandle;

    T* checked() const
    {
        if (!object_)
            throw std::logic_error("Internal error: access of null handle");
        return object_;
    }
    void acquire()
    {
        if (count_)
            ++count_->uses;
    }
    void release()
    {
        THandleCount* count = count_;
        T* object = object_;
        object_ = nullptr;
        count_ = nullptr;
        if (!count || --count->uses != 0)
            return;
        if (count->give_back) {
            // The count lies in the memory given back, so what the giving back needs is read first.
            void (*give_back)(void*) = count->give_back;
            void* place = count->place;
            object->~T();
            give_back(place);
            return;
        }
        delete object;
        delete count;
    }

    T* object_ = nullptr;
    THandleCount* count_ = nullptr;
};

#endif
