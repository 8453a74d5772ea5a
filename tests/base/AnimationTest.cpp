#include "base/animation/Animation.h"

#include "Damages.h"

#include <QtTest>

#include <boost/property_tree/ptree.hpp>

#include <exception>
#include <type_traits>

using Records::Animation;
using Records::AnimationLayer;
using Records::Tree;

namespace {

struct Refusal : std::exception {};

class CountedLayer : public AnimationLayer {
public:
    explicit CountedLayer(const std::string& name = {}) {
        actuatorName = name;
        ++alive();
    }
    CountedLayer(const CountedLayer&) = delete;
    CountedLayer& operator=(const CountedLayer&) = delete;
    ~CountedLayer() override { --alive(); }

    static int& alive() {
        static int count = 0;
        return count;
    }
};

/// Adds what it finds in its animation, when it dies, to what was seen.
class LookingLayer : public AnimationLayer {
public:
    LookingLayer(const Animation& animation, std::size_t& seen)
        : _animation(animation)
        , _seen(seen) {}
    LookingLayer(const LookingLayer&) = delete;
    LookingLayer& operator=(const LookingLayer&) = delete;
    ~LookingLayer() override { _seen += _animation.size(); }

private:
    const Animation& _animation;
    std::size_t& _seen;
};

class CountingAnimation : public Animation {
public:
    using Animation::replace;

    explicit CountingAnimation(std::size_t allowed = 1000)
        : _allowed(allowed) {}

    AnimationLayer* createLayer() const override {
        if (_created.size() == _allowed) {
            throw Refusal();
        }
        _created.push_back(new CountedLayer);
        return _created.back();
    }

    const std::vector<AnimationLayer*>& created() const { return _created; }

private:
    std::size_t _allowed;
    mutable std::vector<AnimationLayer*> _created;
};

QString namesOf(const Animation& animation) {
    QStringList names;
    for (const AnimationLayer& layer : animation) {
        names.append(QString::fromStdString(layer.actuatorName));
    }
    return names.join(' ');
}

void fill(Animation& animation) {
    for (const char* const name : {"a", "b", "c", "b"}) {
        animation.push_back(new CountedLayer(name));
    }
}

} // namespace

class AnimationTest : public QObject {
    Q_OBJECT

private slots:
    void init() { CountedLayer::alive() = 0; }

    void aNewAnimationIsEmpty() {
        const Animation animation;
        QVERIFY(animation.empty());
        QCOMPARE(animation.size(), std::size_t{0});
        QVERIFY(animation.begin() == animation.end());
        QVERIFY(animation.find("") == animation.end());
        static_assert(std::has_virtual_destructor_v<Animation>);
    }

    void theFactoryMakesANewLayer() {
        const std::unique_ptr<AnimationLayer> layer(Animation().createLayer());
        QCOMPARE(Records::of(*layer), Records::of(AnimationLayer()));
    }

    void layersStandWhereTheyWereInserted() {
        Animation animation;
        animation.push_back(new CountedLayer("b"));
        QCOMPARE(animation.insert(animation.begin(), new CountedLayer("a"))->actuatorName, std::string("a"));
        auto* const last = new CountedLayer("d");
        QVERIFY(&*animation.insert(animation.end(), last) == last);
        const auto inserted = animation.insert(animation.begin() + 2, new CountedLayer("c"));
        QVERIFY(inserted == animation.begin() + 2);
        QCOMPARE(namesOf(animation), QString("a b c d"));
        QCOMPARE(animation.size(), std::size_t{4});
        QVERIFY(!animation.empty());
    }

    void insertingNothingIsRefused() {
        Animation animation;
        fill(animation);
        QVERIFY_EXCEPTION_THROWN(animation.push_back(nullptr), boost::bad_pointer);
        QVERIFY_EXCEPTION_THROWN(animation.insert(animation.begin(), nullptr), boost::bad_pointer);
        QCOMPARE(namesOf(animation), QString("a b c b"));
    }

    void findingGivesTheFirstLayerOfTheName() {
        Animation animation;
        fill(animation);
        const Animation& readOnly = animation;
        QVERIFY(animation.find("b") == animation.begin() + 1);
        QVERIFY(readOnly.find("b") == readOnly.begin() + 1);
        QVERIFY(animation.find("B") == animation.end());
        QVERIFY(readOnly.find("") == readOnly.end());
    }

    void erasingDeletesTheLayerAndGivesTheNext() {
        Animation animation;
        fill(animation);
        QCOMPARE(animation.erase(animation.begin() + 1)->actuatorName, std::string("c"));
        QCOMPARE(CountedLayer::alive(), 3);
        QCOMPARE(namesOf(animation), QString("a c b"));
        const auto behind = animation.erase(animation.begin() + 2);
        QVERIFY(behind == animation.end());
        QCOMPARE(CountedLayer::alive(), 2);
    }

    void releasingGivesTheLayerToTheCaller() {
        Animation animation;
        fill(animation);
        const int count = CountedLayer::alive();
        auto layer = animation.release(animation.begin() + 1);
        QCOMPARE(layer->actuatorName, std::string("b"));
        QCOMPARE(namesOf(animation), QString("a c b"));
        QCOMPARE(CountedLayer::alive(), count);
        QVERIFY(animation.release(animation.end()) == nullptr);
        layer.reset();
        QCOMPARE(CountedLayer::alive(), count - 1);
    }

    void clearingDeletesEveryLayer() {
        Animation animation;
        fill(animation);
        animation.clear();
        QCOMPARE(CountedLayer::alive(), 0);
        QVERIFY(animation.empty());
    }

