#include "base/animation/KeyFunctions.h"

#include "Damages.h"
#include "base/animation/KeySerialization.h"

#include <QtTest>

using Records::Key;
using Records::Tree;
using VQ::Animation::KeyFunctions;

class KeyFunctionsTest : public QObject {
    Q_OBJECT

private slots:
    void thePlainTableDestroysWritesAndReads() {
        QVERIFY(KeyFunctions::plain.destroy != nullptr);
        QVERIFY(KeyFunctions::plain.write != nullptr);
        QVERIFY(KeyFunctions::plain.read != nullptr);
    }

    void aPlainKeyDoesNotKeepItsPlace() { QVERIFY(KeyFunctions::plain.place == nullptr); }

    // The leak sanitizer sees a key that is not destroyed, the address sanitizer one destroyed wrongly.
    void aPlainKeyIsDestroyedAsWhatItIs() { KeyFunctions::plain.destroy(new Key); }

    void aPlainKeyIsWrittenAsItsOwnTree() {
        const Key key = Records::unusualKey();
        QVERIFY(KeyFunctions::plain.write(key) == VQ::Animation::serialize(key));
    }

    void aPlainKeyIsReadFromItsOwnTree() {
        const Key written = Records::unusualKey();
        Key key;
        QVERIFY(KeyFunctions::plain.read(key, VQ::Animation::serialize(written)));
        QCOMPARE(Records::of(key), Records::of(written));
    }

    void aTreeThatIsNoKeyLeavesThePlainKeyUnchanged_data() { Damages::addRows(Damages::ofKey()); }

    void aTreeThatIsNoKeyLeavesThePlainKeyUnchanged() {
        QFETCH(int, index);
        Tree tree = VQ::Animation::serialize(Key());
        Damages::ofKey().at(static_cast<std::size_t>(index)).apply(tree);
        const Key before = Records::unusualKey();
        Key key = before;
        QVERIFY(!KeyFunctions::plain.read(key, tree));
        QCOMPARE(Records::of(key), Records::of(before));
    }
};

QTEST_GUILESS_MAIN(KeyFunctionsTest)
#include "KeyFunctionsTest.moc"
