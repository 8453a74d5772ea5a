#include "base/animation/AnimationLayer.h"

#include "Damages.h"
#include "WatchedCurve.h"

#include <QtTest>

#include <boost/property_tree/ptree.hpp>

#include <type_traits>

using Records::AnimationLayer;
using Records::MotionCurve;
using Records::Tree;

namespace {

class WatchedLayer : public AnimationLayer {
public:
    explicit WatchedLayer(std::size_t allowedKeys = 1000, bool refusesCurves = false)
        : _allowedKeys(allowedKeys)
        , _refusesCurves(refusesCurves) {
        curve = std::make_unique<Watched::Curve>();
        static_cast<Watched::Curve&>(*curve).add(2);
        actuatorName = "former";
        mute = true;
    }

    MotionCurve* createCurve() const override {
        if (_refusesCurves) {
            throw Watched::Refusal();
        }
        _created.push_back(new Watched::Curve(_allowedKeys));
        return _created.back();
    }

    const std::vector<MotionCurve*>& created() const { return _created; }

private:
    std::size_t _allowedKeys;
    bool _refusesCurves;
    mutable std::vector<MotionCurve*> _created;
};

} // namespace

class AnimationLayerTest : public QObject {
    Q_OBJECT

private slots:
    void init() { Watched::forget(); }

    void aNewLayerHoldsAnEmptyCurve() {
        const AnimationLayer layer;
        QVERIFY(layer.curve != nullptr);
        QCOMPARE(Records::of(*layer.curve), Records::of(MotionCurve()));
        QVERIFY(layer.actuatorName.empty());
        QVERIFY(!layer.mute);
        static_assert(std::has_virtual_destructor_v<AnimationLayer>);
    }

    void theFactoryMakesAnEmptyCurve() {
        const std::unique_ptr<MotionCurve> curve(AnimationLayer().createCurve());
        QCOMPARE(Records::of(*curve), Records::of(MotionCurve()));
    }

    void fieldsStandFromCurveToMute() {
        const AnimationLayer layer;
        const std::less<const void*> before;
        QVERIFY(before(&layer.curve, &layer.actuatorName));
        QVERIFY(before(&layer.actuatorName, &layer.mute));
    }

    void replacingTheCurveDestroysTheFormerOneWithItsKeys() {
        {
            WatchedLayer layer;
            layer.curve.reset(layer.createCurve());
            QCOMPARE(Watched::WatchedKey::dead().size(), std::size_t{1});
            static_cast<Watched::Curve&>(*layer.curve).add(1);
        }
        QCOMPARE(Watched::WatchedKey::made(), 2);
        QVERIFY(Watched::everyKeyDiedOnce());
    }

    void copiesAreIndependent() {
        AnimationLayer layer = Records::makeLayer("arm", true);
        const QString before = Records::withIdentity(layer);
        AnimationLayer copy(layer);
        QCOMPARE(Records::of(copy), Records::of(layer));
        copy.curve->clear();
        copy.actuatorName = "leg";
        copy.mute = false;
        QCOMPARE(Records::withIdentity(layer), before);
        copy = layer;
        QCOMPARE(Records::of(copy), Records::of(layer));
        QVERIFY(copy.curve != layer.curve);
        layer.curve->clear();
        QCOMPARE(copy.curve->size(), std::size_t{3});
    }

    void aCopyWithoutCurveHasNone() {
        AnimationLayer layer;
        layer.curve.reset();
        QVERIFY(AnimationLayer(layer).curve == nullptr);
    }

    void movingKeepsTheCurveObject() {
        AnimationLayer layer = Records::makeLayer("arm", true);
        const QString before = Records::withIdentity(layer);
        AnimationLayer moved(std::move(layer));
        QCOMPARE(Records::withIdentity(moved), before);
        AnimationLayer assigned;
        assigned = std::move(moved);
        QCOMPARE(Records::withIdentity(assigned), before);
    }

