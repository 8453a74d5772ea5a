#include "AnyCommand.h"
#include "AnyDrag.h"
#include "AnyEdit.h"

#include <QUndoStack>
#include <QtTest>

#include <memory>

namespace {

/// A random session in which an editor does whatever it may: it leaves drags open, drags other keys on,
/// edits past the history, drops branches, and forgets the history before it takes keys away.
class UnrulySession {
public:
    UnrulySession()
        : _history(std::make_unique<QUndoStack>()) {
        if (Draw::yesOrNo()) {
            _history->setUndoLimit(Draw::below(5));
        }
    }

    void goOn() {
        switch (Draw::below(13)) {
        case 0:
        case 1:
        case 2:
            _history->push(AnyCommand(_scene).make());
            break;
        case 3:
        case 4:
            _history->push(AnyDrag(_scene).step(Draw::rarely(3)));
            break;
        case 5:
            _drag = std::make_unique<AnyDrag>(_scene);
            break;
        case 6:
            if (_drag != nullptr) {
                _history->push(_drag->step(Draw::rarely(3)));
            }
            break;
        case 7:
            _history->setIndex(Draw::below(_history->count() + 1));
            break;
        case 8:
            AnyEdit(_scene).changeOne();
            break;
        case 9:
            AnyEdit(_scene).changeMany();
            break;
        case 10:
            _forget();
            AnyEdit(_scene).takeAwayOne();
            break;
        case 11:
            _changeOnesMind();
            break;
        default:
            _forget();
            AnyEdit(_scene).takeAwayMany();
        }
        _scene.requireIndices();
    }

    void end() {
        switch (Draw::below(3)) {
        case 0:
            _forget();
            break;
        case 1:
            _history.reset();
            _requireNoOtherOwner();
            break;
        default: // The keys that curves hold die first.
            break;
        }
        _scene.end();
        _history.reset();
        RC_ASSERT(_scene.census.alive().empty());
    }

private:
    /// A command that is never done takes its keys along, but not one that a curve has got meanwhile.
    void _changeOnesMind() {
        const KeyCensus::Keys before = _scene.census.alive();
        delete AnyCommand(_scene).make();
        RC_ASSERT((_scene.census.alive() == before));

        LawScene::Curve* const curve = _scene.anyCurve();
        const unsigned int frame = Draw::frame();
        if (curve->isIndexAvailable(frame)) {
            LawScene::Key* const key = _scene.newKey();
            const ZT::AnimCmd::AddCurveKeysCommand command(key, curve, frame);
            curve->insert(frame, key);
        }
    }

    void _forget() {
        _history->clear();
        _requireNoOtherOwner();
    }

    /// Without a history each living key is in a curve or the scene's.
    void _requireNoOtherOwner() {
        for (const LawScene::Key* const key : _scene.census.outside()) {
            RC_ASSERT(_scene.owns(key));
        }
    }

    LawScene _scene;
    std::unique_ptr<QUndoStack> _history; ///< refers to the scene
    std::unique_ptr<AnyDrag> _drag;
};

} // namespace

class OwnerLawsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyKeyHasOneOwnerWhateverAnEditorDoes() {
        QVERIFY(rc::check("each key is in one curve, or a command's, or the caller's, and dies once", [] {
            UnrulySession session;
            for (int steps = 1 + Draw::size(40); steps > 0; --steps) {
                session.goOn();
            }
            session.end();
        }));
    }
};

QTEST_GUILESS_MAIN(OwnerLawsTest)
#include "OwnerLawsTest.moc"
