#include "carto/model/attribute_values.h"

#include "carto/model/feature_text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <new>

namespace carto {

namespace {

// False and True carry their value in the kind; Latin1 and Utf16 are texts, their length
// first; NullText is a null QString, Null no value at all; Boxed is the next variant.
enum Kind : std::uint8_t { Null, Int, Int64, Real, False, True, Latin1, Utf16, NullText, Boxed };

template <typename T> T load(const unsigned char* p) {
    T v;
    std::memcpy(&v, p, sizeof v);
    return v;
}

} // namespace

// The block: this header, the boxed variants, a kind byte per value, then the packed values.
struct AttributeValues::Header {
    std::uint32_t count;
    std::uint32_t boxed;

    static size_t kindsAt(size_t boxed) { return sizeof(Header) + sizeof(QVariant) * boxed; }

    const unsigned char* base() const { return reinterpret_cast<const unsigned char*>(this); }
    unsigned char* base() { return reinterpret_cast<unsigned char*>(this); }
    QVariant* boxes() { return reinterpret_cast<QVariant*>(base() + sizeof(Header)); }
    const QVariant* boxes() const {
        return reinterpret_cast<const QVariant*>(base() + sizeof(Header));
    }
    const std::uint8_t* kinds() const { return base() + kindsAt(boxed); }
    const unsigned char* packed() const { return kinds() + count; }

    // A block of that shape, its boxed variants not yet made (boxed counts those made).
    static Header* allocate(size_t count, size_t boxed, size_t packed) {
        auto* h = static_cast<Header*>(::operator new(kindsAt(boxed) + count + packed));
        h->count = std::uint32_t(count);
        h->boxed = 0;
        return h;
    }
};

namespace {

// One value as the block holds it: its kind, its packed bytes, and for a text where its
// characters start and how many there are.
struct Packed {
    std::uint8_t kind = Null;
    const unsigned char* begin = nullptr;
    const unsigned char* end = nullptr;
    const unsigned char* chars = nullptr;
    size_t length = 0;
};

// Reads the values of a block one after the other.
class Reader {
public:
    Reader(const std::uint8_t* kinds, const unsigned char* packed) : kinds_(kinds), at_(packed) {}

