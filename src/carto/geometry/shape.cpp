#include "carto/geometry/shape.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <limits>
#include <new>
#include <stdexcept>

namespace carto {

namespace {

std::size_t endsStored(std::size_t parts) {
    return parts > 1 ? parts : 0;
}

std::size_t blockBytes(std::size_t points, std::size_t parts) {
    return std::max<std::size_t>(points * sizeof(Point) + endsStored(parts) * sizeof(std::uint32_t),
                                 1);
}

} // namespace

const Point& PartView::at(std::size_t i) const {
    if (i >= count_)
        throw std::out_of_range("no point of that index");
    return first_[i];
}

bool operator==(PartView a, PartView b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin());
}

Shape::Shape(const Parts& parts) {
    std::size_t total = 0;
    for (const Part& part : parts)
        total += part.size();
    Point* to = allocate(total, parts.size());
    std::uint32_t end = 0;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        to = std::copy(parts[i].begin(), parts[i].end(), to);
        end += std::uint32_t(parts[i].size());
        setEnd(i, end);
    }
}

Shape::Shape(std::span<const Point> points, std::span<const std::uint32_t> ends) {
    adopt(points, ends);
}

Shape::Shape(ShapeView view) {
    const auto points = view.points();
    std::copy(points.begin(), points.end(), allocate(points.size(), view.size()));
    const auto ends = view.ends();
    for (std::size_t i = 0; i < ends.size(); ++i)
        setEnd(i, ends[i]);
}

Shape::Shape(const Shape& other) : parts_(other.parts_), points_(other.points_) {
    if (other.inPlace()) {
        one_ = other.one_;
        return;
    }
    const std::size_t bytes = blockBytes(points_, parts_);
    block_ = static_cast<Point*>(::operator new(bytes));
    std::memcpy(static_cast<void*>(block_), other.block_, bytes);
}

Shape::Shape(Shape&& other) noexcept {
    take(other);
}

void Shape::take(Shape& other) noexcept {
    parts_ = other.parts_;
    points_ = other.points_;
    if (other.inPlace())
        one_ = other.one_;
    else
        block_ = other.block_;
    other.parts_ = 0;
    other.points_ = 0;
    other.one_ = Point{};
}

Shape& Shape::operator=(const Shape& other) {
    if (this != &other)
        *this = Shape(other);
    return *this;
}

Shape& Shape::operator=(Shape&& other) noexcept {
    if (this != &other) {
        release();
        take(other);
    }
    return *this;
}

Shape::~Shape() {
    release();
}

void Shape::release() {
    if (!inPlace())
        ::operator delete(block_);
    parts_ = 0;
    points_ = 0;
    one_ = Point{};
}

Point* Shape::allocate(std::size_t points, std::size_t parts) {
    constexpr std::size_t kMax = std::numeric_limits<std::uint32_t>::max();
    if (points > kMax || parts > kMax)
        throw std::length_error("shape too large");
    parts_ = std::uint32_t(parts);
    points_ = std::uint32_t(points);
    if (inPlace())
        return &one_;
    block_ = static_cast<Point*>(::operator new(blockBytes(points, parts)));
    return block_;
}

void Shape::setEnd(std::size_t part, std::uint32_t end) {
    if (parts_ > 1)
        std::memcpy(reinterpret_cast<std::byte*>(block_ + points_) + part * sizeof end, &end,
                    sizeof end);
}

void Shape::adopt(std::span<const Point> points, std::span<const std::uint32_t> ends) {
    const bool ordered = std::is_sorted(ends.begin(), ends.end());
    if (ends.empty() ? !points.empty() : !ordered || ends.back() != points.size())
        throw std::invalid_argument("parts that do not end with the points");
    std::copy(points.begin(), points.end(), allocate(points.size(), ends.size()));
    for (std::size_t i = 0; i < ends.size(); ++i)
        setEnd(i, ends[i]);
}

const std::uint32_t* Shape::ends() const {
    return parts_ > 1 ? reinterpret_cast<const std::uint32_t*>(block_ + points_) : nullptr;
}

PartView Shape::operator[](std::size_t i) const {
    return view()[i];
}

PartView Shape::at(std::size_t i) const {
    if (i >= parts_)
        throw std::out_of_range("no part of that index");
    return (*this)[i];
}

Parts Shape::toParts() const {
    Parts out;
    out.reserve(parts_);
    for (const PartView part : *this)
        out.emplace_back(part.begin(), part.end());
    return out;
}

bool operator==(ShapeView a, ShapeView b) {
    const auto pa = a.points(), pb = b.points();
    const auto ea = a.ends(), eb = b.ends();
    return a.size() == b.size() && std::equal(pa.begin(), pa.end(), pb.begin(), pb.end()) &&
           std::equal(ea.begin(), ea.end(), eb.begin(), eb.end());
}

bool operator==(const Shape& a, const Shape& b) {
    return a.view() == b.view();
}

} // namespace carto
