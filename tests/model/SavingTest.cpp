#include "base/animation/AnimationXml.h"
#include "tests/support/SignalRecorder.h"
#include "tests/support/Snapshot.h"

#include <QtTest>

#include <memory>
#include <sstream>

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
        lines.append(layer->getActuatorName());
        for (const auto element : std::as_const(*layer->getCurve())) {
            lines.append(QString::number(element.first) + ' ' + Snapshot::of(*element.second));
        }
    }
    return lines.join('\n');
}

Tree& lastKey(Tree& animation) {
    return animation.back().second.get_child("curve").back().second;
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
};

QTEST_GUILESS_MAIN(SavingTest)
#include "SavingTest.moc"
