#ifndef CIFWARD_THANDLE_H
#define CIFWARD_THANDLE_H

#include <cstdint>
#include <stdexcept>
#include <utility>

// Reference-counted handle. The count is a plain integer (the program has one thread), allocated
// apart from the object so that a handle to a base class can share it with a handle to the
// derived class.
template <class T> class THandle {
public:
    THandle() = default;
    explicit THandle(T* object) : object_(object), count_(object ? new std::int32_t(1) : nullptr) {}
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
    std::int32_t use_count() const { return count_ ? *count_ : 0; }

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
            ++*count_;
    }
    void release()
    {
        if (count_ && --*count_ == 0) {
            delete object_;
            delete count_;
        }
        object_ = nullptr;
        count_ = nullptr;
    }

    T* object_ = nullptr;
    std::int32_t* count_ = nullptr;
};

#endif
