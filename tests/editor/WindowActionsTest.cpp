#include "WindowScene.h"
#include "curves/CurveView.h"
#include "timeline/TimelineView.h"
#include "window/StatusLine.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMimeData>
#include <QToolBar>

using TwoLayers::key;
using TwoLayers::Type;
using ZT::TangentSide;

namespace {

/// Reads the clipboard aside and clears it, so that tests do not feed each other.
void emptyClipboard() {
    QApplication::clipboard()->clear();
}

QStringList menuTitles(const Editor::MainWindow& window) {
    QStringList titles;
    for (const QAction* const menu : window.menuBar()->actions()) {
        titles.append(menu->text().remove('&'));
    }
    return titles;
}

/// All commands in the menu and its submenus.
QList<QAction*> commandsIn(const QMenu& menu) {
    QList<QAction*> commands;
    for (QAction* const action : menu.actions()) {
        if (action->menu() != nullptr) {
            commands += commandsIn(*action->menu());
        } else if (!action->isSeparator()) {
            commands.append(action);
        }
    }
    return commands;
}

QList<QAction*> allCommands(const Editor::MainWindow& window) {
    QList<QAction*> commands;
    for (const QAction* const menu : window.menuBar()->actions()) {
        commands += commandsIn(*menu->menu());
    }
    return commands;
}

} // namespace

class WindowActionsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void anEditOfKeysOnTwoLayersIsOneEntryAndUndoneExactly_data();
    void anEditOfKeysOnTwoLayersIsOneEntryAndUndoneExactly();
    void aTypeIsGivenToBothSidesOrToOne_data();
    void aTypeIsGivenToBothSidesOrToOne();
    void aTypeThatAllKeysHaveLeavesNoEntryAndItsMark();
    void pastedKeysStandAtTheCurrentFrame();
    void aRefusedPasteIsSaidAndChangesNothing();
    void keysThatArePushedAsideAreSaidToBe();
    void aKeyIsInsertedIntoTheCurrentLayerAtTheCurrentFrame();
    void noKeyIsInsertedWhereOneStandsOrTheLayerIsLocked();
    void theSelectionCanBeMadeWholeAndInverted();
    void actionsOnKeysNeedKeys();
    void undoAndRedoSayWhatTheyDo();
    void everyCommandHasANameAndNoTwoShareAKey();
    void noTwoThingsOfTheWindowShareAnUnderlinedLetter();
    void keysOfTheKeyboardDoWhatTheMenusSay_data();
    void keysOfTheKeyboardDoWhatTheMenusSay();
    void lettersTypeWhereTextIsTyped();
    void menusAreThere();
    void layersAreEditedFromTheirMenu();
};

void WindowActionsTest::init() {
    emptyClipboard();
}

void WindowActionsTest::anEditOfKeysOnTwoLayersIsOneEntryAndUndoneExactly_data() {
    QTest::addColumn<QByteArray>("name");
    for (const char* const name :
         {"cut", "paste", "duplicate", "delete", "typeConstant", "typeLinear", "typeBezier", "typeBezierAuto",
          "leftTypeConstant", "leftTypeLinear", "leftTypeBezier", "leftTypeBezierAuto", "rightTypeConstant",
          "rightTypeLinear", "rightTypeBezier", "rightTypeBezierAuto", "smooth", "symmetrical",
          "insertKey"}) {
        QTest::newRow(name) << QByteArray(name);
    }
}

void WindowActionsTest::anEditOfKeysOnTwoLayersIsOneEntryAndUndoneExactly() {
    QFETCH(QByteArray, name);
    WindowScene scene;
    TwoLayers::select(scene.document(), 10);
    if (name == "paste") {
        scene.action("copy").trigger();
    }
    scene.document().markers().setSelectedIndex(33);
    const QString before = scene.state();
    QVERIFY(scene.action(name.constData()).isEnabled());
    scene.action(name.constData()).trigger();
    const QString after = scene.state();
    QVERIFY(after != before);
    QCOMPARE(scene.history().count(), 1);
    QVERIFY(!scene.history().undoText().isEmpty());
    scene.action("undo").trigger();
    QCOMPARE(scene.state(), before);
    scene.action("redo").trigger();
    QCOMPARE(scene.state(), after);
}