    void aDyingLayerFindsNoLayerInAnAnimationThatDies() {
        std::size_t seen = 1;
        {
            Animation animation;
            animation.push_back(new LookingLayer(animation, seen));
            animation.push_back(new LookingLayer(animation, seen));
        }
        QCOMPARE(seen, std::size_t{1});
    }

    void aDyingAnimationDeletesEveryLayer() {
        {
            Animation animation;
            fill(animation);
            QCOMPARE(CountedLayer::alive(), 4);
        }
        QCOMPARE(CountedLayer::alive(), 0);
    }

    void replacingDeletesTheFormerLayer() {
        CountingAnimation animation;
        fill(animation);
        animation.replace(animation.begin() + 1, new CountedLayer("x"));
        QCOMPARE(namesOf(animation), QString("a x c b"));
        QCOMPARE(CountedLayer::alive(), 4);
    }

    void copiesAreIndependentAndPlain() {
        Animation animation = Records::makeAnimation();
        fill(animation);
        const QString before = Records::withIdentity(animation);
        Animation copy(animation);
        QCOMPARE(Records::of(copy), Records::of(animation));
        QCOMPARE(CountedLayer::alive(), 4);
        QVERIFY(typeid(*(copy.end() - 1)) == typeid(AnimationLayer));
        copy.begin()->curve->clear();
        copy.begin()->actuatorName = "other";
        copy.erase(copy.end() - 1);
        QCOMPARE(Records::withIdentity(animation), before);
        copy = animation;
        QCOMPARE(Records::of(copy), Records::of(animation));
        animation.clear();
        QCOMPARE(copy.size(), std::size_t{6});
    }

    void movingKeepsTheLayerObjects() {
        Animation animation = Records::makeAnimation();
        const QString before = Records::withIdentity(animation);
        Animation moved(std::move(animation));
        QCOMPARE(Records::withIdentity(moved), before);
        Animation assigned = Records::makeAnimation();
        assigned = std::move(moved);
        QCOMPARE(Records::withIdentity(assigned), before);
    }

    void everyAnimationReadsBack() {
        const Animation animation = Records::makeAnimation();
        const Records::CommaLocale comma;
        Animation copy = Records::makeAnimation();
        copy.erase(copy.begin());
        QVERIFY(copy.deserialize(animation.serialize()));
        QCOMPARE(Records::of(copy), Records::of(animation));
        QVERIFY(copy.deserialize(Animation().serialize()));
        QVERIFY(copy.empty());
    }

    void layersOfOneNameAreKeptApart() {
        Animation animation;
        animation.push_back(new AnimationLayer(Records::makeLayer("arm", true, 1.0F)));
        animation.push_back(new AnimationLayer(Records::makeLayer("arm", false, 2.0F)));
        Animation copy;
        QVERIFY(copy.deserialize(animation.serialize()));
        QCOMPARE(Records::of(copy), Records::of(animation));
    }

    void readingMakesEachLayerThroughTheFactory() {
        CountingAnimation animation;
        fill(animation);
        QVERIFY(animation.deserialize(Records::makeAnimation().serialize()));
        std::vector<AnimationLayer*> held;
        for (AnimationLayer& layer : animation) {
            held.push_back(&layer);
        }
        QVERIFY(held == animation.created());
        QCOMPARE(CountedLayer::alive(), 2);
    }

    void aTreeThatIsNoAnimationLeavesTheAnimationUnchanged_data() { Damages::addRows(Damages::ofLayer()); }

    void aTreeThatIsNoAnimationLeavesTheAnimationUnchanged() {
        QFETCH(int, index);
        const Damages::Damage damage = Damages::ofLayer().at(static_cast<std::size_t>(index));
        Animation source = Records::makeAnimation();
        source.push_back(new AnimationLayer(source.begin()[0]));
        Tree tree = source.serialize();
        damage.apply(Damages::child(tree, "layer", 3));
        CountingAnimation animation;
        fill(animation);
        const QString before = Records::withIdentity(animation);
        QVERIFY(!animation.deserialize(tree));
        QCOMPARE(Records::withIdentity(animation), before);
        QCOMPARE(CountedLayer::alive(), 4);
        const QString problem = QString::fromStdString(Animation::problemIn(tree));
        QVERIFY2(problem.contains("layer 3"), qPrintable(problem));
        for (const std::string& mention : damage.mentions) {
            QVERIFY2(problem.contains(QString::fromStdString(mention)), qPrintable(problem));
        }
    }

    void unknownItemsAreSkipped() {
        const Animation animation = Records::makeAnimation();
        Tree tree = animation.serialize();
        Damages::addUnknownItems(tree);
        QCOMPARE(Animation::problemIn(tree), std::string());
        Animation copy;
        QVERIFY(copy.deserialize(tree));
        QCOMPARE(Records::of(copy), Records::of(animation));
    }

    void anExceptionOfTheFactoryLeavesTheAnimationUnchanged() {
        for (const std::size_t allowed : {0U, 1U}) {
            CountingAnimation animation(allowed);
            fill(animation);
            const QString before = Records::withIdentity(animation);
            QVERIFY_EXCEPTION_THROWN(animation.deserialize(Records::makeAnimation().serialize()), Refusal);
            QCOMPARE(Records::withIdentity(animation), before);
            QCOMPARE(CountedLayer::alive(), 4);
            animation.clear();
        }
    }
};

QTEST_GUILESS_MAIN(AnimationTest)
#include "AnimationTest.moc"
