#pragma once
// A feature's text in one word: up to seven Latin-1 characters (a plot's number) held in
// the word itself, a longer text in a small block of its length then its UTF-16 units, or
// nothing. A QString takes three words in every feature, and most features (plots, lines)
// have no text at all. A null text and an empty one are the same: nothing.

#include <QString>
#include <QStringView>
#include <cstdint>

namespace carto {

// True when every character is Latin-1, so the text can be held a byte a character.
bool isLatin1(QStringView text);

class FeatureText {
public:
    FeatureText() = default;
    FeatureText(QStringView text); // NOLINT: stands wherever a text is given
    FeatureText(const QString& text) : FeatureText(QStringView(text)) {} // NOLINT
    FeatureText(const FeatureText& other);
    FeatureText(FeatureText&& other) noexcept : word_(other.word_) { other.word_ = 0; }
    FeatureText& operator=(const FeatureText& other);
    FeatureText& operator=(FeatureText&& other) noexcept;
    ~FeatureText();

    bool isEmpty() const { return word_ == 0; }
    qsizetype size() const;
    QString toString() const;
    operator QString() const { return toString(); }

    friend bool operator==(const FeatureText& a, const FeatureText& b);

private:
    // Odd: held in place, the length in the low byte (shifted), the characters above it.
    // Even and not zero: the address of the block. Zero: no text.
    bool inPlace() const { return (word_ & 1) != 0; }
    const char16_t* block() const;

    std::uintptr_t word_ = 0;
};

} // namespace carto
