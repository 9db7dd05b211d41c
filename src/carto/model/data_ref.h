#pragma once
// A counted reference to a feature's data, the count kept in the data itself: half the size
// of a shared_ptr in every table entry and Feature, and no separate control block beside
// each of a plan's hundreds of thousands of features. The count is atomic: a render holds
// references on its worker thread while the map goes on changing.

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace carto {

// The count a referenced type holds. A copy starts at zero: it is a new object that nobody
// refers to yet.
class RefCount {
public:
    RefCount() = default;
    RefCount(const RefCount&) noexcept {}
    RefCount& operator=(const RefCount&) noexcept { return *this; }
    ~RefCount() = default;

    void add() const noexcept { n_.fetch_add(1, std::memory_order_relaxed); }
    // True when this was the last reference.
    bool drop() const noexcept { return n_.fetch_sub(1, std::memory_order_acq_rel) == 1; }
    std::uint32_t count() const noexcept { return n_.load(std::memory_order_acquire); }

    // Counts are no part of the value of what holds them.
    friend bool operator==(const RefCount&, const RefCount&) noexcept { return true; }

private:
    mutable std::atomic<std::uint32_t> n_{0};
};

// T has a `refs` member of type RefCount.
template <typename T> class DataRef {
public:
    DataRef() noexcept = default;
    DataRef(std::nullptr_t) noexcept {} // NOLINT: as a null shared_ptr converts
    // Takes a newly made object; use make() instead.
    explicit DataRef(T* adopted) noexcept : p_(adopted) { addRef(); }
    DataRef(const DataRef& o) noexcept : p_(o.p_) { addRef(); }
    DataRef(DataRef&& o) noexcept : p_(std::exchange(o.p_, nullptr)) {}
    template <typename U>
    DataRef(const DataRef<U>& o) noexcept : p_(o.get()) { // NOLINT: as T* from U*
        addRef();
    }
    template <typename U>
    DataRef(DataRef<U>&& o) noexcept : p_(std::exchange(o.p_, nullptr)) {} // NOLINT
    DataRef& operator=(DataRef o) noexcept {
        std::swap(p_, o.p_);
        return *this;
    }
    ~DataRef() {
        if (p_ && p_->refs.drop())
            delete p_;
    }

    template <typename... Args> static DataRef make(Args&&... args) {
        return DataRef(new T(std::forward<Args>(args)...));
    }

    T* get() const noexcept { return p_; }
    T& operator*() const noexcept { return *p_; }
    T* operator->() const noexcept { return p_; }
    explicit operator bool() const noexcept { return p_ != nullptr; }
    // How many references the data has: 1 when this is the only one.
    long use_count() const noexcept { return p_ ? long(p_->refs.count()) : 0; }
    void reset() noexcept { DataRef().swap(*this); }
    void swap(DataRef& o) noexcept { std::swap(p_, o.p_); }

    friend bool operator==(const DataRef& a, const DataRef& b) noexcept { return a.p_ == b.p_; }
    friend bool operator==(const DataRef& a, std::nullptr_t) noexcept { return a.p_ == nullptr; }

private:
    template <typename> friend class DataRef;
    void addRef() const noexcept {
        if (p_)
            p_->refs.add();
    }

    T* p_ = nullptr;
};

} // namespace carto
