#include "desktop/flow_layout.h"

#include <algorithm>

namespace velorn {

FlowLayout::FlowLayout(int between, int between_rows) : between_(between), between_rows_(between_rows) {
    setContentsMargins(0, 0, 0, 0);
}

FlowLayout::~FlowLayout() = default;

void FlowLayout::addItem(QLayoutItem* item) { items_.emplace_back(item); }

int FlowLayout::count() const { return static_cast<int>(items_.size()); }

QLayoutItem* FlowLayout::itemAt(int index) const {
    return index >= 0 && index < count() ? items_[static_cast<std::size_t>(index)].get() : nullptr;
}

QLayoutItem* FlowLayout::takeAt(int index) {
    if (index < 0 || index >= count()) return nullptr;
    QLayoutItem* const taken = items_[static_cast<std::size_t>(index)].release();
    items_.erase(items_.begin() + index);
    return taken;
}

// Each row is as high as its highest item, and its items stand in the middle of it.
template <class Place>
int FlowLayout::flow(int width, Place place) const {
    int top = 0;
    for (std::size_t first = 0; first < items_.size();) {
        int right = -between_;
        int height = 0;
        std::size_t end = first;
        for (; end < items_.size(); ++end) {
            const QSize size = items_[end]->isEmpty() ? QSize(-between_, 0) : items_[end]->sizeHint();
            if (right > 0 && right + between_ + size.width() > width) break;
            right += between_ + size.width();
            height = std::max(height, size.height());
        }
        int left = 0;
        for (; first < end; ++first) {
            if (items_[first]->isEmpty()) continue;
            const QSize size = items_[first]->sizeHint();
            place(*items_[first], QRect(QPoint(left, top + (height - size.height()) / 2), size));
            left += size.width() + between_;
        }
        top += height + between_rows_;
    }
    return std::max(0, top - between_rows_);
}

int FlowLayout::heightForWidth(int width) const {
    return flow(width, [](QLayoutItem&, const QRect&) {});
}

QSize FlowLayout::sizeHint() const {
    QSize size(-between_, 0);
    for (const auto& item : items_) {
        if (item->isEmpty()) continue;
        const QSize one = item->sizeHint();
        size = {size.width() + between_ + one.width(), std::max(size.height(), one.height())};
    }
    return size.expandedTo({0, 0});
}

QSize FlowLayout::minimumSize() const {
    QSize size(0, 0);
    for (const auto& item : items_) {
        if (!item->isEmpty()) size = size.expandedTo(item->sizeHint());
    }
    return size;
}

void FlowLayout::setGeometry(const QRect& rect) {
    QLayout::setGeometry(rect);
    flow(rect.width(), [&rect](QLayoutItem& item, const QRect& place) {
        item.setGeometry(place.translated(rect.topLeft()));
    });
}

} // namespace velorn
