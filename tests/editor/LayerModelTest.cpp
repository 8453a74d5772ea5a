#include "layers/LayerModel.h"

#include "layers/LayerEdits.h"
#include "model/AnimationMarkers.h"
#include "tests/editor/support/Scene.h"

#include <QAbstractItemModelTester>
#include <QMimeData>
#include <QSignalSpy>
#include <QSortFilterProxyModel>

#include <functional>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <vector>

using Editor::LayerEdits;
using Editor::LayerModel;
using EditorScene::checkEdit;
using EditorScene::checkNothingHappens;

namespace {

/// A model of a scene, watched by Qt's tester together with a filter on top of it.
class Scene : public EditorScene::Scene {
public:
    explicit Scene(const QStringList& names = {"arm", "leg", "head"})
        : EditorScene::Scene(names)
        , model(document) {
        filtered.setSourceModel(&model);
    }

    QVariant shown(int layer, int column, int role = Qt::DisplayRole) const {
        return model.data(model.index(layer, column), role);
    }
    bool isChecked(int layer, int column) const {
        return shown(layer, column, Qt::CheckStateRole) == Qt::Checked;
    }
    QString shownNames() const {
        QStringList texts;
        for (int i = 0; i < model.rowCount(); ++i) {
            texts.append(shown(i, LayerModel::nameColumn).toString());
        }
        return texts.join(' ');
    }
    bool set(int layer, int column, const QVariant& value, int role = Qt::EditRole) {
        return model.setData(model.index(layer, column), value, role);
    }
    bool check(int layer, int column, bool isOn) {
        return set(layer, column, isOn ? Qt::Checked : Qt::Unchecked, Qt::CheckStateRole);
    }
    std::unique_ptr<QMimeData> drag(std::initializer_list<int> layers) const {
        QModelIndexList indexes;
        for (const int layer : layers) {
            indexes << model.index(layer, LayerModel::nameColumn)
                    << model.index(layer, LayerModel::valueColumn);
        }
        return std::unique_ptr<QMimeData>(model.mimeData(indexes));
    }

    LayerModel model;
    QSortFilterProxyModel filtered;
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::QtTest};
    QAbstractItemModelTester filteredTester{&filtered,
                                            QAbstractItemModelTester::FailureReportingMode::QtTest};
};

} // namespace

class LayerModelTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void eachLayerIsARow() {
        Scene scene;
        QCOMPARE(scene.shownNames(), QString("arm leg head"));
        QCOMPARE(scene.model.columnCount(), int(LayerModel::columns));
        QCOMPARE(scene.model.rowCount(scene.model.index(0, 0)), 0);
        for (int column = 0; column < LayerModel::columns; ++column) {
            QVERIFY(!scene.shown(0, column, Qt::ToolTipRole).toString().isEmpty());
            QVERIFY(!scene.shown(0, column, Qt::AccessibleTextRole).toString().isEmpty());
            QVERIFY(
                !scene.model.headerData(column, Qt::Horizontal, Qt::AccessibleTextRole).toString().isEmpty());
        }
    }

    void anAnimationWithoutLayersHasNoRows() {
        Scene scene(QStringList{});
        QCOMPARE(scene.model.rowCount(), 0);
        QVERIFY(!scene.model.data({}).isValid());
        scene.markers().setSelectedIndex(3);
        QCoreApplication::processEvents();
    }

    void rowsComeAndGoWithTheLayers() {
        Scene scene;
        QPersistentModelIndex leg = scene.model.index(1, LayerModel::nameColumn);
        const QPersistentModelIndex filteredHead = scene.filtered.index(2, LayerModel::nameColumn);
        LayerEdits edits(scene.document);
        edits.add(0);
        QCOMPARE(scene.shownNames(), QString("Layer arm leg head"));
        QCOMPARE(leg.row(), 2);
        edits.move({0, 1}, 4);
        QCOMPARE(scene.shownNames(), QString("leg head Layer arm"));
        QCOMPARE(leg.row(), 0);
        edits.move({3}, 0);
        QCOMPARE(scene.shownNames(), QString("arm leg head Layer"));
        QCOMPARE(leg.row(), 1);
        QCOMPARE(filteredHead.row(), 2);
        QCOMPARE(filteredHead.data().toString(), QString("head"));
        edits.remove({1});
        QVERIFY(!leg.isValid());
        edits.duplicate({0, 1});
        QCOMPARE(scene.shownNames(), QString("arm arm 2 head head 2 Layer"));
        while (scene.history().canUndo()) {
            scene.history().undo();
        }
        QCOMPARE(scene.shownNames(), QString("arm leg head"));
        while (scene.history().canRedo()) {
            scene.history().redo();
        }
        QCOMPARE(scene.shownNames(), QString("arm arm 2 head head 2 Layer"));
        QCOMPARE(scene.filtered.rowCount(), 5);
    }

    void anotherAnimationIsAnotherTable() {
        Scene scene;
        QSignalSpy reset(&scene.model, &QAbstractItemModel::modelReset);
        scene.document.replace(EditorScene::animationOf({"a", "b", "c", "d"}), QString());
        QCOMPARE(reset.count(), 1);
        QCOMPARE(scene.shownNames(), QString("a b c d"));
        QCOMPARE(scene.filtered.rowCount(), 4);
    }

    void theNameIsEditedInPlace() {
        Scene scene;
        QVERIFY(scene.model.flags(scene.model.index(0, LayerModel::nameColumn)) & Qt::ItemIsEditable);
        checkEdit(scene, [&scene] { QVERIFY(scene.set(0, LayerModel::nameColumn, "shoulder")); });
        QCOMPARE(scene.shownNames(), QString("shoulder leg head"));
        checkNothingHappens(scene, [&scene] { QVERIFY(scene.set(0, LayerModel::nameColumn, "shoulder")); });
    }

    void aNameThatAFileCannotHoldIsRefusedWithAReason_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("why");
        QTest::newRow("none") << QString("") << QString("A layer needs a name.");
        QTest::newRow("a control character")
            << QString("a\x01z") << QString("The name holds the character U+0001, which XML cannot hold.");
        QTest::newRow("nothing in the middle")
            << QString("a") + QChar(0)
            << QString("The name holds the character U+0000, which XML cannot hold.");
        QTest::newRow("half a character")
            << QString(QChar(0xd83d)) + "z" << QString("The name holds half of a character.");
        QTest::newRow("the other half")
            << QString(QChar(0xde00)) << QString("The name holds half of a character.");
        QTest::newRow("no character")
            << QString(QChar(0xffff))
            << QString("The name holds the character U+FFFF, which XML cannot hold.");
    }
    void aNameThatAFileCannotHoldIsRefusedWithAReason() {
        QFETCH(QString, name);
        QFETCH(QString, why);
        Scene scene;
        const QSignalSpy spy(&scene.model, &LayerModel::refused);
        checkNothingHappens(scene, [&] { QVERIFY(!scene.set(0, LayerModel::nameColumn, name)); });
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.at(0).at(0).toString(), "Not renamed: " + why);
        QCOMPARE(scene.shownNames(), QString("arm leg head"));
    }

    void aNameThatIsAcceptedComesBackFromAFile_data() {
        QTest::addColumn<QString>("name");
        QTest::newRow("blanks around") << QString("  a  b ");
        QTest::newRow("only a blank") << QString(" ");
        QTest::newRow("lines") << QString("a\nb\tc\r\nd\r");
        QTest::newRow("marks of XML") << QString("<a & \"b\" 'c'>");
        QTest::newRow("a whole character of two halves") << QString::fromUtf8("\xf0\x9f\x98\x80");
        QTest::newRow("other alphabets") << QString::fromUtf8("\xc3\xa9 \xe6\x89\x8b");
    }
    void aNameThatIsAcceptedComesBackFromAFile() {
        QFETCH(QString, name);
        Scene scene;
        QVERIFY(scene.set(0, LayerModel::nameColumn, name));
        std::istringstream file(scene.tree());
        ZT::EditableAnimation read;
        QVERIFY(read.deserialize(VQ::Animation::readAnimationXml(file)));
        QCOMPARE(read[0]->getActuatorName(), name);
    }

    void anEditThatFailsChangesNothingAndIsSaid() {
        Scene scene;
        const QSignalSpy spy(&scene.model, &LayerModel::refused);
        const auto failing =
            QObject::connect(scene.document.layer(0), &ZT::EditableAnimationLayer::muteChanged,
                             [] { throw std::runtime_error("no room"); });
        checkNothingHappens(scene, [&] { QVERIFY(!scene.check(0, LayerModel::muteColumn, true)); });
        QObject::disconnect(failing);
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.at(0).at(0).toString(), QString("Not done: no room."));
        QVERIFY(!scene.isChecked(0, LayerModel::muteColumn));
    }

    // A slot that was connected before the model's keeps it from hearing of the beginning.
    void rowsAreThoseOfTheDocumentAlthoughASlotThrewFirst() {
        EditorScene::Scene scene({"arm", "leg", "head"});
        QObject thrower;
        const auto fail = [] { throw std::runtime_error("no room"); };
        connect(&scene.document, &Editor::Document::layerAboutToBeInserted, &thrower, fail);
        connect(&scene.document, &Editor::Document::layerAboutToBeRemoved, &thrower, fail);
        connect(&scene.document, &Editor::Document::layerAboutToBeMoved, &thrower, fail);
        LayerModel model(scene.document);
        const QAbstractItemModelTester tester(&model);
        LayerEdits edits(scene.document);
        for (const std::function<void()>& edit : std::vector<std::function<void()>>{
                 [&] { edits.add(1); }, [&] { edits.remove({0}); }, [&] { edits.move({0}, 3); }}) {
            (void)EditorScene::problemOf(edit);
            QCOMPARE(model.rowCount(), scene.document.layerCount());
            for (int i = 0; i < model.rowCount(); ++i) {
                QCOMPARE(model.index(i, LayerModel::nameColumn).data().toString(),
                         scene.document.layer(i)->getActuatorName());
            }
        }
    }

    void checkBoxesShowMuteAndLock_data() {
        QTest::addColumn<int>("column");
        QTest::addColumn<bool>("usually");
        QTest::newRow("visible") << int(LayerModel::visibleColumn) << true;
        QTest::newRow("mute") << int(LayerModel::muteColumn) << false;
        QTest::newRow("locked") << int(LayerModel::lockedColumn) << false;
    }
    void checkBoxesShowMuteAndLock() {
        QFETCH(int, column);
        QFETCH(bool, usually);
        Scene scene;
        QVERIFY(scene.model.flags(scene.model.index(1, column)) & Qt::ItemIsUserCheckable);
        QCOMPARE(scene.isChecked(1, column), usually);
        const QString before = scene.shown(1, column, Qt::AccessibleTextRole).toString();
        checkEdit(scene, [&] { QVERIFY(scene.check(1, column, !usually)); });
        QCOMPARE(scene.isChecked(1, column), !usually);
        QVERIFY(scene.shown(1, column, Qt::AccessibleTextRole).toString() != before);
        QCOMPARE(scene.isChecked(0, column), usually);
        checkNothingHappens(scene, [&] { QVERIFY(scene.check(1, column, !usually)); });
        scene.history().undo();
        QCOMPARE(scene.isChecked(1, column), usually);
    }

    void lockingAndHidingDeselectsTheKeys() {
        Scene scene;
        const EditorScene::Keys arm = scene.add(0, {1, 2});
        scene.document.selection().set(arm + scene.add(1, {3}));
        scene.check(0, LayerModel::lockedColumn, true);
        scene.check(1, LayerModel::visibleColumn, false);
        QVERIFY(scene.document.selection().isEmpty());
    }

    void theColourIsEditedButNotInPlace() {
        Scene scene;
        QVERIFY(!(scene.model.flags(scene.model.index(0, LayerModel::colourColumn)) & Qt::ItemIsEditable));
        checkEdit(scene, [&scene] { QVERIFY(scene.set(0, LayerModel::colourColumn, QColor(1, 2, 3))); });
        QCOMPARE(scene.shown(0, LayerModel::colourColumn, Qt::DecorationRole).value<QColor>(),
                 QColor(1, 2, 3));
        checkNothingHappens(scene, [&scene] {
            QVERIFY(scene.set(0, LayerModel::colourColumn, QColor(1, 2, 3).toHsl()));
            QVERIFY(!scene.set(0, LayerModel::colourColumn, QColor()));
            QVERIFY(!scene.set(0, LayerModel::valueColumn, 3.0));
            QVERIFY(!scene.set(0, LayerModel::nameColumn, Qt::Checked, Qt::CheckStateRole));
            QVERIFY(!scene.model.setData({}, "x"));
        });
    }

    void valuesAreThoseOfTheCurrentFrame() {
        Scene scene;
        scene.add(0, {0, 10});
        scene.add(1, 0, EditorScene::record(std::numeric_limits<float>::infinity()));
        scene.markers().setSelectedIndex(4);
        QCOMPARE(scene.shown(0, LayerModel::valueColumn).toString(), QLocale().toString(4.0, 'g', 6));
        QCOMPARE(scene.shown(1, LayerModel::valueColumn).toString(), QString("inf"));
        QCOMPARE(scene.shown(2, LayerModel::valueColumn).toString(), QLocale().toString(0.0, 'g', 6));
        scene.markers().setSelectedIndex(std::numeric_limits<unsigned int>::max());
        QCOMPARE(scene.shown(0, LayerModel::valueColumn).toString(), QLocale().toString(10.0, 'g', 6));
    }

    void changesOfOneTurnAreAnnouncedOnce() {
        Scene scene;
        scene.add(0, {0, 10});
        QCoreApplication::processEvents();
        QSignalSpy spy(&scene.model, &QAbstractItemModel::dataChanged);
        for (unsigned int i = 1; i < 50; ++i) {
            scene.markers().setSelectedIndex(i);
            scene.key(0, 10)->setValue(static_cast<float>(i));
        }
        QCOMPARE(spy.count(), 0);
        QCoreApplication::processEvents();
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.at(0).at(0).toModelIndex().row(), 0);
        QCOMPARE(spy.at(0).at(1).toModelIndex(), scene.model.index(2, LayerModel::valueColumn));
        QCoreApplication::processEvents();
        QCOMPARE(spy.count(), 1);
    }

    void theMarkersOfAnotherAnimationAreFollowed() {
        Scene scene;
        scene.document.replace(EditorScene::animationOf({"a"}), QString());
        QCoreApplication::processEvents();
        QSignalSpy spy(&scene.model, &QAbstractItemModel::dataChanged);
        scene.markers().setSelectedIndex(7);
        QCoreApplication::processEvents();
        QCOMPARE(spy.count(), 1);
    }

    void layersThatGoBeforeTheirChangesAreAnnouncedAreNot() {
        Scene scene({"arm"});
        QCoreApplication::processEvents();
        QSignalSpy spy(&scene.model, &QAbstractItemModel::dataChanged);
        LayerEdits(scene.document).remove({0});
        QCoreApplication::processEvents();
        QCOMPARE(spy.count(), 0);
    }

    void draggedRowsMoveInFrontOfWhereTheyAreDropped() {
        Scene scene({"a", "b", "c", "d", "e"});
        checkEdit(scene, [&scene] {
            QVERIFY(scene.model.dropMimeData(scene.drag({3, 0}).get(), Qt::MoveAction, 2, 0, {}));
        });
        QCOMPARE(scene.shownNames(), QString("b a d c e"));
        checkEdit(scene, [&scene] { // On the ground below the rows.
            QVERIFY(scene.model.dropMimeData(scene.drag({0}).get(), Qt::MoveAction, -1, -1, {}));
        });
        QCOMPARE(scene.shownNames(), QString("a d c e b"));
        QVERIFY(scene.model.flags({}) & Qt::ItemIsDropEnabled);
        QVERIFY(!(scene.model.flags(scene.model.index(0, 0)) & Qt::ItemIsDropEnabled));
        QVERIFY(scene.model.flags(scene.model.index(0, 0)) & Qt::ItemIsDragEnabled);
    }

    void whatDoesNotComeFromTheModelIsNotTaken() {
        Scene scene;
        Scene other;
        checkNothingHappens(scene, [&] {
            QMimeData empty;
            QVERIFY(!scene.model.dropMimeData(&empty, Qt::MoveAction, 0, 0, {}));
            QMimeData damaged;
            damaged.setData(scene.model.mimeTypes().at(0), "no rows");
            QVERIFY(!scene.model.dropMimeData(&damaged, Qt::MoveAction, 0, 0, {}));
            QVERIFY(!scene.model.dropMimeData(other.drag({2}).get(), Qt::MoveAction, 0, 0, {}));
            QVERIFY(!scene.model.dropMimeData(scene.drag({2}).get(), Qt::CopyAction, 0, 0, {}));
            QVERIFY(!scene.model.dropMimeData(scene.drag({2}).get(), Qt::MoveAction, 0, 0,
                                              scene.model.index(0, 0)));
            QVERIFY(scene.model.mimeData({}) == nullptr);
        });
    }

    void rowsThatHaveGoneSinceTheDragBeganAreNotTaken() {
        Scene scene;
        const auto data = scene.drag({2});
        LayerEdits(scene.document).remove({0});
        checkNothingHappens(
            scene, [&] { QVERIFY(!scene.model.dropMimeData(data.get(), Qt::MoveAction, 0, 0, {})); });
    }
};

QTEST_MAIN(LayerModelTest)
#include "LayerModelTest.moc"
