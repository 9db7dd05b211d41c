#include "carto/model/feature_text.h"

#include <algorithm>
#include <cstdint>

namespace carto {

FeatureText::FeatureText(QStringView text) {
    if (text.isEmpty())
        return;
    const auto n = std::uint32_t(std::min<qsizetype>(text.size(), 0xFFFFFFFF));
    block_ = std::make_unique_for_overwrite<char16_t[]>(size_t(n) + 2);
    block_[0] = char16_t(n & 0xFFFF);
    block_[1] = char16_t(n >> 16);
    std::copy(text.utf16(), text.utf16() + n, block_.get() + 2);
}

FeatureText& FeatureText::operator=(const FeatureText& other) {
    if (this != &other)
        *this = FeatureText(other);
    return *this;
}

qsizetype FeatureText::size() const {
    return block_ ? qsizetype(std::uint32_t(block_[0]) | std::uint32_t(block_[1]) << 16) : 0;
}

QStringView FeatureText::view() const {
    return block_ ? QStringView(block_.get() + 2, size()) : QStringView();
}

} // namespace carto