void WindowActionsTest::aTypeIsGivenToBothSidesOrToOne_data() {
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<int>("left");
    QTest::addColumn<int>("right");
    const int bezier = static_cast<int>(Type::bezier);
    const std::vector<std::pair<QByteArray, Type>> types{{"Constant", Type::constant},
                                                         {"Linear", Type::linear},
                                                         {"Bezier", Type::bezier},
                                                         {"BezierAuto", Type::bezierAuto}};
    for (const auto& [name, type] : types) {
        QTest::newRow("both " + name) << "type" + name << static_cast<int>(type) << static_cast<int>(type);
        QTest::newRow("left " + name) << "leftType" + name << static_cast<int>(type) << bezier;
        QTest::newRow("right " + name) << "rightType" + name << bezier << static_cast<int>(type);
    }
}

void WindowActionsTest::aTypeIsGivenToBothSidesOrToOne() {
    QFETCH(QByteArray, name);
    QFETCH(int, left);
    QFETCH(int, right);
    WindowScene scene;
    TwoLayers::select(scene.document(), 20);
    scene.action(name.constData()).trigger();
    for (const int layer : {0, 1}) {
        QCOMPARE(static_cast<int>(key(scene.document(), layer, 20)->getTangentType(TangentSide::left)), left);
        QCOMPARE(static_cast<int>(key(scene.document(), layer, 20)->getTangentType(TangentSide::right)),
                 right);
        QCOMPARE(static_cast<int>(key(scene.document(), layer, 40)->getTangentType(TangentSide::left)),
                 static_cast<int>(Type::bezier));
    }
}

void WindowActionsTest::aTypeThatAllKeysHaveLeavesNoEntryAndItsMark() {
    WindowScene scene;
    TwoLayers::select(scene.document(), 20);
    QTRY_VERIFY(scene.action("typeBezier").isChecked());
    scene.action("typeBezier").trigger();
    QVERIFY(scene.action("typeBezier").isChecked());
    QCOMPARE(scene.history().count(), 0);
}

void WindowActionsTest::keysThatArePushedAsideAreSaidToBe() {
    WindowScene scene;
    scene.document().selection().selectAll();
    scene.action("copy").trigger();
    scene.document().markers().setSelectedIndex(20);
    scene.action("paste").trigger(); // 0, 10, 20 and 40 to 20, 30, 40 and 60.
    QCOMPARE(scene.window.status().text(), QString("4 key(s) stood there and were replaced."));
    scene.document().selection().set({key(scene.document(), 0, 10), key(scene.document(), 0, 20)});
    scene.action("duplicate").trigger(); // To 21 and 31.
    scene.document().selection().set({key(scene.document(), 0, 10), key(scene.document(), 0, 20)});
    scene.action("duplicate").trigger();
    QCOMPARE(scene.window.status().text(), QString("2 key(s) stood there and were replaced."));
    QCOMPARE(scene.history().count(), 3);
}

void WindowActionsTest::pastedKeysStandAtTheCurrentFrame() {
    WindowScene scene;
    TwoLayers::select(scene.document(), 10);
    QVERIFY(!scene.action("paste").isEnabled());
    scene.action("copy").trigger();
    QCOMPARE(scene.history().count(), 0);
    scene.document().markers().setSelectedIndex(55);
    QTRY_VERIFY(scene.action("paste").isEnabled());
    scene.action("paste").trigger();
    QCOMPARE(key(scene.document(), 0, 55)->getValue(), 5.0F);
    QCOMPARE(key(scene.document(), 1, 55)->getValue(), 3.0F);
    QCOMPARE(scene.document().selection().keys().size(), 2);
}

void WindowActionsTest::aRefusedPasteIsSaidAndChangesNothing() {
    WindowScene scene;
    const QString before = scene.state();
    QApplication::clipboard()->setText("<animation><layer");
    QTRY_VERIFY(scene.action("paste").isEnabled());
    scene.action("paste").trigger();
    QVERIFY2(scene.window.status().text().startsWith("Not pasted: "),
             qPrintable(scene.window.status().text()));
    QCOMPARE(scene.state(), before);
    QCOMPARE(scene.history().count(), 0);
}

