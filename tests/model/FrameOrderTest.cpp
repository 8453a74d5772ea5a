#include "model/FrameOrder.h"

#include <QtTest>

#include <rapidcheck.h>

#include <algorithm>
#include <limits>
#include <numeric>
#include <vector>

using ZT::FrameOrder;

namespace {

struct Item {
    unsigned int frame;
};

FrameOrder orderOf(const std::vector<Item>& items) {
    return FrameOrder(items, [](const Item& item) { return item.frame; });
}

std::vector<std::size_t> positions(const FrameOrder& order) {
    std::vector<std::size_t> result;
    for (const std::size_t position : order) {
        result.push_back(position);
    }
    return result;
}

std::vector<std::size_t> stableOrderOf(const std::vector<Item>& items) {
    std::vector<std::size_t> order(items.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return items[a].frame < items[b].frame; });
    return order;
}

} // namespace

class FrameOrderTest : public QObject {
    Q_OBJECT

private slots:
    void anEmptyListHasNoPositions() { QVERIFY(positions(orderOf(std::vector<Item>())).empty()); }

    void anOrderedListKeepsItsOrder() {
        QVERIFY((positions(orderOf(std::vector<Item>{{3}, {3}, {8}})) == std::vector<std::size_t>{0, 1, 2}));
    }

    void theReversedOrderBeginsAtTheLastFrame() {
        FrameOrder order = orderOf({{3}, {9}, {8}});
        order.reverse();
        QVERIFY((positions(order) == std::vector<std::size_t>{1, 2, 0}));
    }

    void itIsAStableSortOfAnyFrames() {
        QVERIFY(rc::check([] {
            const unsigned int limit =
                *rc::gen::element(3U, 300U, 70000U, std::numeric_limits<unsigned int>::max());
            std::vector<Item> items;
            for (const unsigned int number : *rc::gen::arbitrary<std::vector<unsigned int>>()) {
                items.push_back({number % limit});
            }
            RC_ASSERT(positions(orderOf(items)) == stableOrderOf(items));
        }));
    }

    void theLargestFrameComesLast() {
        const unsigned int largest = std::numeric_limits<unsigned int>::max();
        const std::vector<Item> items{{largest}, {0}, {largest - 1U}, {1U << 31U}};
        QVERIFY((positions(orderOf(items)) == std::vector<std::size_t>{1, 3, 2, 0}));
    }
};

QTEST_APPLESS_MAIN(FrameOrderTest)
#include "FrameOrderTest.moc"
