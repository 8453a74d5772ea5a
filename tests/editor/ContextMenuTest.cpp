#include "WindowScene.h"
#include "curves/CurveView.h"
#include "layers/LayerModel.h"
#include "layers/LayerPanel.h"
#include "model/AnimationMarkers.h"
#include "timeline/TimelineView.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QMenu>
#include <QTableView>
#include <QTimer>
#include <QWindow>

#include <functional>

using TwoLayers::key;

namespace {

/// A window that has the focus, and what its context menus offer.
class Scene : public WindowScene {
public:
    Scene() { (void)QTest::qWaitForWindowActive(&window); }

    /// A click of the right button as it comes from the screen.
    void clickRight(QWidget& widget, const QPoint& point) {
        QTest::mouseClick(window.windowHandle(), Qt::RightButton, {}, widget.mapTo(&window, point));
    }

    /// The texts in the menu that @p open opens, which is closed again; empty where none comes up. With @p
    /// chosen, that item is clicked.
    static QStringList menuOpenedBy(const std::function<void()>& open, const QString& chosen = {}) {
        QStringList texts;
        QTimer later;
        later.setSingleShot(true);
        QObject::connect(&later, &QTimer::timeout, [&texts, &chosen] {
            auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            if (menu == nullptr) {
                return;
            }
            for (QAction* const action : menu->actions()) {
                const QString text = action->text().remove('&');
                texts.append(text);
                if (text == chosen) {
                    QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
                }
            }
            menu->close();
        });
        later.start(0);
        open();
        while (later.isActive()) {
            QCoreApplication::processEvents();
        }
        return texts;
    }
};

const QStringList ofKeys{"Cut",    "Copy",   "Delete", "Insert Key at Current Frame",
                         "Linear", "Smooth", "Fit All"};

bool offers(const QStringList& offered, const QStringList& wanted) {
    return std::all_of(wanted.begin(), wanted.end(),
                       [&](const QString& text) { return offered.contains(text); });
}

} // namespace

class ContextMenuTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // It would take the release of the button, and the drag would go on without one.
    void noMenuComesUpWhileAButtonDragsSomething() {
        Scene scene;
        Editor::CurveView& curves = scene.window.curves();
        const QPoint point = curves.placement().toPoint(20.0, 2.0).toPoint();
        QTest::mousePress(&curves, Qt::LeftButton, {}, point);
        for (QWidget* const view :
             {static_cast<QWidget*>(&curves), static_cast<QWidget*>(&scene.window.timeline())}) {
            QVERIFY(Scene::menuOpenedBy([&] {
                        QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(5, 5),
                                                view->mapToGlobal(QPoint(5, 5)));
                        QApplication::sendEvent(view, &event);
                    }).isEmpty());
        }
        QTest::mouseRelease(&curves, Qt::LeftButton, {}, point);
        QVERIFY(!scene.workspace.drag.isActive());
    }

    void aRightClickOnAKeySelectsItAndOffersWhatCanBeDoneToIt() {
        Scene scene;
        Editor::CurveView& curves = scene.window.curves();
        const QPoint point = curves.placement().toPoint(20.0, 2.0).toPoint();
        const QStringList offered = Scene::menuOpenedBy([&] { scene.clickRight(curves, point); }, "Delete");
        QVERIFY2(offers(offered, ofKeys), qPrintable(offered.join(", ")));
        QCOMPARE(scene.history().count(), 1);
        QVERIFY(key(scene.document(), 0, 20) == nullptr || key(scene.document(), 1, 20) == nullptr);
        scene.history().undo();
        QVERIFY(key(scene.document(), 0, 20) != nullptr && key(scene.document(), 1, 20) != nullptr);
    }

    void aRightClickInTheTimelineOffersTheSame() {
        Scene scene;
        TwoLayers::select(scene.document(), 20);
        Editor::TimelineView& timeline = scene.window.timeline();
        const QPoint point(timeline.parts().x(30), timeline.parts().row(0).center().y());
        const QStringList offered =
            Scene::menuOpenedBy([&] { scene.clickRight(*timeline.viewport(), point); }, "Linear");
        QVERIFY2(offers(offered, ofKeys), qPrintable(offered.join(", ")));
        QCOMPARE(scene.history().count(), 1);
        QVERIFY(key(scene.document(), 1, 20)->getTangentType(ZT::TangentSide::left) ==
                TwoLayers::Type::linear);
    }

    void aRightClickOnAKeyInTheTimelineSelectsIt() {
        Scene scene;
        TwoLayers::select(scene.document(), 20);
        Editor::TimelineView& timeline = scene.window.timeline();
        const QPoint summary(timeline.parts().x(10), timeline.parts().summary().center().y());
        (void)Scene::menuOpenedBy([&] { scene.clickRight(*timeline.viewport(), summary); }, "Delete");
        QCOMPARE(key(scene.document(), 0, 10), nullptr);
        QCOMPARE(key(scene.document(), 1, 10), nullptr);
        QVERIFY(key(scene.document(), 1, 20) != nullptr);
    }

    void aRightClickOnALayerOffersWhatCanBeDoneToIt() {
        Scene scene;
        auto& table = *scene.window.layers().findChild<QTableView*>();
        const QRect row = table.visualRect(table.model()->index(1, Editor::LayerModel::nameColumn));
        const QStringList offered =
            Scene::menuOpenedBy([&] { scene.clickRight(*table.viewport(), row.center()); }, "Mute");
        QVERIFY2(offers(offered, {"Add layer", "Duplicate layer", "Remove layer", "Move layer up",
                                  "Select keys", "Show curve", "Mute", "Lock"}),
                 qPrintable(offered.join(", ")));
        QVERIFY(scene.document().layer(1)->isMute());
        QVERIFY(!scene.document().layer(0)->isMute());
        QCOMPARE(scene.history().count(), 1);
    }

    void theKeyboardOpensTheMenuOfEachPart_data() {
        QTest::addColumn<bool>("isMenuKey");
        QTest::newRow("menu key") << true;
        QTest::newRow("shift and F10") << false;
    }
    void theKeyboardOpensTheMenuOfEachPart() {
        QFETCH(bool, isMenuKey);
        Scene scene;
        TwoLayers::select(scene.document(), 20);
        scene.window.setCurrentLayer(0);
        auto& table = *scene.window.layers().findChild<QTableView*>();
        const auto menuOf = [&](QWidget& part) {
            scene.window.activateWindow(); // The menu before may have taken the focus of the screen.
            (void)QTest::qWaitForWindowActive(&scene.window);
            part.setFocus();
            return Scene::menuOpenedBy([&] {
                if (isMenuKey) { // As a platform turns it into an event.
                    const QPoint centre = part.rect().center();
                    QContextMenuEvent event(QContextMenuEvent::Keyboard, centre, part.mapToGlobal(centre));
                    QApplication::sendEvent(&part, &event);
                } else {
                    QTest::keyClick(&part, Qt::Key_F10, Qt::ShiftModifier);
                }
            });
        };
        for (QWidget* const view : {static_cast<QWidget*>(&scene.window.curves()),
                                    static_cast<QWidget*>(&scene.window.timeline())}) {
            const QStringList offered = menuOf(*view);
            QVERIFY2(offers(offered, ofKeys), qPrintable(view->accessibleName() + ": " + offered.join(", ")));
        }
        QVERIFY(menuOf(table).contains("Remove layer"));
        QCOMPARE(scene.history().count(), 0);
    }

    void aMixedStateIsSeenInTheContextMenu() {
        Scene scene;
        key(scene.document(), 0, 20)->setSmooth(true);
        TwoLayers::select(scene.document(), 20);
        QTRY_VERIFY(scene.action("smooth").text().contains("mixed"));
        scene.window.timeline().setFocus();
        const QStringList offered = Scene::menuOpenedBy(
            [&] { QTest::keyClick(&scene.window.timeline(), Qt::Key_F10, Qt::ShiftModifier); },
            "Smooth (mixed)");
        QVERIFY2(offered.contains("Smooth (mixed)"), qPrintable(offered.join(", ")));
        QVERIFY(key(scene.document(), 1, 20)->isSmooth());
    }
};

QTEST_MAIN(ContextMenuTest)
#include "ContextMenuTest.moc"
