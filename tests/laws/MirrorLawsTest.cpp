#include "AnyCommand.h"
#include "AnyDrag.h"
#include "AnyEdit.h"
#include "CurveMirror.h"

#include <QUndoStack>
#include <QtTest>

#include <deque>

namespace {

/// A random editing session on an animation whose every curve has a mirror.
class MirroredSession {
public:
    MirroredSession() {
        for (LawScene::Curve* const curve : _scene.curves()) {
            _mirrors.emplace_back(*curve);
        }
        for (ZT::EditableAnimationLayer* const layer : _scene.animation()) {
            QObject::connect(layer, &ZT::EditableAnimationLayer::curveChanged, [this] { ++_curvesChanged; });
        }
        QObject::connect(&_scene.animation(), &ZT::EditableAnimation::layersChanged,
                         [this] { ++_layersChanged; });
    }

    void goOn() {
        switch (Draw::below(12)) {
        case 0:
        case 1:
        case 2:
            _history.push(AnyCommand(_scene).make());
            break;
        case 3:
        case 4:
        case 5: {
            AnyDrag drag(_scene);
            for (int steps = 1 + Draw::below(4); steps > 0; --steps) {
                _history.push(drag.step(Draw::rarely(4)));
                _compare();
            }
            break;
        }
        case 6:
            _history.undo();
            break;
        case 7:
            _history.redo();
            break;
        case 8:
            _alone(&AnyEdit::changeOne);
            break;
        case 9:
            AnyEdit(_scene).changeMany();
            break;
        case 10:
            _history.clear();
            _alone(&AnyEdit::takeAwayOne);
            break;
        default:
            _history.clear();
            AnyEdit(_scene).takeAwayMany();
        }
        _compare();
    }

private:
    void _alone(void (AnyEdit::*edit)()) {
        _setInSingleEdit(true);
        AnyEdit any(_scene);
        (any.*edit)();
        _setInSingleEdit(false);
    }

    void _setInSingleEdit(bool isInSingleEdit) {
        for (CurveMirror& mirror : _mirrors) {
            mirror.setInSingleEdit(isInSingleEdit);
        }
    }

    void _compare() {
        int timesChanged = 0;
        for (std::size_t i = 0; i < _mirrors.size(); ++i) {
            RC_ASSERT(_mirrors[i].problem() == std::string());
            RC_ASSERT(_mirrors[i].difference() == std::string());
            RC_ASSERT(_mirrors[i].greatest() == _scene.curves()[i]->getGreaterIndex());
            const bool hasLayer = i < _scene.animation().size();
            timesChanged += hasLayer ? _mirrors[i].timesChanged() : 0;
        }
        RC_ASSERT(_curvesChanged == timesChanged);
        RC_ASSERT(_layersChanged == timesChanged);
    }

    int _curvesChanged = 0;
    int _layersChanged = 0;
    std::deque<CurveMirror> _mirrors; ///< one for each curve, in their order
    LawScene _scene;
    QUndoStack _history;
};

} // namespace

class MirrorLawsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aViewThatListensKnowsWhatTheCurvesHoldAtEachChange() {
        QVERIFY(rc::check("a mirror by signals alone agrees with the curves", [] {
            MirroredSession session;
            for (int steps = 1 + Draw::size(40); steps > 0; --steps) {
                session.goOn();
            }
        }));
    }
};

QTEST_GUILESS_MAIN(MirrorLawsTest)
#include "MirrorLawsTest.moc"
