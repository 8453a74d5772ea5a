#include "model/EditableMotionCurve.h"
#include "model/EditableMotionCurveExceptions.h"

#include <QtTest>

#include <rapidcheck.h>

#include <boost/property_tree/ptree.hpp>

#include <iterator>
#include <memory>
#include <random>
#include <vector>

using ZT::EditableMotionCurve;
using ZT::EditableMotionCurveKey;

namespace {

/// A curve and keys in and outside it, edited at random while a slot compares each lookup with a walk.
class Readers {
public:
    explicit Readers(unsigned int seed)
        : _random(seed) {
        using Curve = EditableMotionCurve;
        const auto read = [this] { _read(); };
        QObject::connect(&_curve, &Curve::keysChanged, read);
        QObject::connect(&_curve, &Curve::keyAboutToBeRemoved, read);
        QObject::connect(&_curve, &Curve::keyAdded, read);
        QObject::connect(&_curve, &Curve::curveCleared, read);
        QObject::connect(&_curve, &Curve::greaterIndexChanged, read);
        for (int i = 0; i < 20; ++i) {
            _curve.insert(static_cast<unsigned int>(3 * i), _newKey());
        }
    }
    ~Readers() {
        for (EditableMotionCurveKey* const key : _outside) {
            delete key;
        }
    }
    Readers(const Readers&) = delete;
    Readers& operator=(const Readers&) = delete;

    void edit() {
        const auto keys = _someKeys();
        switch (_number(9)) {
        case 0: {
            EditableMotionCurve::KeyPosMap moves;
            for (EditableMotionCurveKey* const key : keys) {
                moves.insert(key, QPointF(_number(70), _number(5)));
            }
            _curve.moveKeys(moves);
            break;
        }
        case 1:
            _reorganize(keys);
            break;
        case 2: {
            EditableMotionCurve::KeysIndexMap entering;
            for (EditableMotionCurveKey* const key : _outside) {
                entering.insert(key, _number(70));
            }
            EditableMotionCurve::KeysIndexMap leaving;
            for (EditableMotionCurveKey* const key : keys) {
                leaving.insert(key, ZT::index(key));
            }
            _outside.clear();
            const auto left = _curve.releaseAndInsertKeys(leaving, entering);
            _outside.assign(left.keyBegin(), left.keyEnd());
            break;
        }
        case 3:
            _curve.insert(_number(70), _newKey());
            break;
        case 4:
            _curve.translateKey(keys.front(), _number(70));
            break;
        case 5:
            if (EditableMotionCurveKey* const key = _curve.release(_number(70))) {
                _outside.push_back(key);
            }
            break;
        case 6:
            _curve.remove(static_cast<unsigned int>(_number(70)));
            break;
        case 7:
            _curve.insert(_number(70), keys.front());
            break;
        default:
            if (_number(8) == 0) {
                _curve.deserialize(_curve.serialize());
                for (const auto element : _curve) {
                    _listenTo(*element.second);
                }
            }
        }
        if (_curve.size() < 4) {
            _curve.insert(100 + _number(50), _newKey());
        }
        _read();
    }

    int readings() const { return _readings; }
    bool isRight() const { return _isRight; }

private:
    unsigned int _number(unsigned int limit) { return static_cast<unsigned int>(_random()) % limit; }

    EditableMotionCurveKey* _newKey() {
        auto* const key = new EditableMotionCurveKey;
        key->setValue(static_cast<float>(_number(9)));
        _listenTo(*key);
        return key;
    }

    void _listenTo(EditableMotionCurveKey& key) {
        const auto read = [this] { _read(); };
        QObject::connect(&key, &EditableMotionCurveKey::valueChanged, read);
        QObject::connect(&key, &EditableMotionCurveKey::tangentsChanged, read);
        QObject::connect(&key, &EditableMotionCurveKey::indexChanged, read);
    }

    // At least one.
    std::vector<EditableMotionCurveKey*> _someKeys() {
        std::vector<EditableMotionCurveKey*> keys{_curve.begin()->second};
        for (const auto element : _curve) {
            if (_number(3) != 0 && element.second != keys.front()) {
                keys.push_back(element.second);
            }
        }
        return keys;
    }

    void _reorganize(const std::vector<EditableMotionCurveKey*>& keys) {
        EditableMotionCurve::KeysIndexMap frames;
        for (EditableMotionCurveKey* const key : keys) {
            frames.insert(key, _number(70));
        }
        for (EditableMotionCurveKey* const key : std::exchange(_outside, {})) {
            frames.insert(key, _number(70));
        }
        try {
            _curve.reorganizeKeys(frames);
        } catch (const ZT::EditableMotionCurveReorganizedFail& failure) {
            _outside = failure.failedKeys;
        }
    }

    void _read() {
        ++_readings;
        const EditableMotionCurve& curve = _curve;
        const EditableMotionCurveKey* previous = nullptr;
        std::size_t count = 0;
        for (auto position = curve.begin(); position != curve.end(); ++count) {
            const auto [frame, key] = *position;
            _isRight = _isRight && curve._find(key) == position && curve.find(frame) == position;
            // A newcomer to a reorganisation announces its frame before the curve becomes its parent.
            const bool isNew = key->getParentCurve() == nullptr;
            _isRight = _isRight && curve.getIndexOf(key) == frame && ZT::index(key) == (isNew ? 0 : frame);
            _isRight = _isRight && curve.getPreviousKey(key) == previous;
            _isRight = _isRight && (previous == nullptr || curve.getNextKey(previous) == key);
            ++position;
            _isRight = _isRight && (position != curve.end() || curve.getNextKey(key) == nullptr);
            _isRight = _isRight && (position != curve.end() || curve.getGreaterIndex() == frame);
            previous = key;
        }
        _isRight = _isRight && curve.size() == count;
        for (const EditableMotionCurveKey* const key : _outside) {
            _isRight = _isRight && ZT::index(key) == 0 && curve._find(key) == curve.end();
        }
    }

    std::mt19937 _random;
    EditableMotionCurve _curve;
    std::vector<EditableMotionCurveKey*> _outside;
    int _readings = 0;
    bool _isRight = true;
};

} // namespace

class ReadingInSlotsTest : public QObject {
    Q_OBJECT

private slots:
    void everyLookupAgreesWithAWalkAtEverySignal() {
        QVERIFY(rc::check([] {
            Readers readers(*rc::gen::arbitrary<unsigned int>());
            for (int i = 0; i < 60; ++i) {
                readers.edit();
                RC_ASSERT(readers.isRight());
            }
            RC_ASSERT(readers.readings() > 60);
        }));
    }
};

QTEST_APPLESS_MAIN(ReadingInSlotsTest)
#include "ReadingInSlotsTest.moc"
