#pragma once
// A forward iterator over a container read by index, each element made by its operator[]
// as a value: for containers that hold their elements packed, not as objects.

#include <cstddef>
#include <iterator>

namespace veldra {

template <typename Container, typename Value> class IndexIterator {
public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = Value;
    using difference_type = std::ptrdiff_t;
    using pointer = void;
    using reference = Value;

    IndexIterator() = default;
    IndexIterator(const Container* container, std::size_t i) : container_(container), i_(i) {}
    Value operator*() const { return (*container_)[i_]; }
    IndexIterator& operator++() {
        ++i_;
        return *this;
    }
    IndexIterator operator++(int) {
        IndexIterator before = *this;
        ++i_;
        return before;
    }
    bool operator==(const IndexIterator& o) const { return i_ == o.i_; }

private:
    const Container* container_ = nullptr;
    std::size_t i_ = 0;
};

} // namespace veldra