void WindowActionsTest::aKeyIsInsertedIntoTheCurrentLayerAtTheCurrentFrame() {
    WindowScene scene;
    scene.window.setCurrentLayer(1);
    scene.document().markers().setSelectedIndex(5);
    scene.action("insertKey").trigger();
    QVERIFY(key(scene.document(), 0, 5) == nullptr);
    QVERIFY(key(scene.document(), 1, 5) != nullptr);
    QVERIFY(scene.document().selection().contains(key(scene.document(), 1, 5)));
}

void WindowActionsTest::noKeyIsInsertedWhereOneStandsOrTheLayerIsLocked() {
    WindowScene scene;
    scene.window.setCurrentLayer(1);
    scene.document().markers().setSelectedIndex(10);
    scene.action("insertKey").trigger();
    QCOMPARE(scene.window.status().text(), QString("A key stands at frame 10 of b already."));
    scene.document().markers().setSelectedIndex(11);
    Editor::LayerLook look = scene.document().look(1);
    look.isLocked = true;
    scene.document().setLook(1, look);
    scene.action("insertKey").trigger();
    QCOMPARE(scene.window.status().text(), QString("b is locked or hidden and takes no key."));
    scene.document().replace({std::make_unique<ZT::EditableAnimation>(), {}, {}}, QString());
    scene.action("insertKey").trigger();
    QCOMPARE(scene.window.status().text(), QString("There is no layer that could take a key."));
    QCOMPARE(scene.history().count(), 0);
}

void WindowActionsTest::theSelectionCanBeMadeWholeAndInverted() {
    WindowScene scene;
    scene.action("selectAll").trigger();
    QCOMPARE(scene.document().selection().keys().size(), 8);
    TwoLayers::select(scene.document(), 10);
    scene.action("invertSelection").trigger();
    QCOMPARE(scene.document().selection().keys().size(), 6);
    QVERIFY(!scene.document().selection().contains(key(scene.document(), 0, 10)));
    QCOMPARE(scene.history().count(), 0);
}

void WindowActionsTest::actionsOnKeysNeedKeys() {
    WindowScene scene;
    const std::vector<const char*> names{"cut",    "copy",        "duplicate",    "delete",
                                         "smooth", "symmetrical", "typeConstant", "leftTypeLinear"};
    for (const char* const name : names) {
        QVERIFY2(!scene.action(name).isEnabled(), name);
    }
    TwoLayers::select(scene.document(), 10);
    for (const char* const name : names) {
        QVERIFY2(scene.action(name).isEnabled(), name);
    }
}

void WindowActionsTest::undoAndRedoSayWhatTheyDo() {
    WindowScene scene;
    QVERIFY(!scene.action("undo").isEnabled());
    TwoLayers::select(scene.document(), 10);
    scene.action("delete").trigger();
    QCOMPARE(scene.action("undo").text().remove('&'), "Undo " + scene.history().undoText());
    scene.action("undo").trigger();
    QCOMPARE(scene.action("redo").text().remove('&'), "Redo " + scene.history().redoText());
}

void WindowActionsTest::everyCommandHasANameAndNoTwoShareAKey() {
    WindowScene scene;
    QHash<QString, QString> owners;
    for (const QAction* const command : allCommands(scene.window)) {
        QVERIFY(!command->text().isEmpty());
        for (const QKeySequence& keys : command->shortcuts()) {
            QVERIFY2(
                !owners.contains(keys.toString()),
                qPrintable(keys.toString() + ": " + owners.value(keys.toString()) + ", " + command->text()));
            owners.insert(keys.toString(), command->text());
        }
    }
    for (const QAction* const tool : scene.part<QToolBar>("toolBar").actions()) {
        QVERIFY2(tool->isSeparator() || !tool->icon().isNull(), qPrintable(tool->text()));
    }
}

