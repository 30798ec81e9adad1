#pragma once

#include "MoleculeError.h"

#include <cstddef>
#include <iterator>
#include <memory>

// An iterator over the handles a molecule holds that hides the container behind it, so that a
// caller of the Molecule interface sees one iterator type for every kind of molecule. Iterators
// over different containers cannot be compared or subtracted.
template <class Value> class PolymorphicIterator {
public:
    class Impl {
    public:
        virtual ~Impl() = default;
        virtual std::unique_ptr<Impl> clone() const = 0;
        virtual const Value& get() const = 0;
        virtual void advance(std::ptrdiff_t n) = 0;
        virtual std::ptrdiff_t distance(const Impl& other) const = 0;
        virtual bool equal(const Impl& other) const = 0;
    };

    using iterator_category = std::forward_iterator_tag;
    using value_type = Value;
    using difference_type = std::ptrdiff_t;
    using pointer = const Value*;
    using reference = const Value&;

    explicit PolymorphicIterator(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}
    PolymorphicIterator(const PolymorphicIterator& o) : impl_(o.impl_->clone()) {}
    PolymorphicIterator& operator=(const PolymorphicIterator& o)
    {
        impl_ = o.impl_->clone();
        return *this;
    }

    const Value& operator*() const { return impl_->get(); }
    const Value* operator->() const { return &impl_->get(); }
    PolymorphicIterator& operator++()
    {
        impl_->advance(1);
        return *this;
    }
    bool operator==(const PolymorphicIterator& o) const { return impl_->equal(*o.impl_); }
    bool operator!=(const PolymorphicIterator& o) const { return !impl_->equal(*o.impl_); }
    std::ptrdiff_t operator-(const PolymorphicIterator& o) const { return impl_->distance(*o.impl_); }

private:
    std::unique_ptr<Impl> impl_;
};

// The iterator of one kind of container behind a PolymorphicIterator.
template <class Value, class It> class PolymorphicIteratorImpl : public PolymorphicIterator<Value>::Impl {
    using Base = typename PolymorphicIterator<Value>::Impl;

public:
    explicit PolymorphicIteratorImpl(It it) : it_(it) {}
    static PolymorphicIterator<Value> make(It it)
    {
        return PolymorphicIterator<Value>(std::make_unique<PolymorphicIteratorImpl>(it));
    }

    std::unique_ptr<Base> clone() const override { return std::make_unique<PolymorphicIteratorImpl>(it_); }
    const Value& get() const override { return *it_; }
    void advance(std::ptrdiff_t n) override { std::advance(it_, n); }
    std::ptrdiff_t distance(const Base& other) const override
    {
        const auto* o = dynamic_cast<const PolymorphicIteratorImpl*>(&other);
        if (!o)
            throw molecule_error("PolymorphicIteratorImpl::distance types mismatch");
        return std::distance(o->it_, it_);
    }
    bool equal(const Base& other) const override
    {
        const auto* o = dynamic_cast<const PolymorphicIteratorImpl*>(&other);
        if (!o)
            throw molecule_error("PolymorphicIteratorImpl::equal types mismatch");
        return it_ == o->it_;
    }

private:
    It it_;
};
