#include "CommandHarness.h"
#include "commands/ChangeRangeCommand.h"
#include "commands/MoveCurveKeysCommand.h"
#include "commands/MoveTangentCommand.h"
#include "commands/StretchRangeCommand.h"

#include <functional>

namespace {

using namespace Harness;
using namespace ZT::AnimCmd;

/// A command like the library's own that says it is of another kind.
template <class Command>
class OfAnotherKind : public Command {
public:
    using Command::Command;
    int id() const override { return 1000; }
};

} // namespace

class ForeignStepsTest : public QObject {
    Q_OBJECT

    // The step would be taken in if it were of the command's own kind.
    template <class Command, class Make>
    static void refusesAnotherKind(Make make) {
        Scene scene;
        Key* const key = scene.addKey(5, bezier({-1.0F, 0.0F}, {1.0F, 0.0F}));
        const std::unique_ptr<Command> command(make(key, scene, static_cast<Command*>(nullptr)));
        const std::unique_ptr<Command> own(make(key, scene, static_cast<Command*>(nullptr)));
        const std::unique_ptr<Command> other(make(key, scene, static_cast<OfAnotherKind<Command>*>(nullptr)));
        QVERIFY(command->mergeWith(own.get()));
        QVERIFY(!command->isFinalCommand());
        QVERIFY(!command->mergeWith(other.get()));
        QVERIFY(command->isFinalCommand());
    }

private Q_SLOTS:
    void aMoveOfKeysTakesInNoOtherKind() {
        refusesAnotherKind<MoveCurveKeysCommand>([](Key* key, const Scene& /*scene*/, auto* kind) {
            using Command = std::remove_pointer_t<decltype(kind)>;
            return new Command({{key, QPointF(7.0, 1.0)}}, false);
        });
    }

    void aMoveOfATangentTakesInNoOtherKind() {
        refusesAnotherKind<MoveTangentCommand>([](Key* key, const Scene& /*scene*/, auto* kind) {
            using Command = std::remove_pointer_t<decltype(kind)>;
            return new Command(key, Side::left, -2.0F, 1.0F, false);
        });
    }

    void aChangeOfTheRangeTakesInNoOtherKind() {
        refusesAnotherKind<ChangeRangeCommand>([](Key* key, const Scene& scene, auto* kind) {
            using Command = std::remove_pointer_t<decltype(kind)>;
            return new Command(&scene.markers(), {{key, 5U}}, 2, 8, false);
        });
    }

    void aStretchTakesInNoOtherKind() {
        refusesAnotherKind<StretchRangeCommand>([](Key* key, const Scene& scene, auto* kind) {
            using Command = std::remove_pointer_t<decltype(kind)>;
            return new Command(&scene.markers(), {{key, 5U}}, 2, 8, 12, false, StretchSide::end);
        });
    }
};

QTEST_GUILESS_MAIN(ForeignStepsTest)
#include "ForeignStepsTest.moc"