void WindowActionsTest::noTwoThingsOfTheWindowShareAnUnderlinedLetter() {
    WindowScene scene;
    QStringList texts;
    for (const QAction* const menu : scene.window.menuBar()->actions()) {
        texts.append(menu->text());
    }
    for (const QLabel* const label : scene.window.findChildren<QLabel*>()) {
        texts.append(label->buddy() != nullptr ? label->text() : QString());
    }
    for (const QAbstractButton* const button : scene.window.findChildren<QAbstractButton*>()) {
        texts.append(button->text());
    }
    QHash<QString, QString> owners;
    for (const QString& text : texts) {
        const QString letter = QKeySequence::mnemonic(text).toString();
        QVERIFY2(letter.isEmpty() || !owners.contains(letter),
                 qPrintable(letter + ": " + owners.value(letter) + ", " + text));
        owners.insert(letter, text);
    }
    QVERIFY(owners.size() > 7);
}

void WindowActionsTest::keysOfTheKeyboardDoWhatTheMenusSay_data() {
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    const auto add = [](const char* name, Qt::Key which, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::newRow(name) << QByteArray(name) << static_cast<int>(which) << static_cast<int>(modifiers);
    };
    add("cut", Qt::Key_X, Qt::ControlModifier);
    add("copy", Qt::Key_C, Qt::ControlModifier);
    add("duplicate", Qt::Key_D, Qt::ControlModifier);
    add("delete", Qt::Key_Delete);
    add("selectAll", Qt::Key_A, Qt::ControlModifier);
    add("invertSelection", Qt::Key_I, Qt::ControlModifier);
    add("typeConstant", Qt::Key_1);
    add("typeLinear", Qt::Key_2);
    add("typeBezier", Qt::Key_3);
    add("typeBezierAuto", Qt::Key_4);
    add("smooth", Qt::Key_S);
    add("symmetrical", Qt::Key_Y);
    add("insertKey", Qt::Key_K);
    add("loop", Qt::Key_L);
    add("goToStart", Qt::Key_Home);
    add("goToEnd", Qt::Key_End);
    add("goToNextKey", Qt::Key_Right, Qt::ControlModifier);
    add("goToPreviousKey", Qt::Key_Left, Qt::ControlModifier);
    add("fitAll", Qt::Key_A);
    add("fitSelection", Qt::Key_F);
}

void WindowActionsTest::keysOfTheKeyboardDoWhatTheMenusSay() {
    QFETCH(QByteArray, name);
    QFETCH(int, key);
    QFETCH(int, modifiers);
    WindowScene scene;
    QVERIFY(QTest::qWaitForWindowActive(&scene.window));
    TwoLayers::select(scene.document(), 10);
    scene.window.timeline().setFocus();
    const QSignalSpy triggered(&scene.action(name.constData()), &QAction::triggered);
    QTest::keyClick(&scene.window.timeline(), static_cast<Qt::Key>(key),
                    static_cast<Qt::KeyboardModifiers>(modifiers));
    QCOMPARE(triggered.count(), 1);
}

void WindowActionsTest::lettersTypeWhereTextIsTyped() {
    WindowScene scene;
    QVERIFY(QTest::qWaitForWindowActive(&scene.window));
    TwoLayers::select(scene.document(), 20);
    QTest::qWait(1);
    auto& field = scene.part<QLineEdit>("valueField");
    field.setFocus();
    field.clear();
    QTest::keyClicks(&field, "k31");
    QTest::keyClick(&field, Qt::Key_Backspace);
    QCOMPARE(field.text(), QString("k3"));
    QCOMPARE(scene.history().count(), 0);
}

void WindowActionsTest::menusAreThere() {
    WindowScene scene;
    QCOMPARE(menuTitles(scene.window),
             (QStringList{"File", "Edit", "Key", "Range", "Layer", "View", "Playback"}));
}

void WindowActionsTest::layersAreEditedFromTheirMenu() {
    WindowScene scene;
    const QList<QAction*> commands = commandsIn(*scene.window.menuBar()->actions().at(4)->menu());
    QVERIFY(!commands.isEmpty());
    const QString before = scene.state();
    commands.first()->trigger(); // Adds one.
    QCOMPARE(scene.document().layerCount(), 3);
    QCOMPARE(scene.history().count(), 1);
    scene.history().undo();
    QCOMPARE(scene.state(), before);
}

QTEST_MAIN(WindowActionsTest)
#include "WindowActionsTest.moc"
