#include "model/EditableMotionCurveExceptions.h"
#include "model/EditableMotionCurve.h"

#include <QTest>

#include <stdexcept>
#include <type_traits>
#include <vector>

namespace {

using Key = ZT::EditableMotionCurveKey;
using ZT::EditableMotionCurveKeyNotFound;
using ZT::EditableMotionCurveReorganizedFail;

static_assert(std::is_base_of_v<std::logic_error, EditableMotionCurveKeyNotFound>);
static_assert(std::is_base_of_v<std::logic_error, EditableMotionCurveReorganizedFail>);
static_assert(std::is_nothrow_copy_constructible_v<EditableMotionCurveKeyNotFound>);
static_assert(std::is_same_v<decltype(EditableMotionCurveReorganizedFail::failedKeys), std::vector<Key*>>);

} // namespace

class EditableMotionCurveExceptionsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aKeyThatIsNotFoundSaysSo() {
        QCOMPARE(EditableMotionCurveKeyNotFound().what(),
                 "Editable motion curve key not found in the editable motion curve.");
    }

    void aFailedReorganisationSaysSoAndCopiesTheFailedKeys() {
        Key a;
        Key b;
        std::vector<Key*> keys{&b, &a, nullptr};
        const EditableMotionCurveReorganizedFail error(keys);
        keys.clear();
        QCOMPARE(error.what(), "Editable motion curve: reorganization failed");
        QVERIFY(error.failedKeys == (std::vector<Key*>{&b, &a, nullptr}));
        const EditableMotionCurveReorganizedFail copy(error);
        QCOMPARE(copy.what(), error.what());
        QVERIFY(copy.failedKeys == error.failedKeys);
    }

    void bothAreCaughtAcrossTheLibrarysBorder() {
        ZT::EditableMotionCurve curve;
        const Key detached;
        bool caught = false;
        try {
            curve.getIndexOf(&detached);
        } catch (const EditableMotionCurveKeyNotFound&) {
            caught = true;
        }
        QVERIFY(caught);

        curve.insert(3, new Key);
        Key newcomer;
        std::vector<Key*> failed;
        try {
            curve.reorganizeKeys({{&newcomer, 3U}});
        } catch (const EditableMotionCurveReorganizedFail& error) {
            failed = error.failedKeys;
        }
        QVERIFY(failed == std::vector<Key*>{&newcomer});
    }
};

QTEST_GUILESS_MAIN(EditableMotionCurveExceptionsTest)

#include "EditableMotionCurveExceptionsTest.moc"
