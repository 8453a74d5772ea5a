#include "CommandHarness.h"
#include "commands/MoveTangentCommand.h"

namespace {

using namespace Harness;
using ZT::AnimCmd::MoveTangentCommand;

Side oppositeOf(Side side) {
    return side == Side::left ? Side::right : Side::left;
}

} // namespace

/// Undo of what has been changed by others since it was done.
class EditedMeanwhileTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aHandleWhoseTypeIsAnotherMeanwhileIsLeftAlone_data() {
        QTest::addColumn<Side>("side");
        QTest::newRow("left") << Side::left;
        QTest::newRow("right") << Side::right;
    }
    void aHandleWhoseTypeIsAnotherMeanwhileIsLeftAlone() {
        QFETCH(const Side, side);
        Scene scene;
        Key* const key = scene.addKey(5, bezier({-1.0F, 0.0F}, {1.0F, 0.0F}));
        const auto before = key->getTangentOffset(oppositeOf(side));
        MoveTangentCommand command(key, oppositeOf(side), 3.0F, 2.0F, true);
        command.redo();
        key->setTangentOffset(side, {7.0F, 5.0F});
        key->setTangentType(side, Type::linear);
        command.undo();
        QCOMPARE(key->getTangentOffset(side), qMakePair(7.0F, 5.0F));
        QCOMPARE(key->getTangentOffset(oppositeOf(side)), before);
    }

    void aKeyThatHasLeftItsCurveIsLeftAlone() {
        Scene scene;
        Key* const key = scene.addKey(5, bezier({-1.0F, 0.0F}, {1.0F, 0.0F}));
        MoveTangentCommand command(key, Side::left, -3.0F, 2.0F, true);
        command.redo();
        const std::unique_ptr<Key> released(key->getParentCurve()->release(5));
        command.undo();
        QCOMPARE(key->getTangentOffset(Side::left), qMakePair(-3.0F, 2.0F));
    }
};

Q_DECLARE_METATYPE(Side)

QTEST_GUILESS_MAIN(EditedMeanwhileTest)
#include "EditedMeanwhileTest.moc"
