#pragma once
// A feature's attribute values in one block: a kind byte per value, then the values packed
// one after the other (an integer in four bytes, a text as its length then its characters,
// in one byte each when they all fit). A plot's attributes take a third of the memory of a
// vector of variants, in one allocation instead of one per value and per text. Values read
// back as the variants they were given as: numbers, booleans and texts are unboxed; any
// other type (a date, a typed null) is kept as a variant inside the block. Values that fit
// in seven bytes (a text feature's number) are held in place, with no block at all.

#include "base/index_iterator.h"

#include <QString>
#include <QStringView>
#include <QVariant>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <utility>
#include <vector>

namespace carto {

class AttributeValues {
public:
    AttributeValues() noexcept = default;
    explicit AttributeValues(const std::vector<QVariant>& values);
    AttributeValues(const AttributeValues& other);
    AttributeValues& operator=(const AttributeValues& other);
    AttributeValues(AttributeValues&& other) noexcept : word_(std::exchange(other.word_, 0)) {}
    AttributeValues& operator=(AttributeValues&& other) noexcept {
        std::swap(word_, other.word_);
        return *this;
    }
    ~AttributeValues();

    size_t size() const;
    bool empty() const { return size() == 0; }
    // The value at i; Null past the end.
    QVariant operator[](size_t i) const;
    // Replaces the value at i, growing with Nulls when i is past the end.
    void set(size_t i, const QVariant& value);
    // Cuts or grows (with Nulls) to n values.
    void resize(size_t n);

    friend bool operator==(const AttributeValues& a, const AttributeValues& b);

    // The values kept elsewhere (a layer's columns): their kind bytes then their packed
    // values, appended to `packed`, and their boxed variants, appended to `boxes`.
    void appendPacked(std::vector<unsigned char>& packed, std::vector<QVariant>& boxes) const;
    // Values from that form; `boxes` are those of these values.
    static AttributeValues unpack(size_t count, const unsigned char* packed, const QVariant* boxes);
    // The value at i of that form; Null past the end.
    static QVariant packedAt(size_t count, const unsigned char* packed, const QVariant* boxes,
                             size_t i);

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
    struct Layout;
    static void release(Header* h);
    // Where the values lie, in the block or in the word itself.
    Layout layout() const;
    bool inPlace() const { return (word_ & 1) != 0; }
    const Header* header() const;

    // Zero: no values. Odd: values that fit in the word's other seven bytes, held there
    // (a text feature's short text). Even: the address of the block.
    std::uintptr_t word_ = 0;
};

} // namespace carto
