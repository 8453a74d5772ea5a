#include "LawScene.h"
#include "SignalLog.h"
#include "SimpleCurve.h"
#include "base/animation/AnimationXml.h"
#include "base/animation/KeySerialization.h"
#include "tests/base/Records.h"

#include <QtTest>

#include <sstream>
#include <string>

using Records::Animation;
using Records::AnimationLayer;
using Records::MotionCurve;
using Records::Tree;
using ZT::EditableAnimation;
using ZT::EditableMotionCurve;
using ZT::EditableMotionCurveKey;

namespace {

void fill(MotionCurve& curve) {
    const int numerator = 1 + Draw::below(1000);
    curve.setTimeUnit(Records::RationalSeconds(boost::rational<int>(numerator, 1 + Draw::below(100000))));
    curve.setValueLimits({Draw::number(), Draw::number()});
    curve.setMaxAbsoluteDerivative(Draw::number());
    for (int count = Draw::size(60); count > 0; --count) {
        const unsigned int frame = Draw::rarely(3) ? *Records::anyFrame() : Draw::frame();
        if (curve.find(frame) == curve.end()) {
            curve.insert(frame, new Draw::Record(*Records::anyKey()));
        }
    }
}

Animation anyPlainAnimation() {
    Animation animation;
    for (int count = Draw::size(6); count > 0; --count) {
        auto* const layer = new AnimationLayer;
        animation.push_back(layer);
        layer->actuatorName = Draw::name();
        layer->mute = Draw::yesOrNo();
        fill(*layer->curve);
    }
    return animation;
}

std::string stateOf(const Animation& animation) {
    return Records::of(animation).toStdString();
}

std::string toXml(const Tree& tree) {
    std::ostringstream stream;
    VQ::Animation::writeAnimationXml(stream, tree);
    return stream.str();
}

Tree fromXml(const std::string& text) {
    std::istringstream stream(text);
    return VQ::Animation::readAnimationXml(stream);
}

/// Of NaNs among handles, sign and payload are the processor's affair where a constraint has made them.
std::string text(unsigned int frame, const Draw::Record& record, bool smooth, bool symmetrical) {
    const auto handle = [](VQ::Math::Position2D point) {
        point.x = std::isnan(point.x) ? std::numeric_limits<float>::quiet_NaN() : point.x;
        point.y = std::isnan(point.y) ? std::numeric_limits<float>::quiet_NaN() : point.y;
        return point;
    };
    Draw::Record shown = record;
    shown.leftTangentOffset = handle(record.leftTangentOffset);
    shown.rightTangentOffset = handle(record.rightTangentOffset);
    return std::to_string(frame) + ": " + Records::of(shown).toStdString() + (smooth ? " smooth" : "") +
           (symmetrical ? " symmetrical" : "") + '\n';
}

std::string stateOf(const EditableMotionCurve& curve) {
    std::string result;
    for (const auto element : curve) {
        const EditableMotionCurveKey& key = *element.second;
        result += text(element.first, key.baseMotionCurveKey(), key.isSmooth(), key.isSymmetrical());
    }
    return result;
}

/// What a new curve must hold when keys with these records and flags are put in: each key is new, takes the
/// record and then the flags, symmetrical first; automatic handles are computed when all keys are there.
class Expectation {
public:
    void add(unsigned int frame, const Draw::Record& record, bool smooth, bool symmetrical) {
        const std::size_t number = _curve.keys.size();
        _curve.keys.emplace_back();
        _curve.keys.back().record = record;
        _curve.setSymmetrical(number, symmetrical);
        _curve.setSmooth(number, smooth);
        _curve.insert(frame, number);
    }

    std::string state() {
        _curve.updateAllTangents();
        std::string result;
        for (const std::size_t number : _curve.inFrameOrder()) {
            const SimpleKey& key = _curve.keys[number];
            result += text(key.frame, key.record, key.smooth, key.symmetrical);
        }
        return result;
    }

private:
    SimpleCurve _curve;
};

std::string expectedOf(const MotionCurve& curve) {
    Expectation expectation;
    for (const auto element : curve) {
        expectation.add(element.first, *element.second, false, false);
    }
    return expectation.state();
}

std::string expectedOf(const EditableMotionCurve& curve) {
    Expectation expectation;
    for (const auto element : curve) {
        const EditableMotionCurveKey& key = *element.second;
        expectation.add(element.first, key.baseMotionCurveKey(), key.isSmooth(), key.isSymmetrical());
    }
    return expectation.state();
}

void requireReadByItsRules(const EditableAnimation& copy, const EditableAnimation& original) {
    RC_ASSERT(copy.size() == original.size());
    for (unsigned long i = 0; i < original.size(); ++i) {
        RC_ASSERT(copy[i]->getActuatorName() == original[i]->getActuatorName());
        RC_ASSERT(copy[i]->isMute() == original[i]->isMute());
        RC_ASSERT(stateOf(*copy[i]->getCurve()) == expectedOf(*original[i]->getCurve()));
    }
}

} // namespace

class RoundTripLawsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anyPlainAnimationComesBackFromItsTreeToTheBit() {
        QVERIFY(rc::check("a plain animation's tree keeps every bit", [] {
            Animation animation = anyPlainAnimation();
            Animation copy = anyPlainAnimation();
            RC_ASSERT(copy.deserialize(animation.serialize()));
            RC_ASSERT(stateOf(copy) == stateOf(animation));
            for (AnimationLayer& layer : animation) {
                layer.actuatorName = *rc::gen::arbitrary<std::string>();
                AnimationLayer layerCopy;
                RC_ASSERT(layerCopy.deserialize(layer.serialize()));
                RC_ASSERT(layerCopy.actuatorName == layer.actuatorName);
                RC_ASSERT(Records::of(layerCopy).toStdString() == Records::of(layer).toStdString());
                MotionCurve curveCopy;
                RC_ASSERT(curveCopy.deserialize(layer.curve->serialize()));
                RC_ASSERT(Records::of(curveCopy).toStdString() == Records::of(*layer.curve).toStdString());
            }
        }));
    }

    void anyPlainAnimationComesBackFromItsFileToTheBit() {
        QVERIFY(rc::check("a plain animation's file keeps every bit and is written the same again", [] {
            const Animation animation = anyPlainAnimation();
            const std::string file = toXml(animation.serialize());
            Animation copy;
            RC_ASSERT(copy.deserialize(fromXml(file)));
            RC_ASSERT(stateOf(copy) == stateOf(animation));
            RC_ASSERT(toXml(copy.serialize()) == file);
        }));
    }

    void wrappingChangesNothingButAutomaticHandles() {
        QVERIFY(rc::check(
            "an editable animation's plain copy is what was wrapped, automatic handles computed", [] {
                const Animation plain = anyPlainAnimation();
                const EditableAnimation wrapped(plain);
                const Animation base = wrapped.baseAnimation();
                RC_ASSERT(base.size() == plain.size());
                for (std::size_t i = 0; i < plain.size(); ++i) {
                    const AnimationLayer& before = *(plain.begin() + static_cast<std::ptrdiff_t>(i));
                    const AnimationLayer& after = *(base.begin() + static_cast<std::ptrdiff_t>(i));
                    RC_ASSERT(after.actuatorName == before.actuatorName);
                    RC_ASSERT(after.mute == before.mute);
                    RC_ASSERT(after.curve->getTimeUnit() == before.curve->getTimeUnit());
                    RC_ASSERT(stateOf(*wrapped[i]->getCurve()) == expectedOf(*before.curve));
                    RC_ASSERT(expectedOf(*after.curve) == stateOf(*wrapped[i]->getCurve()));
                }
            }));
    }

    void anyEditableAnimationComesBackAsItsRulesHaveIt() {
        QVERIFY(rc::check(
            "an editable animation read from its tree or file is its records and flags put in anew", [] {
                LawScene scene;
                const Tree tree = scene.animation().serialize();
                EditableAnimation fromTree;
                RC_ASSERT(fromTree.deserialize(tree));
                requireReadByItsRules(fromTree, scene.animation());
                EditableAnimation fromFile;
                RC_ASSERT(fromFile.deserialize(fromXml(toXml(tree))));
                requireReadByItsRules(fromFile, scene.animation());
            }));
    }

    void aPlainReaderSkipsTheFlagsOfAnEditableAnimation() {
        QVERIFY(rc::check("an editable animation's file read plainly is its plain copy to the bit", [] {
            LawScene scene;
            Animation plain;
            RC_ASSERT(plain.deserialize(fromXml(toXml(scene.animation().serialize()))));
            RC_ASSERT(stateOf(plain) == stateOf(scene.animation().baseAnimation()));
        }));
    }

    void aKeyThatReadsAnotherOnesTreeTakesItsRecordAndChangesItsFlags() {
        QVERIFY(rc::check("reading into a key is writing the record and setting the flags", [] {
            SimpleKeys simple;
            const auto add = [&simple](EditableMotionCurveKey& key) {
                simple.keys.emplace_back();
                SimpleKey& twin = simple.keys.back();
                twin.name = "key";
                twin.record = key.baseMotionCurveKey();
                const std::size_t number = simple.keys.size() - 1;
                for (int edits = Draw::below(4); edits > 0; --edits) {
                    const bool state = Draw::yesOrNo();
                    const Draw::Side side = Draw::side();
                    const Draw::Type type = Draw::type();
                    key.setSmooth(state);
                    simple.setSmooth(number, state);
                    key.setSymmetrical(!state);
                    simple.setSymmetrical(number, !state);
                    key.setTangentType(side, type);
                    simple.setType(number, side, type);
                }
            };
            EditableMotionCurveKey written(*Records::anyKey());
            EditableMotionCurveKey read(*Records::anyKey());
            add(written);
            add(read);
            SignalLog log;
            log.listenTo(read, "key");
            RC_ASSERT(read.deserialize(written.serialize()));

            const SimpleKey& source = simple.keys[0];
            simple.keys[1].isHeard = true;
            simple.keys[1].record = written.baseMotionCurveKey();
            simple.setSymmetrical(1, source.symmetrical);
            simple.setSmooth(1, source.smooth);
            RC_ASSERT(log.entries == simple.heard);
            const SimpleKey& expected = simple.keys[1];
            RC_ASSERT(text(0, read.baseMotionCurveKey(), read.isSmooth(), read.isSymmetrical()) ==
                      text(0, expected.record, expected.smooth, expected.symmetrical));
        }));
    }
};

QTEST_GUILESS_MAIN(RoundTripLawsTest)
#include "RoundTripLawsTest.moc"