    Packed next() {
        Packed v;
        v.kind = kinds_[i_++];
        v.begin = at_;
        switch (v.kind) {
        case Int:
            at_ += 4;
            break;
        case Int64:
        case Real:
            at_ += 8;
            break;
        case Latin1:
        case Utf16: {
            std::uint64_t n = 0;
            for (int shift = 0;; shift += 7) {
                const unsigned char byte = *at_++;
                n |= std::uint64_t(byte & 0x7f) << shift;
                if (!(byte & 0x80))
                    break;
            }
            v.chars = at_;
            v.length = size_t(n);
            at_ += v.kind == Utf16 ? 2 * v.length : v.length;
            break;
        }
        default:
            break;
        }
        v.end = at_;
        return v;
    }
    void skip(size_t n) {
        while (n-- > 0)
            next();
    }
    const unsigned char* at() const { return at_; }

private:
    const std::uint8_t* kinds_;
    const unsigned char* at_;
    size_t i_ = 0;
};

} // namespace

static_assert(std::endian::native == std::endian::little,
              "values held in place start at the word's low byte, where its tag bit is");

// The values, wherever they lie.
struct AttributeValues::Layout {
    size_t count = 0;
    const std::uint8_t* kinds = nullptr;
    const QVariant* boxes = nullptr; // none in place
    Reader reader() const { return Reader(kinds, kinds + count); }
};

AttributeValues::Layout AttributeValues::layout() const {
    if (inPlace()) {
        const auto* bytes = reinterpret_cast<const std::uint8_t*>(&word_);
        return {size_t(bytes[0] >> 1), bytes + 1, nullptr};
    }
    if (const Header* h = header())
        return {h->count, h->kinds(), h->boxes()};
    return {};
}

const AttributeValues::Header* AttributeValues::header() const {
    return inPlace() ? nullptr : reinterpret_cast<const Header*>(word_);
}

void AttributeValues::release(Header* h) {
    QVariant* boxes = h->boxes();
    for (std::uint32_t i = 0; i < h->boxed; ++i)
        std::destroy_at(boxes + i);
    ::operator delete(h);
}

AttributeValues::~AttributeValues() {
    if (!inPlace() && word_)
        release(reinterpret_cast<Header*>(word_));
}

AttributeValues::AttributeValues(const std::vector<QVariant>& values) {
    Builder b;
    for (const QVariant& v : values)
        b.add(v);
    *this = b.build();
}

AttributeValues::AttributeValues(const AttributeValues& other) {
    const Header* from = other.header();
    if (!from) {
        word_ = other.word_; // nothing, or values held in place
        return;
    }
    Reader all(from->kinds(), from->packed());
    all.skip(from->count);
    const size_t plain = size_t(all.at() - from->kinds());
    Header* to = Header::allocate(from->count, from->boxed, plain - from->count);
    std::memcpy(to->base() + Header::kindsAt(from->boxed), from->kinds(), plain);
    try {
        for (; to->boxed < from->boxed; ++to->boxed)
            std::construct_at(to->boxes() + to->boxed, from->boxes()[to->boxed]);
    } catch (...) {
        release(to);
        throw;
    }
    word_ = reinterpret_cast<std::uintptr_t>(to);
}

AttributeValues& AttributeValues::operator=(const AttributeValues& other) {
    if (this != &other)
        *this = AttributeValues(other);
    return *this;
}

size_t AttributeValues::size() const {
    return layout().count;
}

namespace {

QVariant decode(const Packed& v) {
    switch (v.kind) {
    case Int:
        return QVariant(load<std::int32_t>(v.begin));
    case Int64:
        return QVariant(qlonglong(load<std::int64_t>(v.begin)));
    case Real:
        return QVariant(load<double>(v.begin));
    case False:
    case True:
        return QVariant(v.kind == True);
    case Latin1:
        // An empty text is not a null one.
        return QVariant(v.length == 0 ? QStringLiteral("")
                                      : QString::fromLatin1(reinterpret_cast<const char*>(v.chars),
                                                            qsizetype(v.length)));
    case Utf16: {
        QString text(qsizetype(v.length), Qt::Uninitialized);
        std::memcpy(text.data(), v.chars, 2 * v.length);
        return QVariant(text);
    }
    case NullText:
        return QVariant(QString());
    default:
        return {};
    }
}

} // namespace

QVariant AttributeValues::operator[](size_t i) const {
    const Layout l = layout();
    if (i >= l.count)
        return {};
    Reader r = l.reader();
    r.skip(i);
    const Packed v = r.next();
    if (v.kind == Boxed)
        return l.boxes[std::count(l.kinds, l.kinds + i, std::uint8_t(Boxed))];
    return decode(v);
}

void AttributeValues::appendPacked(std::vector<unsigned char>& packed,
                                   std::vector<QVariant>& boxes) const {
    const Layout l = layout();
    if (l.count == 0)
        return;
    Reader all = l.reader();
    all.skip(l.count);
    packed.insert(packed.end(), l.kinds, all.at());
    if (const Header* h = header())
        boxes.insert(boxes.end(), h->boxes(), h->boxes() + h->boxed);
}

AttributeValues AttributeValues::unpack(size_t count, const unsigned char* packed,
                                        const QVariant* boxes) {
    AttributeValues out;
    if (count == 0)
        return out;
    Reader all(packed, packed + count);
    all.skip(count);
    const size_t bytes = size_t(all.at() - packed);
    const auto boxed = size_t(std::count(packed, packed + count, std::uint8_t(Boxed)));
    if (boxed == 0 && 1 + bytes <= sizeof out.word_) {
        std::array<std::uint8_t, sizeof out.word_> word{};
        word[0] = std::uint8_t(1 | count << 1);
        std::copy(packed, packed + bytes, word.begin() + 1);
        std::memcpy(&out.word_, word.data(), word.size());
        return out;
    }
    Header* h = Header::allocate(count, boxed, bytes - count);
    std::memcpy(h->base() + Header::kindsAt(boxed), packed, bytes);
    out.word_ = reinterpret_cast<std::uintptr_t>(h);
    // Counted as they are made, so a failure releases exactly those.
    for (; h->boxed < boxed; ++h->boxed)
        std::construct_at(h->boxes() + h->boxed, boxes[h->boxed]);
    return out;
}

QVariant AttributeValues::packedAt(size_t count, const unsigned char* packed, const QVariant* boxes,
                                   size_t i) {
    if (i >= count)
        return {};
    Reader r(packed, packed + count);
    r.skip(i);
    const Packed v = r.next();
    if (v.kind == Boxed)
        return boxes[std::count(packed, packed + i, std::uint8_t(Boxed))];
    return decode(v);
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

void AttributeValues::Builder::push(std::uint8_t kind, const void* bytes, size_t size) {
    kinds_.push_back(kind);
    const auto* p = static_cast<const unsigned char*>(bytes);
    packed_.insert(packed_.end(), p, p + size);
}

// Seven bits a byte, the high bit set on all but the last.
void AttributeValues::Builder::pushLength(std::uint64_t n) {
    do {
        const auto low = static_cast<unsigned char>(n & 0x7f);
        n >>= 7;
        packed_.push_back(n ? low | 0x80 : low);
    } while (n);
}

void AttributeValues::Builder::addNull() {
    push(Null);
}

void AttributeValues::Builder::addInt(int v) {
    const std::int32_t cell = v;
    push(Int, &cell, sizeof cell);
}

void AttributeValues::Builder::addInt64(qint64 v) {
    const std::int64_t cell = v;
    push(Int64, &cell, sizeof cell);
}

void AttributeValues::Builder::addReal(double v) {
    push(Real, &v, sizeof v);
}

void AttributeValues::Builder::addText(QStringView text) {
    if (text.isNull())
        return push(NullText);
    if (isLatin1(text)) {
        push(Latin1);
        pushLength(std::uint64_t(text.size()));
        for (const QChar c : text)
            packed_.push_back(static_cast<unsigned char>(c.unicode()));
        return;
    }
    push(Utf16);
    pushLength(std::uint64_t(text.size()));
    const auto* bytes = reinterpret_cast<const unsigned char*>(text.utf16());
    packed_.insert(packed_.end(), bytes, bytes + 2 * text.size());
}

void AttributeValues::Builder::addFrom(const AttributeValues& values, size_t i) {
    const Layout l = values.layout();
    if (i >= l.count)
        return addNull();
    Reader r = l.reader();
    r.skip(i);
    const Packed v = r.next();
    if (v.kind == Boxed) {
        push(Boxed);
        boxed_.push_back(l.boxes[std::count(l.kinds, l.kinds + i, std::uint8_t(Boxed))]);
        return;
    }
    push(v.kind, v.begin, size_t(v.end - v.begin));
}

void AttributeValues::Builder::addUtf8(const char* utf8) {
    if (!utf8)
        return addText(QStringView());
    addUtf8(utf8, std::strlen(utf8));
}

void AttributeValues::Builder::addUtf8(const char* utf8, size_t length) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(utf8);
    if (std::any_of(bytes, bytes + length, [](unsigned char b) { return b >= 0x80; }))
        return addText(QString::fromUtf8(utf8, qsizetype(length)));
    // ASCII, by far the most common: copied as it is, no string made.
    push(Latin1);
    pushLength(length);
    packed_.insert(packed_.end(), bytes, bytes + length);
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
            return push(*static_cast<const bool*>(v.constData()) ? True : False);
        case QMetaType::QString:
            return addText(*static_cast<const QString*>(v.constData()));
        default:
            break;
        }
    }
    push(Boxed);
    boxed_.push_back(v);
}

