#include "base/animation/AnimationXml.h"
#include "tests/support/SignalRecorder.h"
#include "tests/support/Snapshot.h"

#include <QPointer>
#include <QtTest>

#include <rapidcheck.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

using Type = VQ::Math::Interpolation::InterpolationType;
using ZT::EditableAnimation;
using ZT::EditableAnimationLayer;
using ZT::EditableMotionCurve;
using ZT::EditableMotionCurveKey;
using Tree = boost::property_tree::ptree;

namespace {

std::unique_ptr<EditableAnimation> twoLayers() {
    auto animation = std::make_unique<EditableAnimation>();
    for (const char* const name : {"elbow", "wrist"}) {
        auto* const layer = new EditableAnimationLayer;
        layer->setActuatorName(name);
        for (const unsigned int frame : {0U, 10U, 20U}) {
            layer->getCurve()->insert(frame, new EditableMotionCurveKey);
            layer->getCurve()->getKey(frame)->setValue(static_cast<float>(frame % 20U));
        }
        layer->getCurve()->updateBezierAutoTangents();
        layer->getCurve()->getKey(10)->setSmooth(true);
        layer->getCurve()->getKey(20)->setSymmetrical(true);
        animation->push_back(layer);
    }
    return animation;
}

/// The state without the keys' addresses: what a copy of it must equal.
QString state(const EditableAnimation& animation) {
    QStringList lines;
    for (const EditableAnimationLayer* const layer : animation) {
        lines.append(layer->getActuatorName() + (layer->isMute() ? " mute" : ""));
        for (const auto element : std::as_const(*layer->getCurve())) {
            lines.append(QString::number(element.first) + ' ' + Snapshot::of(*element.second));
        }
    }
    return lines.join('\n');
}

Tree& lastLayer(Tree& animation) {
    return animation.back().second;
}

Tree& lastKey(Tree& animation) {
    return lastLayer(animation).get_child("curve").back().second;
}

/// What makes a tree unreadable, each in the last layer.
const std::vector<std::pair<const char*, std::function<void(Tree&)>>>& damages() {
    static const std::vector<std::pair<const char*, std::function<void(Tree&)>>> all{
        {"the last key stands where another one does",
         [](Tree& tree) { lastKey(tree).put("<xmlattr>.frame", "10"); }},
        {"a frame with a fraction", [](Tree& tree) { lastKey(tree).put("<xmlattr>.frame", "1.5"); }},
        {"a negative frame", [](Tree& tree) { lastKey(tree).put("<xmlattr>.frame", "-1"); }},
        {"a frame past the last one", [](Tree& tree) { lastKey(tree).put("<xmlattr>.frame", "4294967296"); }},
        {"no frame", [](Tree& tree) { lastKey(tree).get_child("<xmlattr>").erase("frame"); }},
        {"no value", [](Tree& tree) { lastKey(tree).get_child("<xmlattr>").erase("value"); }},
        {"a value with a tail", [](Tree& tree) { lastKey(tree).put("<xmlattr>.value", "1.5m"); }},
        {"no right tangent", [](Tree& tree) { lastKey(tree).erase("right"); }},
        {"an unknown type", [](Tree& tree) { lastKey(tree).put("right.<xmlattr>.type", "wavy"); }},
        {"two left tangents",
         [](Tree& tree) {
             const Tree left = lastKey(tree).get_child("left");
             lastKey(tree).push_back({"left", left});
         }},
        {"no name", [](Tree& tree) { lastLayer(tree).get_child("<xmlattr>").erase("name"); }},
        {"a mute flag that is no flag", [](Tree& tree) { lastLayer(tree).put("<xmlattr>.mute", "maybe"); }},
        {"no curve", [](Tree& tree) { lastLayer(tree).erase("curve"); }},
        {"no time unit", [](Tree& tree) { lastLayer(tree).get_child("curve.<xmlattr>").erase("timeUnit"); }},
    };
    return all;
}

/// An animation with all kinds of keys; the flags are set last, as an editor leaves them.
std::unique_ptr<EditableAnimation> anyAnimation() {
    const auto number = [] { return static_cast<float>(*rc::gen::inRange(-1000000, 1000000)) / 7.0F; };
    auto animation = std::make_unique<EditableAnimation>();
    for (int layers = *rc::gen::inRange(0, 4); layers > 0; --layers) {
        auto* const layer = new EditableAnimationLayer;
        layer->setActuatorName(QString::fromUtf8("<\u8155 & \"co\"> ") + QString::number(layers));
        layer->setMute(*rc::gen::inRange(0, 2) == 1);
        for (int keys = *rc::gen::inRange(0, 12); keys > 0; --keys) {
            VQ::Math::Interpolation::Key record;
            record.value = number();
            record.leftTangentType = static_cast<Type>(*rc::gen::inRange(0, 4));
            record.leftTangentOffset = {number(), number()};
            record.rightTangentType = static_cast<Type>(*rc::gen::inRange(0, 4));
            record.rightTangentOffset = {number(), number()};
            layer->getCurve()->insert(*rc::gen::arbitrary<unsigned int>(),
                                      new EditableMotionCurveKey(record));
        }
        for (const auto element : *layer->getCurve()) {
            element.second->setSymmetrical(*rc::gen::inRange(0, 3) == 2);
            element.second->setSmooth(element.second->isSymmetrical() && *rc::gen::inRange(0, 2) == 1);
        }
        layer->getCurve()->updateBezierAutoTangents();
        animation->push_back(layer);
    }
    return animation;
}

} // namespace

class SavingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anAnimationKeepsItsKeysFlagsThroughItsTree() {
        const auto original = twoLayers();
        EditableAnimation copy;
        QVERIFY(copy.deserialize(original->serialize()));
        QCOMPARE(state(copy), state(*original));
    }

    void anAnimationSurvivesAFile() {
        const auto original = twoLayers();
        std::stringstream file;
        VQ::Animation::writeAnimationXml(file, original->serialize());
        EditableAnimation copy;
        QVERIFY(copy.deserialize(VQ::Animation::readAnimationXml(file)));
        QCOMPARE(state(copy), state(*original));
    }

    void layersAndCurvesKeepTheirKeysFlagsToo() {
        const auto original = twoLayers();
        EditableAnimationLayer layer;
        QVERIFY(layer.deserialize((*original)[1]->serialize()));
        QCOMPARE(layer.getActuatorName(), QString("wrist"));
        QVERIFY(layer.getCurve()->getKey(10)->isSmooth());
        EditableMotionCurve curve;
        QVERIFY(curve.deserialize((*original)[1]->getCurve()->serialize()));
        QVERIFY(curve.getKey(20)->isSymmetrical());
        QCOMPARE(curve.getKey(20)->getParentCurve(), &curve);
    }

    void whatWasReadIsConnectedUpToTheAnimation() {
        EditableAnimation animation;
        QVERIFY(animation.deserialize(twoLayers()->serialize()));
        SignalRecorder recorder;
        recorder.watch(animation);
        EditableAnimationLayer* const layer = animation.getLayer("wrist");
        QCOMPARE(layer->getParentAnimation(), &animation);
        QCOMPARE(layer->getCurve()->getParentLayer(), layer);
        layer->getCurve()->getKey(10)->setValue(77.0F);
        QCOMPARE(recorder.take(), QString("animation.layersChanged()"));
        layer->getCurve()->translateKey(layer->getCurve()->getKey(20), 60);
        QCOMPARE(recorder.take(), QString("animation.layersChanged(), animation.greaterIndexChanged()"));
        layer->setActuatorName("hand");
        QCOMPARE(recorder.take(), QString("animation.layersChanged()"));
    }

    void aFailedReadLeavesTheAnimationAsItWas() {
        const auto animation = twoLayers();
        Tree tree = animation->serialize();
        lastKey(tree).put("<xmlattr>.frame", "1.5");
        const QString before = Snapshot::of(*animation);
        EditableAnimationLayer* const layer = (*animation)[1];
        QVERIFY(!animation->deserialize(tree));
        QCOMPARE(Snapshot::of(*animation), before);
        QCOMPARE((*animation)[1], layer);
        SignalRecorder recorder;
        recorder.watch(*animation);
        layer->getCurve()->getKey(10)->setValue(5.0F);
        QCOMPARE(recorder.take(), QString("animation.layersChanged()"));
    }

    void aFailedReadLeavesLayerAndCurveAsTheyWere() {
        const auto animation = twoLayers();
        Tree tree = animation->serialize();
        lastKey(tree).erase("left");
        const Tree layerTree = tree.back().second;
        EditableAnimationLayer& layer = *(*animation)[0];
        const QString before = Snapshot::of(*animation);
        EditableMotionCurve* const curve = layer.getCurve();
        QVERIFY(!layer.deserialize(layerTree));
        QVERIFY(!curve->deserialize(layerTree.get_child("curve")));
        QCOMPARE(layer.getCurve(), curve);
        QCOMPARE(Snapshot::of(*animation), before);
        SignalRecorder recorder;
        recorder.watch(layer);
        curve->getKey(10)->setValue(5.0F);
        QCOMPARE(recorder.take(), QString("layer.curveChanged()"));
    }

    void whatIsWrongIsSaidWithItsPlace() {
        Tree tree = twoLayers()->serialize();
        lastKey(tree).put("left.<xmlattr>.type", "wavy");
        const QString problem = QString::fromStdString(EditableAnimation::problemIn(tree));
        QVERIFY2(problem.contains("layer 2") && problem.contains("key 3") && problem.contains("wavy"),
                 qPrintable(problem));
    }

    void baseCopiesArePlain() {
        const auto animation = twoLayers();
        std::ostringstream file;
        VQ::Animation::writeAnimationXml(file, animation->baseAnimation().serialize());
        QVERIFY(file.str().find("<key ") != std::string::npos);
        QVERIFY(file.str().find("smooth") == std::string::npos);
        QVERIFY(file.str().find("symmetrical") == std::string::npos);
        const auto smooth = (*animation)[0]->getCurve()->baseMotionCurve().serialize();
        QVERIFY(smooth.back().second.get_optional<std::string>("<xmlattr>.symmetrical") == boost::none);
    }

    void anyAnimationSurvivesAFile() {
        QVERIFY(rc::check("what is read from a file is what was written, to the bit", [] {
            const auto original = anyAnimation();
            std::stringstream file;
            VQ::Animation::writeAnimationXml(file, original->serialize());
            EditableAnimation copy;
            RC_ASSERT(copy.deserialize(VQ::Animation::readAnimationXml(file)));
            RC_ASSERT(state(copy).toStdString() == state(*original).toStdString());
        }));
    }

    // A smooth key's handles are aligned once more when they are read: the line stays, bits may not.
    void aSmoothKeysHandlesKeepTheirLineThroughATree() {
        QVERIFY(rc::check("the handles of a smooth key stay within rounding", [] {
            const auto part = [] { return static_cast<float>(*rc::gen::inRange(1, 1000)) / 7.0F; };
            EditableMotionCurve curve;
            auto* const key = new EditableMotionCurveKey;
            curve.insert(5, key);
            key->setSmooth(true);
            key->setLeftTangentOffset({-part(), part()});
            key->setRightTangentOffset({part(), part()});
            EditableMotionCurve copy;
            RC_ASSERT(copy.deserialize(curve.serialize()));
            const auto before = key->baseMotionCurveKey();
            const auto after = copy.getKey(5)->baseMotionCurveKey();
            RC_ASSERT(copy.getKey(5)->isSmooth());
            RC_ASSERT(!copy.getKey(5)->isSymmetrical());
            RC_ASSERT(after.leftTangentOffset.isNear(before.leftTangentOffset,
                                                     1e-5F * (1.0F + before.leftTangentOffset.norm())));
            RC_ASSERT(after.rightTangentOffset.isNear(before.rightTangentOffset,
                                                      1e-5F * (1.0F + before.rightTangentOffset.norm())));
        }));
    }

    void onlyTheKeysThatHaveAFlagCarryIt() {
        const Tree curve = (*twoLayers())[0]->getCurve()->serialize();
        QStringList flags;
        for (const auto& [name, node] : curve) {
            if (name == "key") {
                flags << QString::fromStdString(node.get("<xmlattr>.frame", "?") + ':' +
                                                node.get("<xmlattr>.symmetrical", "-") + ':' +
                                                node.get("<xmlattr>.smooth", "-"));
            }
        }
        QCOMPARE(flags.join(' '), QString("0:-:- 10:-:true 20:true:-"));
    }

    void aFlagThatIsNoFlagCountsAsFalse() {
        Tree tree = twoLayers()->serialize();
        lastKey(tree).put("<xmlattr>.symmetrical", "perhaps");
        EditableAnimation animation;
        QVERIFY(animation.deserialize(tree));
        QVERIFY(!animation[1]->getCurve()->getKey(20)->isSymmetrical());
    }

    void settingsAreSavedWithTheCurve() {
        VQ::Animation::MotionCurve plain;
        plain.setTimeUnit(VQ::Animation::RationalSeconds(boost::rational<int>(1001, 30000)));
        plain.setValueLimits({-1.5F, 2.5F});
        plain.setMaxAbsoluteDerivative(0.1F);
        EditableMotionCurve curve;
        QVERIFY(curve.deserialize(EditableMotionCurve(plain).serialize()));
        QVERIFY(curve.getTimeUnit() == plain.getTimeUnit());
        QCOMPARE(curve.getValueLimits(), qMakePair(-1.5F, 2.5F));
        QCOMPARE(curve.getMaxAbsoluteDerivative(), 0.1F);
    }

    void readingReplacesWhatWasThere() {
        const auto animation = twoLayers();
        const QPointer<EditableAnimationLayer> layer = (*animation)[0];
        const QPointer<EditableMotionCurve> curve = layer->getCurve();
        const QPointer<EditableMotionCurveKey> key = curve->getKey(10);
        ZT::AnimationMarkers* const markers = animation->getMarkers();
        markers->setSelectedIndex(6);
        QVERIFY(animation->deserialize(Tree()));
        QVERIFY(animation->empty());
        QVERIFY(layer.isNull());
        QVERIFY(curve.isNull());
        QVERIFY(key.isNull());
        QCOMPARE(animation->getMarkers(), markers);
        QCOMPARE(markers->selectedIndex(), 6U);
    }

    void aLayerReadInsideAnAnimationIsHeardThere() {
        const auto animation = twoLayers();
        EditableAnimationLayer& layer = *(*animation)[0];
        const QPointer<EditableMotionCurve> old = layer.getCurve();
        QVERIFY(layer.deserialize(layer.serialize()));
        QVERIFY(old.isNull());
        QCOMPARE(layer.getCurve()->getParentLayer(), &layer);
        QCOMPARE(layer.getParentAnimation(), animation.get());
        SignalRecorder recorder;
        recorder.watch(*animation);
        layer.getCurve()->getKey(10)->setValue(9.0F);
        QCOMPARE(recorder.take(), QString("animation.layersChanged()"));
    }

    void aCurveReadInsideAnAnimationIsHeardThere() {
        const auto animation = twoLayers();
        EditableMotionCurve& curve = *(*animation)[0]->getCurve();
        const QPointer<EditableMotionCurveKey> old = curve.getKey(10);
        QVERIFY(curve.deserialize(curve.serialize()));
        QVERIFY(old.isNull());
        QCOMPARE(curve.getKey(10)->getParentCurve(), &curve);
        SignalRecorder recorder;
        recorder.watch(*animation);
        curve.getKey(10)->setValue(9.0F);
        QCOMPARE(recorder.take(), QString("animation.layersChanged()"));
    }

    void noDamageIsHalfRead_data() {
        QTest::addColumn<int>("damage");
        for (std::size_t i = 0; i < damages().size(); ++i) {
            QTest::newRow(damages()[i].first) << static_cast<int>(i);
        }
    }
    void noDamageIsHalfRead() {
        QFETCH(int, damage);
        const auto animation = twoLayers();
        const std::vector<EditableAnimationLayer*> layers(animation->begin(), animation->end());
        const std::vector<EditableMotionCurve*> curves{layers[0]->getCurve(), layers[1]->getCurve()};
        const QString before = Snapshot::of(*animation);
        Tree tree = animation->serialize();
        damages()[static_cast<std::size_t>(damage)].second(tree);
        QVERIFY(!animation->deserialize(tree));
        QVERIFY(!layers[0]->deserialize(lastLayer(tree)));
        QVERIFY(!EditableAnimation::problemIn(tree).empty());
        QCOMPARE(Snapshot::of(*animation), before);
        QVERIFY(std::equal(layers.begin(), layers.end(), animation->begin(), animation->end()));
        for (std::size_t i = 0; i < layers.size(); ++i) {
            QCOMPARE(layers[i]->getParentAnimation(), animation.get());
            QCOMPARE(layers[i]->getCurve(), curves[i]);
            QCOMPARE(curves[i]->getParentLayer(), layers[i]);
            for (const auto element : *curves[i]) {
                QCOMPARE(element.second->getParentCurve(), curves[i]);
            }
            SignalRecorder recorder;
            recorder.watch(*animation);
            curves[i]->getKey(0)->setValue(3.0F);
            QCOMPARE(recorder.take(), QString("animation.layersChanged()"));
            curves[i]->translateKey(curves[i]->getKey(20), static_cast<unsigned int>(40 + i));
            QCOMPARE(recorder.take(), QString("animation.layersChanged(), animation.greaterIndexChanged()"));
        }
    }
};

QTEST_GUILESS_MAIN(SavingTest)
#include "SavingTest.moc"
