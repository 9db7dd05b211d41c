#pragma once
// A feature's attribute values in one block: a kind byte per value, then the values packed
// one after the other (an integer in four bytes, a text as its length then its characters,
// in one byte each when they all fit). A plot's attributes take a third of the memory of a
// vector of variants, in one allocation instead of one per value and per text. Values read
// back as the variants they were given as: numbers, booleans and texts are unboxed; any
// other type (a date, a typed null) is kept as a variant inside the block.

#include "base/index_iterator.h"

#include <QString>
#include <QStringView>
#include <QVariant>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <vector>

namespace carto {

class AttributeValues {
public:
    AttributeValues() noexcept = default;
    explicit AttributeValues(const std::vector<QVariant>& values);
    AttributeValues(const AttributeValues& other);
    AttributeValues& operator=(const AttributeValues& other);
    AttributeValues(AttributeValues&&) noexcept = default;
    AttributeValues& operator=(AttributeValues&&) noexcept = default;
    ~AttributeValues() = default;

    size_t size() const;
    bool empty() const { return size() == 0; }
    // The value at i; Null past the end.
    QVariant operator[](size_t i) const;
    // Replaces the value at i, growing with Nulls when i is past the end.
    void set(size_t i, const QVariant& value);
    // Cuts or grows (with Nulls) to n values.
    void resize(size_t n);

    friend bool operator==(const AttributeValues& a, const AttributeValues& b);

    using const_iterator = veldra::IndexIterator<AttributeValues, QVariant>;
    const_iterator begin() const { return {this, 0}; }
    const_iterator end() const { return {this, size()}; }

    // Gathers one feature's values, then makes the block; reused from feature to feature,
    // so reading a layer allocates one block per feature and nothing else.
    class Builder {
    public:
        void addNull();
        void addInt(int v);
        void addInt64(qint64 v);
        void addReal(double v);
        void addText(QStringView text); // a null QString stays null
        void addUtf8(const char* utf8); // null: a null text
        void addUtf8(const char* utf8, size_t length);
        void add(const QVariant& v);
        // The value at i of other values, copied as it is stored there.
        void addFrom(const AttributeValues& values, size_t i);
        size_t size() const { return kinds_.size(); }
        // The values added since the last build, then empty again.
        AttributeValues build();

    private:
        friend class AttributeValues;
        void push(std::uint8_t kind, const void* bytes = nullptr, size_t size = 0);
        void pushLength(std::uint64_t n);

        std::vector<std::uint8_t> kinds_;
        std::vector<unsigned char> packed_;
        std::vector<QVariant> boxed_;
    };

private:
    struct Header;
    struct Release {
        void operator()(Header* h) const;
    };
    const Header* header() const { return block_.get(); }

    std::unique_ptr<Header, Release> block_;
};

} // namespace carto
