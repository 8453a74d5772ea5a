#include "window/Application.h"

#include "tests/editor/support/MemoryShortage.h"

#include <QEvent>
#include <QTimer>
#include <QtTest>

#include <functional>
#include <new>
#include <optional>
#include <stdexcept>

namespace {

/// Throws what it is told at each event of the user's.
class Thrower : public QObject {
public:
    std::function<void()> fail;

    bool event(QEvent* event) override {
        if (event->type() == QEvent::User) {
            fail();
            return true;
        }
        return QObject::event(event);
    }
};

} // namespace

class ApplicationTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anExceptionFromAnEventIsSaidAndTheNextEventComes() {
        const QSignalSpy failed(qobject_cast<Editor::Application*>(QCoreApplication::instance()),
                                &Editor::Application::eventFailed);
        Thrower thrower;
        thrower.fail = [] { throw std::runtime_error("no room"); };
        QCoreApplication::postEvent(&thrower, new QEvent(QEvent::User));
        bool hasCome = false;
        QTimer::singleShot(0, [&hasCome] { hasCome = true; });
        QTRY_VERIFY(hasCome);
        QCOMPARE(failed.size(), 1);
        QCOMPARE(failed.first().first().toString(), QString("no room"));
    }

    void wantOfMemoryIsSaidInWords() {
        const QSignalSpy failed(qobject_cast<Editor::Application*>(QCoreApplication::instance()),
                                &Editor::Application::eventFailed);
        Thrower thrower;
        thrower.fail = [] { throw std::bad_alloc(); };
        QEvent event(QEvent::User);
        QVERIFY(!QCoreApplication::sendEvent(&thrower, &event));
        QCOMPARE(failed.size(), 1);
        QCOMPARE(failed.first().first().toString(), QString("there is not enough memory"));
    }

    void whoIsToldMayThrowAsWell() {
        auto* const application = qobject_cast<Editor::Application*>(QCoreApplication::instance());
        const auto listening = connect(application, &Editor::Application::eventFailed,
                                       [] { throw std::runtime_error("nor here"); });
        Thrower thrower;
        thrower.fail = [] { throw std::runtime_error("no room"); };
        QEvent event(QEvent::User);
        QVERIFY(!QCoreApplication::sendEvent(&thrower, &event));
        disconnect(listening);
    }

    void anEventThatFailsForWantOfMemoryIsCaughtWithoutAny() {
        std::optional<MemoryShortage> shortage;
        Thrower thrower;
        thrower.fail = [&shortage] {
            shortage.emplace();
            throw std::bad_alloc();
        };
        QEvent event(QEvent::User);
        QVERIFY(!QCoreApplication::sendEvent(&thrower, &event));
        thrower.fail = [] {};
        bool isHandled = false;
        bool hasThrown = false;
        try {
            isHandled = QCoreApplication::sendEvent(&thrower, &event);
        } catch (const std::bad_alloc&) {
            hasThrown = true;
        }
        shortage.reset();
        QVERIFY(!hasThrown);
        QVERIFY(isHandled);
    }

    void anEventThatIsHandledAnswersAsEver() {
        Thrower thrower;
        thrower.fail = [] {};
        QEvent event(QEvent::User);
        QVERIFY(QCoreApplication::sendEvent(&thrower, &event));
    }
};

int main(int argc, char** argv) {
    Editor::Application application(argc, argv);
    ApplicationTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "ApplicationTest.moc"
