#include "window/WidgetFileDialogs.h"

#include <QApplication>
#include <QLabel>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QTimer>
#include <QtTest>

#include <functional>

using Editor::WidgetFileDialogs;
using Recovery = WidgetFileDialogs::Recovery;

namespace {

/// What a user reads in a box: its text and, as far as Qt reads it so, rich text below.
QString textOf(const QMessageBox& box) {
    const auto* const label = box.findChild<QLabel*>("qt_msgbox_informativelabel");
    const QString below = label == nullptr ? QString() : label->text();
    return box.text() + '\n' +
           (Qt::mightBeRichText(below) ? QTextDocumentFragment::fromHtml(below).toPlainText() : below);
}

/// Does that to the box which opens next.
void whenAsked(const std::function<void(QMessageBox&)>& action) {
    QTimer::singleShot(0, qApp, [action] {
        auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (box == nullptr) {
            qFatal("nothing is asked");
        }
        action(*box);
    });
}

void press(const QMessageBox& box, const QString& text) {
    for (QAbstractButton* const button : box.buttons()) {
        if (button->text() == text) {
            button->click();
            return;
        }
    }
    qFatal("there is no button %s", qPrintable(text));
}

} // namespace

class WidgetFileDialogsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void recoveryHasThreeAnswers_data();
    void recoveryHasThreeAnswers();
    void escapeDecidesAboutRecoveryLater();
    void recoveryIsDecidedByTheTimes();
    void aProgramThatMayRunIsMentioned_data();
    void aProgramThatMayRunIsMentioned();
    void namesAndReasonsAreReadAsTheyAre();
};

void WidgetFileDialogsTest::recoveryHasThreeAnswers_data() {
    QTest::addColumn<QString>("button");
    QTest::addColumn<int>("answer");
    QTest::newRow("recover") << "&Recover" << static_cast<int>(Recovery::recover);
    QTest::newRow("delete") << "&Delete Them" << static_cast<int>(Recovery::remove);
    QTest::newRow("later") << "Decide &Later" << static_cast<int>(Recovery::later);
}

void WidgetFileDialogsTest::recoveryHasThreeAnswers() {
    QFETCH(QString, button);
    QFETCH(int, answer);
    whenAsked([&](const QMessageBox& box) { press(box, button); });
    QCOMPARE(static_cast<int>(WidgetFileDialogs().askRecovery({})), answer);
}

void WidgetFileDialogsTest::escapeDecidesAboutRecoveryLater() {
    whenAsked([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); });
    QVERIFY(WidgetFileDialogs().askRecovery({}) == Recovery::later);
    whenAsked([](QMessageBox& box) { box.close(); });
    QVERIFY(WidgetFileDialogs().askRecovery({}) == Recovery::later);
}

void WidgetFileDialogsTest::recoveryIsDecidedByTheTimes() {
    const QDateTime written(QDate(2020, 2, 3), QTime(4, 5, 6));
    const QDateTime saved(QDate(2019, 8, 9), QTime(10, 11, 12));
    const auto show = [](const QDateTime& time) { return QLocale().toString(time, QLocale::LongFormat); };
    QString text;
    const auto read = [&](QMessageBox& box) {
        text = textOf(box);
        box.reject();
    };
    whenAsked(read);
    WidgetFileDialogs().askRecovery({"a.xml", written, saved, false, {}});
    QVERIFY2(text.contains("a.xml") && text.contains(show(written)) && text.contains(show(saved)),
             qPrintable(text));
    QVERIFY2(!text.contains("running"), qPrintable(text));
    whenAsked(read);
    WidgetFileDialogs().askRecovery({"an untitled animation", written, {}, false, {}});
    QVERIFY2(text.contains(show(written)) && !text.contains("saved on"), qPrintable(text));
}

void WidgetFileDialogsTest::aProgramThatMayRunIsMentioned_data() {
    QTest::addColumn<QString>("host");
    QTest::newRow("somewhere") << QString();
    QTest::newRow("on a machine") << "elsewhere";
}

void WidgetFileDialogsTest::aProgramThatMayRunIsMentioned() {
    QFETCH(QString, host);
    QString text;
    whenAsked([&](QMessageBox& box) {
        text = textOf(box);
        box.reject();
    });
    WidgetFileDialogs().askRecovery({"a.xml", QDateTime::currentDateTime(), {}, true, host});
    QVERIFY2(text.contains("may still be running") && text.contains(host), qPrintable(text));
}

void WidgetFileDialogsTest::namesAndReasonsAreReadAsTheyAre() {
    for (const QString& reason : {QString("a&b.xml: line 3"), QString("<b>.xml: \"<key>\" & more")}) {
        QString text;
        whenAsked([&](QMessageBox& box) {
            text = textOf(box);
            box.accept();
        });
        WidgetFileDialogs().showProblem("<i>title</i>", reason);
        QCOMPARE(text, "<i>title</i>\n" + reason);
    }
}

QTEST_MAIN(WidgetFileDialogsTest)
#include "WidgetFileDialogsTest.moc"