AttributeValues AttributeValues::Builder::build() {
    AttributeValues out;
    if (!kinds_.empty() && boxed_.empty() &&
        1 + kinds_.size() + packed_.size() <= sizeof out.word_) {
        // Few enough to hold in the word: no block at all.
        std::array<std::uint8_t, sizeof out.word_> bytes{};
        bytes[0] = std::uint8_t(1 | kinds_.size() << 1);
        std::copy(kinds_.begin(), kinds_.end(), bytes.begin() + 1);
        std::copy(packed_.begin(), packed_.end(),
                  bytes.begin() + 1 + std::ptrdiff_t(kinds_.size()));
        std::memcpy(&out.word_, bytes.data(), bytes.size());
    } else if (!kinds_.empty()) {
        Header* h = Header::allocate(kinds_.size(), boxed_.size(), packed_.size());
        unsigned char* kinds = h->base() + Header::kindsAt(boxed_.size());
        std::memcpy(kinds, kinds_.data(), kinds_.size());
        if (!packed_.empty())
            std::memcpy(kinds + kinds_.size(), packed_.data(), packed_.size());
        out.word_ = reinterpret_cast<std::uintptr_t>(h);
        // Counted as they are made, so a failure releases exactly those.
        for (const QVariant& v : boxed_) {
            std::construct_at(h->boxes() + h->boxed, v);
            ++h->boxed;
        }
    }
    kinds_.clear();
    packed_.clear();
    boxed_.clear();
    return out;
}

} // namespace carto
