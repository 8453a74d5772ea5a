#include "WindowScene.h"
#include "document/DragKind.h"

#include <QApplication>
#include <QClipboard>
#include <QMimeData>

namespace {

/// Counts how often somebody looks at it.
class WatchedData : public QMimeData {
public:
    explicit WatchedData(int& looks)
        : _looks(looks) {}

    bool hasFormat(const QString& mimeType) const override {
        ++_looks;
        return QMimeData::hasFormat(mimeType);
    }

private:
    int& _looks;
};

} // namespace

class EditActionsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theClipboardIsLookedAtOnlyWhenItChanges();
    void undoDuringADragUndoesTheDrag();
    void undoDuringTheVeryFirstDragUndoesIt();
    void keysAreCutCopiedAndDeletedOnlyWhereSomeAreSelected();
};

void EditActionsTest::theClipboardIsLookedAtOnlyWhenItChanges() {
    WindowScene scene;
    int looks = 0;
    auto* const data = new WatchedData(looks);
    data->setText("<animation>");
    QApplication::clipboard()->setMimeData(data); // It owns it.
    QVERIFY(scene.action("paste").isEnabled());
    QVERIFY(looks > 0);
    looks = 0;
    for (const unsigned int frame : {10U, 20U, 40U}) {
        TwoLayers::select(scene.document(), frame);
        QApplication::processEvents();
    }
    QCOMPARE(looks, 0);
    QApplication::clipboard()->setText("no keys");
    QVERIFY(!scene.action("paste").isEnabled());
}

void EditActionsTest::undoDuringADragUndoesTheDrag() {
    WindowScene scene;
    TwoLayers::select(scene.document(), 20);
    Editor::Drag& drag = scene.workspace.drag;
    const auto moveBy = [&](double frames) {
        drag.begin(Editor::dragKeys(scene.document().selection().keys()));
        drag.moveTo({frames, 0});
    };
    moveBy(1);
    drag.finish();
    const QString before = scene.state();
    moveBy(3);
    const QString dragged = scene.state();
    scene.action("undo").trigger();
    QVERIFY(!drag.isActive());
    QCOMPARE(scene.state(), before);
    scene.action("redo").trigger();
    QCOMPARE(scene.state(), dragged);
}

void EditActionsTest::undoDuringTheVeryFirstDragUndoesIt() {
    WindowScene scene;
    TwoLayers::select(scene.document(), 20);
    Editor::Drag& drag = scene.workspace.drag;
    const QString before = scene.state();
    QVERIFY(!scene.action("undo").isEnabled());
    drag.begin(Editor::dragKeys(scene.document().selection().keys()));
    drag.moveTo({3.0, 0.0});
    QVERIFY(scene.action("undo").isEnabled());
    scene.action("undo").trigger();
    QVERIFY(!drag.isActive());
    QCOMPARE(scene.state(), before);
    QVERIFY(!scene.action("undo").isEnabled());
}

void EditActionsTest::keysAreCutCopiedAndDeletedOnlyWhereSomeAreSelected() {
    WindowScene scene;
    for (const bool hasKeys : {false, true, false}) {
        if (hasKeys) {
            TwoLayers::select(scene.document(), 20);
        } else {
            scene.document().selection().clear();
        }
        for (const char* const name : {"cut", "copy", "duplicate", "delete"}) {
            QCOMPARE(scene.action(name).isEnabled(), hasKeys);
        }
    }
}

QTEST_MAIN(EditActionsTest)
#include "EditActionsTest.moc"
