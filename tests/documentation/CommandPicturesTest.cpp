#include "commands/MoveCurveKeysCommand.h"
#include "commands/MoveRangeCommand.h"
#include "commands/StretchRangeCommand.h"
#include "model/AnimationMarkers.h"
#include "model/EditableAnimation.h"
#include "model/EditableAnimationLayer.h"
#include "tests/documentation/Documentation.h"

#include <QRegularExpression>
#include <QtTest>

#include <memory>

namespace {

using Curve = ZT::EditableMotionCurve;
using Key = ZT::EditableMotionCurveKey;

/// Keys drawn as letters above their frames:
///
///     MoveRangeCommand [10, 11] to 11
///     frame   10 11 12
///     before   a  b  c
///     after    c  a  b
struct Picture {
    explicit Picture(const QString& block) {
        const QStringList lines = block.trimmed().split('\n');
        command = lines.value(0);
        for (const QString& frame : cells(lines.value(1))) {
            frames.append(frame.toUInt());
        }
        before = cells(lines.value(2));
        after = cells(lines.value(3));
    }

    bool isWhole() const {
        return !frames.isEmpty() && before.size() == frames.size() && after.size() == frames.size();
    }

    QString command;
    QVector<unsigned int> frames;
    QStringList before;
    QStringList after;

private:
    static QStringList cells(const QString& line) {
        return line.simplified().split(' ').mid(1); // Behind the row's name.
    }
};

/// A curve with the keys of a picture.
class Stage {
public:
    explicit Stage(const Picture& picture)
        : _picture(picture) {
        VQ::Animation::Animation plain;
        plain.push_back(new VQ::Animation::AnimationLayer);
        _animation = std::make_unique<ZT::EditableAnimation>(plain);
        for (int i = 0; i < picture.frames.size(); ++i) {
            if (picture.before.at(i) != ".") {
                auto* const key = new Key;
                key->setObjectName(picture.before.at(i));
                curve().insert(picture.frames.at(i), key);
            }
        }
    }

    Curve& curve() const { return *(*_animation->begin())->getCurve(); }

    /// What the picture's first line says; null where that is not understood.
    std::unique_ptr<QUndoCommand> command() const {
        using namespace ZT::AnimCmd;
        static const QRegularExpression range("^(Move|Stretch)RangeCommand \\[(\\d+), (\\d+)\\] to (\\d+)$");
        static const QRegularExpression side("^StretchRangeCommand start of \\[(\\d+), (\\d+)\\] to (\\d+)$");
        static const QRegularExpression move("^MoveCurveKeysCommand ([a-z ]+) by (-?\\d+)$");
        if (const auto found = range.match(_picture.command); found.hasMatch()) {
            const unsigned int start = found.captured(2).toUInt();
            const unsigned int end = found.captured(3).toUInt();
            const unsigned int to = found.captured(4).toUInt();
            _show(start, end);
            if (found.captured(1) == "Move") {
                return std::make_unique<MoveRangeCommand>(_animation->getMarkers(), _keys(), start, end, to,
                                                          true);
            }
            return std::make_unique<StretchRangeCommand>(_animation->getMarkers(), _keys(), start, end, to,
                                                         true, StretchSide::end);
        }
        if (const auto found = side.match(_picture.command); found.hasMatch()) {
            const unsigned int start = found.captured(1).toUInt();
            const unsigned int end = found.captured(2).toUInt();
            _show(start, end);
            return std::make_unique<StretchRangeCommand>(_animation->getMarkers(), _keys(), start, end,
                                                         found.captured(3).toUInt(), true,
                                                         StretchSide::start);
        }
        if (const auto found = move.match(_picture.command); found.hasMatch()) {
            Curve::KeyPosMap positions;
            const Curve::KeysIndexMap keys = _keys();
            for (auto key = keys.cbegin(); key != keys.cend(); ++key) {
                if (found.captured(1).split(' ').contains(key.key()->objectName())) {
                    positions.insert(key.key(), QPointF(key.value() + found.captured(2).toDouble(), 0));
                }
            }
            return std::make_unique<MoveCurveKeysCommand>(positions, true);
        }
        return nullptr;
    }

    /// The keys' letters at the picture's frames; what stands elsewhere comes behind.
    QStringList row() const {
        QStringList letters;
        for (const unsigned int frame : _picture.frames) {
            const Key* const key = curve().getKey(frame);
            letters.append(key != nullptr ? key->objectName() : QStringLiteral("."));
        }
        for (const auto [frame, key] : curve()) {
            if (!_picture.frames.contains(frame)) {
                letters.append(QStringLiteral("%1@%2").arg(key->objectName()).arg(frame));
            }
        }
        return letters;
    }

private:
    Curve::KeysIndexMap _keys() const {
        Curve::KeysIndexMap keys;
        for (const auto [frame, key] : curve()) {
            keys.insert(key, frame);
        }
        return keys;
    }

    void _show(unsigned int start, unsigned int end) const {
        _animation->getMarkers()->setRangeStartIndex(start);
        _animation->getMarkers()->setRangeEndIndex(end);
    }

    const Picture& _picture;
    std::unique_ptr<ZT::EditableAnimation> _animation;
};

} // namespace

class CommandPicturesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void eachPictureShowsWhatTheCommandDoes_data();
    void eachPictureShowsWhatTheCommandDoes();
};

void CommandPicturesTest::eachPictureShowsWhatTheCommandDoes_data() {
    QTest::addColumn<QString>("block");
    for (const QString& block : Documentation::blocks("docs/commands.md", "keys")) {
        QTest::newRow(qPrintable(block.section('\n', 0, 0))) << block;
    }
}

void CommandPicturesTest::eachPictureShowsWhatTheCommandDoes() {
    QFETCH(const QString, block);
    const Picture picture(block);
    QVERIFY(picture.isWhole());
    const Stage stage(picture);
    QCOMPARE(stage.row(), picture.before);
    const auto command = stage.command();
    QVERIFY2(command != nullptr, "the first line is not understood");
    command->redo();
    QCOMPARE(stage.row(), picture.after);
    command->undo();
    QCOMPARE(stage.row(), picture.before);
}

QTEST_GUILESS_MAIN(CommandPicturesTest)
#include "CommandPicturesTest.moc"
