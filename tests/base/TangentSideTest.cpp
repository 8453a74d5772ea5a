#include "base/TangentSide.h"

#include <QtTest>

#include <type_traits>

using ZT::TangentSide;

class TangentSideTest : public QObject {
    Q_OBJECT

private slots:
    void leftIsZeroAndRightIsOne() {
        QCOMPARE(static_cast<int>(TangentSide::left), 0);
        QCOMPARE(static_cast<int>(TangentSide::right), 1);
    }

    // Accessors answer any number that a caller casts to a side, which needs a fixed underlying type.
    void everyIntIsAValueOfTheType() {
        static_assert(std::is_same_v<std::underlying_type_t<TangentSide>, int>);
        QCOMPARE(static_cast<int>(static_cast<TangentSide>(-7)), -7);
    }
};

QTEST_GUILESS_MAIN(TangentSideTest)
#include "TangentSideTest.moc"
