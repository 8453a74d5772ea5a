#pragma once

#include <QLineEdit>

namespace Editor {

/// A field with one exact number, or none where there is no one number to show. What is typed counts when
/// Enter is pressed or the field is left; Escape takes it back. While nothing is typed, the keys for undo and
/// redo are the window's.
class NumberField : public QLineEdit {
    Q_OBJECT

public:
    enum class Kind {
        frames, ///< whole numbers that a frame can have
        values, ///< numbers that a float can have
    };

    /// @p name is what screen readers say.
    NumberField(Kind kind, const QString& name, QWidget* parent = nullptr);

    /// Shows nothing, and @p placeholder in its place. What the user is typing stays in all of these.
    void showNothing(const QString& placeholder = {});
    void showFrame(unsigned int frame);
    /// In the shortest form that reads back to the same bits.
    void showValue(float value);
    /// Short, since panels stand beside what they describe.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    /// Gives up what is being typed.
    void takeBack();

Q_SIGNALS:
    /// A number was typed that the field can hold. Not emitted for the one that it shows already.
    void entered(double number);
    /// Something else was typed; @p why says what is wrong with it.
    void refused(const QString& why);

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void _show(const QString& text, const QString& placeholder);
    void _read();

    Kind _kind;
    QString _shown; ///< the text that stands for the number
};

} // namespace Editor