    void everyLayerReadsBack_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<bool>("mute");
        QTest::newRow("nameless") << QByteArray() << false;
        QTest::newRow("mute") << QByteArray("arm") << true;
        QTest::newRow("accents, blanks and dots") << QByteArray(" t\xc3\xaate . <xmlattr>.a/b ") << false;
        QTest::newRow("with a null character") << QByteArray("a\0b", 3) << true;
    }

    void everyLayerReadsBack() {
        QFETCH(QByteArray, name);
        QFETCH(bool, mute);
        const AnimationLayer layer = Records::makeLayer(name.toStdString(), mute);
        const Records::CommaLocale comma;
        AnimationLayer copy = Records::makeLayer("former", !mute);
        QVERIFY(copy.deserialize(layer.serialize()));
        QCOMPARE(Records::of(copy), Records::of(layer));
        QVERIFY(copy.actuatorName == layer.actuatorName);
    }

    void aLayerWithoutCurveIsWrittenWithAnEmptyOne() {
        AnimationLayer layer;
        layer.curve.reset();
        AnimationLayer copy = Records::makeLayer("former");
        QVERIFY(copy.deserialize(layer.serialize()));
        QVERIFY(copy.curve->empty());
    }

    void readingMakesTheCurveThroughTheFactory() {
        {
            WatchedLayer layer;
            QVERIFY(layer.deserialize(Records::makeLayer("arm").serialize()));
            QVERIFY(layer.created() == std::vector<MotionCurve*>{layer.curve.get()});
            QCOMPARE(static_cast<Watched::Curve&>(*layer.curve).created().size(), std::size_t{3});
        }
        QVERIFY(Watched::everyKeyDiedOnce());
    }

    void aTreeThatIsNoLayerLeavesTheLayerUnchanged_data() { Damages::addRows(Damages::ofLayer()); }

    void aTreeThatIsNoLayerLeavesTheLayerUnchanged() {
        QFETCH(int, index);
        const Damages::Damage damage = Damages::ofLayer().at(static_cast<std::size_t>(index));
        Tree tree = Records::makeLayer("arm", true).serialize();
        damage.apply(tree);
        {
            WatchedLayer layer;
            const QString before = Records::withIdentity(layer);
            QVERIFY(!layer.deserialize(tree));
            QCOMPARE(Records::withIdentity(layer), before);
        }
        QVERIFY(Watched::everyKeyDiedOnce());
        const QString problem = QString::fromStdString(AnimationLayer::problemIn(tree));
        QVERIFY(!problem.isEmpty());
        for (const std::string& mention : damage.mentions) {
            QVERIFY2(problem.contains(QString::fromStdString(mention)), qPrintable(problem));
        }
    }

    void unknownItemsAreSkipped() {
        const AnimationLayer layer = Records::makeLayer("arm", true);
        Tree tree = layer.serialize();
        Damages::addUnknownItems(tree);
        QCOMPARE(AnimationLayer::problemIn(tree), std::string());
        AnimationLayer copy;
        QVERIFY(copy.deserialize(tree));
        QCOMPARE(Records::of(copy), Records::of(layer));
    }

    void anExceptionOfAFactoryLeavesTheLayerUnchanged_data() {
        QTest::addColumn<int>("allowedKeys");
        QTest::addColumn<bool>("refusesCurves");
        QTest::newRow("curve") << 9 << true;
        QTest::newRow("first key") << 0 << false;
        QTest::newRow("third key") << 2 << false;
    }

    void anExceptionOfAFactoryLeavesTheLayerUnchanged() {
        QFETCH(int, allowedKeys);
        QFETCH(bool, refusesCurves);
        {
            WatchedLayer layer(static_cast<std::size_t>(allowedKeys), refusesCurves);
            const QString before = Records::withIdentity(layer);
            const Tree tree = Records::makeLayer("arm").serialize();
            QVERIFY_EXCEPTION_THROWN(layer.deserialize(tree), Watched::Refusal);
            QCOMPARE(Records::withIdentity(layer), before);
        }
        QVERIFY(Watched::everyKeyDiedOnce());
    }
};

QTEST_GUILESS_MAIN(AnimationLayerTest)
#include "AnimationLayerTest.moc"
