#include "carto/model/attribute_values.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <new>

namespace carto {

namespace {

enum Kind : std::uint8_t { Null, Int, Int64, Real, Bool, Text, NullText, Boxed };

constexpr size_t alignUp(size_t n, size_t a) {
    return (n + a - 1) / a * a;
}

} // namespace

// The block: this header, a cell per value, a kind byte per value, the texts' characters,
// then the boxed variants.
struct AttributeValues::Header {
    std::uint32_t count;
    std::uint32_t chars;
    std::uint32_t boxed;
    std::uint32_t unused;

    static size_t kindsAt(size_t count) { return sizeof(Header) + 8 * count; }
    static size_t charsAt(size_t count) { return alignUp(kindsAt(count) + count, 2); }
    static size_t boxedAt(size_t count, size_t chars) {
        return alignUp(charsAt(count) + 2 * chars, alignof(QVariant));
    }
    size_t bytes() const { return boxedAt(count, chars) + sizeof(QVariant) * boxed; }

    const std::byte* base() const { return reinterpret_cast<const std::byte*>(this); }
    std::byte* base() { return reinterpret_cast<std::byte*>(this); }
    const std::uint64_t* cells() const {
        return reinterpret_cast<const std::uint64_t*>(base() + sizeof(Header));
    }
    const std::uint8_t* kinds() const {
        return reinterpret_cast<const std::uint8_t*>(base() + kindsAt(count));
    }
    // A text cell: the offset of its first character, and its length above.
    QStringView text(std::uint64_t cell) const {
        return {reinterpret_cast<const char16_t*>(base() + charsAt(count)) + (cell & 0xffffffffu),
                qsizetype(cell >> 32)};
    }
    QVariant* boxes() { return reinterpret_cast<QVariant*>(base() + boxedAt(count, chars)); }
    const QVariant* boxes() const {
        return reinterpret_cast<const QVariant*>(base() + boxedAt(count, chars));
    }

