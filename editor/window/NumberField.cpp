#include "window/NumberField.h"

#include "document/Frames.h"

#include <QKeyEvent>
#include <QKeySequence>
#include <QLocale>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

namespace Editor {

namespace {

// With the decimal point that files have, or the one of the user's country. The former is tried without
// separators of groups: a decimal comma would be one.
std::optional<double> numberIn(const QString& text) {
    bool isNumber = false;
    double number = text.toDouble(&isNumber);
    if (!isNumber) {
        number = QLocale().toDouble(text, &isNumber);
    }
    return isNumber ? std::optional(number) : std::nullopt;
}

} // namespace

NumberField::NumberField(Kind kind, const QString& name, QWidget* parent)
    : QLineEdit(parent)
    , _kind(kind) {
    setAccessibleName(name);
    setAlignment(Qt::AlignRight);
    connect(this, &QLineEdit::editingFinished, this, &NumberField::_read);
}

void NumberField::showNothing(const QString& placeholder) {
    _show({}, placeholder);
}

void NumberField::showFrame(unsigned int frame) {
    _show(QString::number(frame), {});
}

void NumberField::showValue(float value) {
    std::array<char, 64> buffer{}; // The longest float has 16 characters.
    const char* const end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr;
    _show(QString::fromLatin1(buffer.data(), static_cast<int>(end - buffer.data())), {});
}

QSize NumberField::sizeHint() const {
    const int digits = fontMetrics().horizontalAdvance(QStringLiteral("-0.000000"));
    return {QLineEdit::minimumSizeHint().width() + digits, QLineEdit::sizeHint().height()};
}

QSize NumberField::minimumSizeHint() const {
    return {sizeHint().width() * 2 / 3, sizeHint().height()};
}

void NumberField::takeBack() {
    setText(_shown); // Which also says that nothing is typed.
}

bool NumberField::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && !isModified()) {
        const auto& key = static_cast<const QKeyEvent&>(*event);
        if (key.matches(QKeySequence::Undo) || key.matches(QKeySequence::Redo)) {
            event->ignore();
            return true;
        }
    }
    return QLineEdit::event(event);
}

void NumberField::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && isModified()) {
        takeBack();
        event->accept();
        return;
    }
    QLineEdit::keyPressEvent(event);
}

void NumberField::_show(const QString& text, const QString& placeholder) {
    _shown = text;
    setPlaceholderText(placeholder);
    if (!isModified() && text != this->text()) {
        setText(text);
        setCursorPosition(0); // The leading digits matter where the field is too narrow.
    }
}

void NumberField::_read() {
    if (!isModified()) {
        return;
    }
    const QString typed = text().trimmed();
    takeBack();
    if (typed.isEmpty() || typed == _shown) {
        return;
    }
    const std::optional<double> number = numberIn(typed);
    if (!number) {
        Q_EMIT refused(tr("\"%1\" is not a number.").arg(typed));
        return;
    }
    constexpr double lastFrame = lastPossibleFrame;
    if (_kind == Kind::frames &&
        !(*number >= 0.0 && *number <= lastFrame && *number == std::floor(*number))) {
        Q_EMIT refused(tr("Frames are whole numbers from 0 to %1.").arg(lastFrame, 0, 'f', 0));
        return;
    }
    // What is nearer to the largest float than to the next one that there would be means the largest, as it
    // is shown.
    constexpr auto largest = double{std::numeric_limits<float>::max()};
    constexpr double halfStep = 0x1p103;
    if (_kind == Kind::values && !(std::abs(*number) < largest + halfStep)) {
        Q_EMIT refused(tr("%1 is not a number that a key can have.").arg(typed));
        return;
    }
    Q_EMIT entered(_kind == Kind::values ? std::clamp(*number, -largest, largest) : *number);
}

} // namespace Editor
