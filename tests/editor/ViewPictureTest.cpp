#include "curves/ViewPicture.h"

#include <QImage>
#include <QPainter>
#include <QWidget>
#include <QtTest>

#include <stdexcept>

namespace {

/// A widget's picture, painted onto an image as it would be onto the screen.
class Shown {
public:
    Shown() { _view.resize(_image.size()); }

    /// Returns how often the picture was painted anew for it.
    int show(const QColor& colour) {
        int count = 0;
        QPainter painter(&_image);
        picture.paint(painter, _view, [&](QPainter& anew) {
            ++count;
            anew.fillRect(_image.rect(), colour);
        });
        return count;
    }

    /// The painting fails half way.
    void fail() {
        QPainter painter(&_image);
        picture.paint(painter, _view, [&](QPainter& anew) {
            anew.fillRect(QRect(0, 0, 4, 2), Qt::red);
            throw std::runtime_error("no room");
        });
    }

    void grow() {
        _image = QImage(8, 8, QImage::Format_RGB32);
        _view.resize(_image.size());
    }

    QColor corner() const { return _image.pixelColor(_image.width() - 1, _image.height() - 1); }
    QColor firstPixel() const { return _image.pixelColor(0, 0); }

    Editor::ViewPicture picture;

private:
    QWidget _view;
    QImage _image{4, 4, QImage::Format_RGB32};
};

} // namespace

class ViewPictureTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aPictureIsKeptUntilItIsSpoilt() {
        Shown shown;
        QCOMPARE(shown.show(Qt::green), 1);
        QCOMPARE(shown.show(Qt::blue), 0);
        QCOMPARE(shown.corner(), QColor(Qt::green));
        shown.picture.spoil();
        QCOMPARE(shown.show(Qt::blue), 1);
        QCOMPARE(shown.corner(), QColor(Qt::blue));
    }

    void anotherSizeTakesAnotherPicture() {
        Shown shown;
        QCOMPARE(shown.show(Qt::green), 1);
        shown.grow();
        QCOMPARE(shown.show(Qt::green), 1);
        QCOMPARE(shown.show(Qt::green), 0);
        QCOMPARE(shown.corner(), QColor(Qt::green));
    }

    void aPictureThatCouldNotBeFinishedIsPaintedAnew() {
        Shown shown;
        QVERIFY_EXCEPTION_THROWN(shown.fail(), std::runtime_error);
        QCOMPARE(shown.show(Qt::blue), 1);
        QCOMPARE(shown.firstPixel(), QColor(Qt::blue));
    }

    void oneThatWasThereBeforeDoesNotStandForIt() {
        Shown shown;
        QCOMPARE(shown.show(Qt::blue), 1);
        shown.picture.spoil();
        QVERIFY_EXCEPTION_THROWN(shown.fail(), std::runtime_error);
        QCOMPARE(shown.show(Qt::green), 1);
        QCOMPARE(shown.firstPixel(), QColor(Qt::green));
    }
};

QTEST_MAIN(ViewPictureTest)
#include "ViewPictureTest.moc"
