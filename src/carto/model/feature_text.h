#pragma once
// A feature's text held in one small block, its length then its UTF-16 units, or nothing:
// a pointer's worth in every feature where a QString takes three, and most features
// (plots, lines) have no text at all. A null text and an empty one are the same: nothing.

#include <QString>
#include <QStringView>
#include <memory>

namespace carto {

class FeatureText {
public:
    FeatureText() = default;
    FeatureText(QStringView text); // NOLINT: stands wherever a text is given
    FeatureText(const QString& text) : FeatureText(QStringView(text)) {} // NOLINT
    FeatureText(const FeatureText& other) : FeatureText(other.view()) {}
    FeatureText(FeatureText&&) noexcept = default;
    FeatureText& operator=(const FeatureText& other);
    FeatureText& operator=(FeatureText&&) noexcept = default;
    ~FeatureText() = default;

    bool isEmpty() const { return !block_; }
    qsizetype size() const;
    QStringView view() const;
    QString toString() const { return view().toString(); }
    operator QString() const { return toString(); }

    friend bool operator==(const FeatureText& a, const FeatureText& b) {
        return a.view() == b.view();
    }

private:
    // Two units of length (low, high), then the text.
    std::unique_ptr<char16_t[]> block_;
};

} // namespace carto
