#include "document/LayerLook.h"

#include <QtTest>

using Editor::LayerLook;

class LayerLookTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void looksAreEqualWhereAllIsEqual();
};

void LayerLookTest::looksAreEqualWhereAllIsEqual() {
    const LayerLook look{QColor(1, 2, 3)};
    QVERIFY(look.isVisible);
    QVERIFY(!look.isLocked);
    QVERIFY(look == (LayerLook{QColor(1, 2, 3), true, false}));
    QVERIFY(look != (LayerLook{QColor(1, 2, 4), true, false}));
    QVERIFY(look != (LayerLook{QColor(1, 2, 3), false, false}));
    QVERIFY(look != (LayerLook{QColor(1, 2, 3), true, true}));
}

QTEST_GUILESS_MAIN(LayerLookTest)
#include "LayerLookTest.moc"
