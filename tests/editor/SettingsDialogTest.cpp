#include "window/SettingsDialog.h"
#include "window/Settings.h"

#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>

using Editor::Settings;
using Editor::SettingsDialog;
using Editor::Theme;

namespace {

/// How far apart two colours are for the eye, from 1 to 21, as the web's accessibility guidelines define it.
double contrast(const QColor& a, const QColor& b) {
    const auto luminance = [](const QColor& colour) {
        const auto linear = [](double part) {
            return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
               0.0722 * linear(colour.blueF());
    };
    const double first = luminance(a) + 0.05;
    const double second = luminance(b) + 0.05;
    return std::max(first, second) / std::min(first, second);
}

} // namespace

class SettingsDialogTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void settingsAreKept();
    void settingsThatMakeNoSenseAreTheDefaults();
    void onlyADifferentSettingIsAnnounced();
    void okTakesWhatWasChosen();
    void cancelTakesNothing();
    void theDialogSaysWhenTheLimitCounts();
    void bothThemesCanBeRead_data();
    void bothThemesCanBeRead();
    void theSystemsLookComesBack();

private:
    QTemporaryDir _directory;
    QSettings _store{_directory.filePath("settings.ini"), QSettings::IniFormat};
};

void SettingsDialogTest::settingsAreKept() {
    {
        Settings settings(_store);
        settings.setTheme(Theme::dark);
        settings.setUndoLimit(50);
        _store.sync();
    }
    QSettings again(_store.fileName(), QSettings::IniFormat);
    const Settings settings(again);
    QVERIFY(settings.theme() == Theme::dark);
    QCOMPARE(settings.undoLimit(), 50);
}

void SettingsDialogTest::settingsThatMakeNoSenseAreTheDefaults() {
    _store.setValue("theme", "purple");
    _store.setValue("undoLimit", "many");
    const Settings settings(_store);
    QVERIFY(settings.theme() == Theme::system);
    QCOMPARE(settings.undoLimit(), 0);
    _store.setValue("undoLimit", -5);
    QCOMPARE(settings.undoLimit(), 0);
    _store.setValue("undoLimit", 2000000000);
    QCOMPARE(settings.undoLimit(), int{Settings::mostUndoLimit});
}

void SettingsDialogTest::onlyADifferentSettingIsAnnounced() {
    Settings settings(_store);
    settings.setTheme(Theme::light);
    settings.setUndoLimit(7);
    const QSignalSpy changed(&settings, &Settings::changed);
    settings.setTheme(Theme::light);
    settings.setUndoLimit(7);
    QCOMPARE(changed.count(), 0);
    settings.setTheme(Theme::dark);
    settings.setUndoLimit(8);
    QCOMPARE(changed.count(), 2);
}

void SettingsDialogTest::okTakesWhatWasChosen() {
    Settings settings(_store);
    settings.setTheme(Theme::system);
    settings.setUndoLimit(0);
    SettingsDialog dialog(settings, true);
    dialog.show();
    auto* const limit = dialog.findChild<QSpinBox*>("undoLimitBox");
    QCOMPARE(limit->text(), QString("Unlimited"));
    limit->selectAll();
    QTest::keyClicks(limit, "42");
    QTest::keyClick(dialog.findChild<QComboBox*>("themeBox"), Qt::Key_End);
    QVERIFY(settings.theme() == Theme::system);
    QTest::mouseClick(dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok), Qt::LeftButton);
    QVERIFY(!dialog.isVisible());
    QVERIFY(settings.theme() == Theme::dark);
    QCOMPARE(settings.undoLimit(), 42);
}

void SettingsDialogTest::cancelTakesNothing() {
    Settings settings(_store);
    settings.setUndoLimit(3);
    SettingsDialog dialog(settings, true);
    dialog.show();
    dialog.findChild<QSpinBox*>("undoLimitBox")->setValue(99);
    QTest::keyClick(&dialog, Qt::Key_Escape);
    QVERIFY(!dialog.isVisible());
    QCOMPARE(settings.undoLimit(), 3);
}

void SettingsDialogTest::theDialogSaysWhenTheLimitCounts() {
    Settings settings(_store);
    const auto says = [&](bool isHistoryEmpty) {
        const SettingsDialog dialog(settings, isHistoryEmpty);
        const auto labels = dialog.findChildren<QLabel*>();
        return std::any_of(labels.begin(), labels.end(),
                           [](const QLabel* label) { return label->text().contains("next animation"); });
    };
    QVERIFY(says(false));
    QVERIFY(!says(true));
}

void SettingsDialogTest::bothThemesCanBeRead_data() {
    QTest::addColumn<int>("theme");
    QTest::newRow("light") << static_cast<int>(Theme::light);
    QTest::newRow("dark") << static_cast<int>(Theme::dark);
}

void SettingsDialogTest::bothThemesCanBeRead() {
    QFETCH(int, theme);
    const QPalette palette = Editor::paletteOf(static_cast<Theme>(theme));
    using Role = QPalette::ColorRole;
    const std::vector<std::pair<Role, Role>> pairs{{Role::WindowText, Role::Window},
                                                   {Role::Text, Role::Base},
                                                   {Role::Text, Role::AlternateBase},
                                                   {Role::ButtonText, Role::Button},
                                                   {Role::ToolTipText, Role::ToolTipBase},
                                                   {Role::HighlightedText, Role::Highlight},
                                                   {Role::Link, Role::Base}};
    for (const auto& [text, ground] : pairs) {
        const double ratio = contrast(palette.color(text), palette.color(ground));
        QVERIFY2(ratio >= 4.5, qPrintable(QString("roles %1 on %2: %3").arg(text).arg(ground).arg(ratio)));
    }
    const double disabled = contrast(palette.color(QPalette::Disabled, Role::Text),
                                     palette.color(QPalette::Disabled, Role::Base));
    QVERIFY2(disabled >= 3.0, qPrintable(QString::number(disabled)));
}

void SettingsDialogTest::theSystemsLookComesBack() {
    const QString style = QApplication::style()->objectName();
    const QColor window = QApplication::palette().color(QPalette::Window);
    Editor::applyTheme(Theme::dark);
    QCOMPARE(QApplication::palette().color(QPalette::Window),
             Editor::paletteOf(Theme::dark).color(QPalette::Window));
    Editor::applyTheme(Theme::system);
    QCOMPARE(QApplication::style()->objectName(), style);
    QCOMPARE(QApplication::palette().color(QPalette::Window), window);
}

QTEST_MAIN(SettingsDialogTest)
#include "SettingsDialogTest.moc"
