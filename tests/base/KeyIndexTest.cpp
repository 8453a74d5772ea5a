#include "base/animation/KeyIndex.h"

#include <QtTest>

#include <rapidcheck.h>

#include <array>
#include <map>
#include <random>
#include <utility>

using VQ::Animation::KeyIndex;
using Key = KeyIndex::Key;

namespace {

// Enough keys for several changes of the table's size.
std::array<Key, 300> keys;

KeyIndex::Places placesOfAllKeys() {
    KeyIndex::Places places;
    for (unsigned int frame = 0; frame < keys.size(); ++frame) {
        places.emplace_hint(places.end(), frame, &keys[frame]);
    }
    return places;
}

} // namespace

class KeyIndexTest : public QObject {
    Q_OBJECT

private slots:
    void anEmptyIndexHoldsNothing() {
        const KeyIndex index;
        QCOMPARE(index.size(), std::size_t{0});
        QVERIFY(index.find(&keys[0]) == nullptr);
        QVERIFY(index.find(nullptr) == nullptr);
    }

    void aPlaceCanBeCorrected() {
        KeyIndex::Places places = placesOfAllKeys();
        KeyIndex index;
        index.insert(&keys[0], places.end()) = places.find(0);
        QVERIFY(*index.find(&keys[0]) == places.find(0));
        *index.find(&keys[0]) = places.find(1);
        QVERIFY(*std::as_const(index).find(&keys[0]) == places.find(1));
    }

    void theIndexAgreesWithAMapAfterAnyOperations() {
        QVERIFY(rc::check([] {
            KeyIndex::Places places = placesOfAllKeys();
            KeyIndex index;
            std::map<const Key*, KeyIndex::Places::iterator> model;
            std::mt19937 random(*rc::gen::arbitrary<unsigned int>());
            const int operations = *rc::gen::inRange(1, 3000);
            for (int count = 0; count < operations; ++count) {
                const auto place = places.find(static_cast<unsigned int>(random() % keys.size()));
                const Key* const key = static_cast<const Key*>(place->second);
                if (model.emplace(key, place).second) {
                    index.insert(key, place);
                } else if (count % 3 != 0) {
                    model.erase(key);
                    index.erase(key);
                }
                if (random() % 400 == 0) {
                    model.clear();
                    index.clear();
                }
                RC_ASSERT(index.size() == model.size());
            }
            for (const Key& key : keys) {
                const auto expected = model.find(&key);
                const auto* const found = index.find(&key);
                const bool isHeld = expected != model.end();
                RC_ASSERT((found != nullptr) == isHeld);
                RC_ASSERT((!isHeld || *found == expected->second));
            }
        }));
    }

    void reservedRoomDoesNotChangeWhatIsNoted() {
        KeyIndex::Places places = placesOfAllKeys();
        KeyIndex index;
        for (unsigned int frame = 0; frame < 5; ++frame) {
            index.insert(&keys[frame], places.find(frame));
        }
        index.reserve(keys.size());
        for (unsigned int frame = 0; frame < keys.size(); ++frame) {
            QCOMPARE(index.find(&keys[frame]) != nullptr, frame < 5);
        }
    }

    void swappingExchangesEverything() {
        KeyIndex::Places places = placesOfAllKeys();
        KeyIndex filled;
        filled.insert(&keys[7], places.find(7));
        KeyIndex other;
        other.swap(filled);
        QVERIFY(filled.find(&keys[7]) == nullptr);
        QVERIFY(*other.find(&keys[7]) == places.find(7));
    }
};

QTEST_APPLESS_MAIN(KeyIndexTest)
#include "KeyIndexTest.moc"
