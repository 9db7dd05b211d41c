#pragma once
// The coordinates of a feature held flat: every point of every part in one block, with
// where each part ends, or a lone point (symbols, texts) held in place without a block.
// A plan holds hundreds of thousands of these: one allocation each, instead of one per
// part and one for the list of parts.
//
// Read like a list of parts (size, [], iteration, front, back), each part a PartView of
// its points. Parts (a vector of vectors) is what callers build and edit; a Shape is made
// from it and gives it back.

#include "base/index_iterator.h"
#include "carto/geometry/point.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace carto {

// Rings of a region (each polygon's shell then its holes), lines of a line feature, or
// the single point of a symbol or a text.
using Part = std::vector<Point>;
using Parts = std::vector<Part>;

// One part's points, valid while the Shape it came from stays unchanged.
class PartView {
public:
    using value_type = Point;
    using const_iterator = const Point*;
    using iterator = const Point*;

    PartView() = default;
    PartView(const Point* first, std::size_t count) : first_(first), count_(count) {}
    PartView(const Part& part) : first_(part.data()), count_(part.size()) {} // NOLINT

    std::size_t size() const { return count_; }
    bool empty() const { return count_ == 0; }
    const Point& operator[](std::size_t i) const { return first_[i]; }
    const Point& at(std::size_t i) const; // std::out_of_range past the end
    const Point& front() const { return first_[0]; }
    const Point& back() const { return first_[count_ - 1]; }
    const Point* begin() const { return first_; }
    const Point* end() const { return first_ + count_; }
    const Point* data() const { return first_; }

    operator Part() const { return Part(begin(), end()); }

    friend bool operator==(PartView a, PartView b);
    friend bool operator==(PartView a, const Part& b) { return a == PartView(b.data(), b.size()); }

private:
    const Point* first_ = nullptr;
    std::size_t count_ = 0;
};

// A shape's parts read where its points lie, in a Shape or in a layer's columns: valid
// while what holds them stays unchanged. `ends` (where each part ends) only when there
// are several parts.
class ShapeView {
public:
    using const_iterator = veldra::IndexIterator<ShapeView, PartView>;
    using iterator = const_iterator;
    using value_type = PartView;

    ShapeView() = default;
    ShapeView(std::span<const Point> points, const std::uint32_t* ends, std::size_t parts)
        : points_(points), ends_(ends), parts_(parts) {}

    std::size_t size() const { return parts_; }
    bool empty() const { return parts_ == 0; }
    PartView operator[](std::size_t i) const {
        if (parts_ == 1)
            return {points_.data(), points_.size()};
        const std::uint32_t first = i == 0 ? 0 : ends_[i - 1];
        return {points_.data() + first, ends_[i] - first};
    }
    PartView front() const { return (*this)[0]; }
    const_iterator begin() const { return {this, 0}; }
    const_iterator end() const { return {this, parts_}; }
    std::span<const Point> points() const { return points_; }
    // Where each part ends; none for a single part.
    std::span<const std::uint32_t> ends() const { return {ends_, parts_ > 1 ? parts_ : 0}; }

    friend bool operator==(ShapeView a, ShapeView b);

private:
    std::span<const Point> points_;
    const std::uint32_t* ends_ = nullptr;
    std::size_t parts_ = 0;
};

class Shape {
public:
    using const_iterator = veldra::IndexIterator<Shape, PartView>;
    using iterator = const_iterator;
    using value_type = PartView;

    Shape() = default;
    Shape(const Parts& parts); // NOLINT: a Shape stands wherever its parts are given
    Shape(std::span<const Point> points, std::span<const std::uint32_t> ends);
    explicit Shape(ShapeView view);
    Shape(const Shape& other);
    Shape(Shape&& other) noexcept;
    Shape& operator=(const Shape& other);
    Shape& operator=(Shape&& other) noexcept;
    ~Shape();

    std::size_t size() const { return parts_; }
    bool empty() const { return parts_ == 0; }
    PartView operator[](std::size_t i) const;
    PartView at(std::size_t i) const; // std::out_of_range past the end
    PartView front() const { return (*this)[0]; }
    PartView back() const { return (*this)[parts_ - 1]; }
    const_iterator begin() const { return {this, 0}; }
    const_iterator end() const { return {this, parts_}; }

    // Every point of every part, in order.
    std::span<const Point> points() const { return {pointData(), points_}; }
    // Every point, to move them in place; the parts keep their sizes.
    std::span<Point> points() { return {pointData(), points_}; }

    Parts toParts() const;
    operator Parts() const { return toParts(); }
    ShapeView view() const { return {points(), ends(), parts_}; }
    operator ShapeView() const { return view(); } // NOLINT: read wherever a view is

    friend bool operator==(const Shape& a, const Shape& b);

private:
    bool inPlace() const { return points_ <= 1 && parts_ <= 1; }
    const Point* pointData() const { return inPlace() ? &one_ : block_; }
    Point* pointData() { return inPlace() ? &one_ : block_; }
    // Where each part ends, after the points; none for a single part.
    const std::uint32_t* ends() const;
    void adopt(std::span<const Point> points, std::span<const std::uint32_t> ends);
    // Sets the counts and makes room (in place or in a block); where the points go.
    Point* allocate(std::size_t points, std::size_t parts);
    // Where the part ends, kept only when there are several.
    void setEnd(std::size_t part, std::uint32_t end);
    void release();
    // Takes the other's points, leaving it empty.
    void take(Shape& other) noexcept;

    std::uint32_t parts_ = 0;
    std::uint32_t points_ = 0;
    union {
        Point one_{};
        Point* block_;
    };
};

// Builds shapes part by part into buffers it keeps, so reading many features allocates
// only each finished Shape.
class ShapeBuilder {
public:
    void clear() {
        points_.clear();
        ends_.clear();
    }
    void addPoint(Point p) { points_.push_back(p); }
    // Ends the part begun since the last one ended.
    void endPart() { ends_.push_back(std::uint32_t(points_.size())); }
    bool empty() const { return ends_.empty(); }
    Shape build() const { return Shape(points_, ends_); }

private:
    std::vector<Point> points_;
    std::vector<std::uint32_t> ends_;
};

} // namespace carto