    // A block of that shape, its boxed variants not yet made.
    static Header* allocate(size_t count, size_t chars, size_t boxed) {
        const size_t bytes = boxedAt(count, chars) + sizeof(QVariant) * boxed;
        auto* h = static_cast<Header*>(::operator new(bytes));
        h->count = std::uint32_t(count);
        h->chars = std::uint32_t(chars);
        h->boxed = std::uint32_t(boxed);
        h->unused = 0;
        return h;
    }
};

void AttributeValues::Release::operator()(Header* h) const {
    QVariant* boxes = h->boxes();
    for (std::uint32_t i = 0; i < h->boxed; ++i)
        std::destroy_at(boxes + i);
    ::operator delete(h);
}

AttributeValues::AttributeValues(const std::vector<QVariant>& values) {
    Builder b;
    for (const QVariant& v : values)
        b.add(v);
    *this = b.build();
}

AttributeValues::AttributeValues(const AttributeValues& other) {
    const Header* from = other.header();
    if (!from)
        return;
    Header* to = Header::allocate(from->count, from->chars, from->boxed);
    const size_t plain = Header::boxedAt(from->count, from->chars);
    std::memcpy(to->base() + sizeof(Header), from->base() + sizeof(Header), plain - sizeof(Header));
    size_t made = 0;
    try {
        for (; made < from->boxed; ++made)
            std::construct_at(to->boxes() + made, from->boxes()[made]);
    } catch (...) {
        to->boxed = std::uint32_t(made);
        Release{}(to);
        throw;
    }
    block_.reset(to);
}

AttributeValues& AttributeValues::operator=(const AttributeValues& other) {
    if (this != &other)
        *this = AttributeValues(other);
    return *this;
}

size_t AttributeValues::size() const {
    return block_ ? block_->count : 0;
}

QVariant AttributeValues::operator[](size_t i) const {
    const Header* h = header();
    if (!h || i >= h->count)
        return {};
    const std::uint64_t cell = h->cells()[i];
    switch (h->kinds()[i]) {
    case Int:
        return QVariant(int(std::int32_t(std::uint32_t(cell))));
    case Int64:
        return QVariant(qlonglong(cell));
    case Real:
        return QVariant(std::bit_cast<double>(cell));
    case Bool:
        return QVariant(cell != 0);
    case Text: {
        const QStringView text = h->text(cell);
        // An empty text is not a null one.
        return QVariant(text.isEmpty() ? QStringLiteral("") : text.toString());
    }
    case NullText:
        return QVariant(QString());
    case Boxed:
        return h->boxes()[cell];
    default:
        return {};
    }
}

void AttributeValues::set(size_t i, const QVariant& value) {
    Builder b;
    const size_t n = std::max(size(), i + 1);
    for (size_t k = 0; k < n; ++k) {
        if (k == i)
            b.add(value);
        else
            b.addFrom(*this, k);
    }
    *this = b.build();
}

void AttributeValues::resize(size_t n) {
    if (n == size())
        return;
    Builder b;
    for (size_t k = 0; k < n; ++k)
        b.addFrom(*this, k);
    *this = b.build();
}

bool operator==(const AttributeValues& a, const AttributeValues& b) {
    if (a.size() != b.size())
        return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (a[i] != b[i])
            return false;
    return true;
}

void AttributeValues::Builder::push(std::uint8_t kind, std::uint64_t cell) {
    kinds_.push_back(kind);
    cells_.push_back(cell);
}

// The characters appended since `offset` as one text.
void AttributeValues::Builder::pushText(size_t offset) {
    push(Text, std::uint64_t(offset) | std::uint64_t(chars_.size() - offset) << 32);
}

void AttributeValues::Builder::addNull() {
    push(Null, 0);
}

void AttributeValues::Builder::addInt(int v) {
    push(Int, std::uint32_t(v));
}

void AttributeValues::Builder::addInt64(qint64 v) {
    push(Int64, std::uint64_t(v));
}

void AttributeValues::Builder::addReal(double v) {
    push(Real, std::bit_cast<std::uint64_t>(v));
}

void AttributeValues::Builder::addText(QStringView text) {
    if (text.isNull()) {
        push(NullText, 0);
        return;
    }
    const size_t offset = chars_.size();
    chars_.insert(chars_.end(), text.utf16(), text.utf16() + text.size());
    pushText(offset);
}

void AttributeValues::Builder::addFrom(const AttributeValues& values, size_t i) {
    const Header* h = values.header();
    if (!h || i >= h->count)
        return addNull();
    const std::uint64_t cell = h->cells()[i];
    switch (h->kinds()[i]) {
    case Text:
        return addText(h->text(cell));
    case Boxed:
        push(Boxed, boxed_.size());
        boxed_.push_back(h->boxes()[cell]);
        return;
    default:
        return push(h->kinds()[i], cell);
    }
}

void AttributeValues::Builder::addUtf8(const char* utf8) {
    if (!utf8)
        return addText(QStringView());
    addUtf8(utf8, std::strlen(utf8));
}

void AttributeValues::Builder::addUtf8(const char* utf8, size_t length) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(utf8);
    for (size_t k = 0; k < length; ++k)
        if (bytes[k] >= 0x80)
            return addText(QString::fromUtf8(utf8, qsizetype(length)));
    // ASCII, by far the most common: widened in place, no string made.
    const size_t offset = chars_.size();
    chars_.insert(chars_.end(), bytes, bytes + length);
    pushText(offset);
}

void AttributeValues::Builder::add(const QVariant& v) {
    if (!v.isValid())
        return addNull();
    if (!v.data_ptr().is_null) {
        switch (v.typeId()) {
        case QMetaType::Int:
            return addInt(*static_cast<const int*>(v.constData()));
        case QMetaType::LongLong:
            return addInt64(*static_cast<const qlonglong*>(v.constData()));
        case QMetaType::Double:
            return addReal(*static_cast<const double*>(v.constData()));
        case QMetaType::Bool:
            return push(Bool, *static_cast<const bool*>(v.constData()) ? 1 : 0);
        case QMetaType::QString:
            return addText(*static_cast<const QString*>(v.constData()));
        default:
            break;
        }
    }
    push(Boxed, boxed_.size());
    boxed_.push_back(v);
}

AttributeValues AttributeValues::Builder::build() {
    AttributeValues out;
    if (!kinds_.empty()) {
        const size_t count = kinds_.size();
        Header* h = Header::allocate(count, chars_.size(), boxed_.size());
        h->boxed = 0;
        std::memcpy(h->base() + sizeof(Header), cells_.data(), 8 * count);
        std::memcpy(h->base() + Header::kindsAt(count), kinds_.data(), count);
        if (!chars_.empty())
            std::memcpy(h->base() + Header::charsAt(count), chars_.data(), 2 * chars_.size());
        out.block_.reset(h);
        // Counted as they are made, so a failure releases exactly those.
        for (const QVariant& v : boxed_) {
            std::construct_at(h->boxes() + h->boxed, v);
            ++h->boxed;
        }
    }
    cells_.clear();
    kinds_.clear();
    chars_.clear();
    boxed_.clear();
    return out;
}

} // namespace carto
