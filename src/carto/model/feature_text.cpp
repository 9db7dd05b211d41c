#include "carto/model/feature_text.h"

#include <algorithm>
#include <new>

namespace carto {

namespace {

constexpr qsizetype kInPlace = 7;

// A block: two units of length (low, high), then the text.
char16_t* newBlock(QStringView text) {
    const auto n = std::uint32_t(std::min<qsizetype>(text.size(), 0xFFFFFFFF));
    auto* block = new char16_t[size_t(n) + 2];
    block[0] = char16_t(n & 0xFFFF);
    block[1] = char16_t(n >> 16);
    std::copy(text.utf16(), text.utf16() + n, block + 2);
    return block;
}

bool fitsInPlace(QStringView text) {
    return text.size() <= kInPlace && isLatin1(text);
}

} // namespace

bool isLatin1(QStringView text) {
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x100; });
}

FeatureText::FeatureText(QStringView text) {
    static_assert(sizeof(std::uintptr_t) == 8, "seven characters and a length in a word");
    if (text.isEmpty())
        return;
    if (!fitsInPlace(text)) {
        word_ = reinterpret_cast<std::uintptr_t>(newBlock(text));
        return;
    }
    word_ = std::uintptr_t(text.size()) << 1 | 1;
    for (qsizetype i = 0; i < text.size(); ++i)
        word_ |= std::uintptr_t(text[i].unicode()) << (8 * (i + 1));
}

FeatureText::FeatureText(const FeatureText& other) {
    if (other.inPlace() || other.isEmpty())
        word_ = other.word_; // the word is the whole text
    else
        *this = FeatureText(other.toString());
}

FeatureText::~FeatureText() {
    if (!inPlace())
        delete[] block(); // null when there is no text
}

FeatureText& FeatureText::operator=(const FeatureText& other) {
    if (this != &other)
        *this = FeatureText(other);
    return *this;
}

FeatureText& FeatureText::operator=(FeatureText&& other) noexcept {
    if (this != &other) {
        if (!inPlace())
            delete[] block();
        word_ = other.word_;
        other.word_ = 0;
    }
    return *this;
}

const char16_t* FeatureText::block() const {
    return reinterpret_cast<const char16_t*>(word_);
}

qsizetype FeatureText::size() const {
    if (inPlace())
        return qsizetype((word_ & 0xFF) >> 1);
    const char16_t* b = block();
    return b ? qsizetype(std::uint32_t(b[0]) | std::uint32_t(b[1]) << 16) : 0;
}

QString FeatureText::toString() const {
    if (!inPlace())
        return word_ == 0 ? QString()
                          : QString(reinterpret_cast<const QChar*>(block() + 2), size());
    QString text(size(), Qt::Uninitialized);
    for (qsizetype i = 0; i < text.size(); ++i)
        text[i] = QChar(char16_t((word_ >> (8 * (i + 1))) & 0xFF));
    return text;
}

bool operator==(const FeatureText& a, const FeatureText& b) {
    // A text held in place is held so whoever holds it: the words then say it all.
    if (a.inPlace() || b.inPlace() || a.word_ == 0 || b.word_ == 0)
        return a.word_ == b.word_;
    return QStringView(a.block() + 2, a.size()) == QStringView(b.block() + 2, b.size());
}

} // namespace carto
