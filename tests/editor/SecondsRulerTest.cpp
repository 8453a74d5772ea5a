#include "CurveViewScene.h"

#include <QBuffer>
#include <QFontMetrics>
#include <QPainter>
#include <QSvgGenerator>
#include <QXmlStreamReader>

#include <algorithm>
#include <cmath>

using Scene = CurveViewScene;

namespace {

struct Text {
    QString text;
    QPointF begin; ///< of its base line, in the view
};

// Of a matrix as SVG writes it.
QTransform transformIn(const QString& attribute) {
    const QStringList n = QString(attribute).remove("matrix(").remove(')').split(',');
    return n.size() == 6 ? QTransform(n[0].toDouble(), n[1].toDouble(), n[2].toDouble(), n[3].toDouble(),
                                      n[4].toDouble(), n[5].toDouble())
                         : QTransform();
}

/// What is written in a picture of the view.
std::vector<Text> textsOf(Editor::CurveView& view) {
    QBuffer buffer;
    buffer.open(QIODevice::ReadWrite);
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setSize(view.size());
    generator.setViewBox(view.rect());
    generator.setResolution(view.logicalDpiX());
    QPainter painter(&generator);
    view.render(&painter);
    painter.end();

    std::vector<Text> texts;
    std::vector<QTransform> transforms(1);
    QXmlStreamReader xml(buffer.data());
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement()) {
            const QXmlStreamAttributes attributes = xml.attributes();
            if (xml.name() == QLatin1String("text")) {
                const QPointF begin(attributes.value("x").toDouble(), attributes.value("y").toDouble());
                texts.push_back({xml.readElementText().trimmed(), transforms.back().map(begin)});
            } else {
                transforms.push_back(transformIn(attributes.value("transform").toString()) *
                                     transforms.back());
            }
        } else if (xml.isEndElement()) {
            transforms.pop_back();
        }
    }
    return texts;
}

/// A layer of keys at frames that last @p seconds each.
Editor::AnimationData animationOf(const boost::rational<int>& seconds) {
    VQ::Animation::Animation plain;
    auto* const layer = new VQ::Animation::AnimationLayer;
    layer->actuatorName = "arm";
    layer->curve->setTimeUnit(VQ::Animation::RationalSeconds(seconds));
    layer->curve->insert(20, new VQ::Math::Interpolation::Key{});
    plain.push_back(layer);
    Editor::AnimationData data;
    data.animation = std::make_unique<ZT::EditableAnimation>(plain);
    return data;
}

/// The texts on the line of @p caption, from left to right, without it.
std::vector<Text> rowOf(const std::vector<Text>& texts, const QString& caption) {
    std::vector<Text> row;
    const auto found =
        std::find_if(texts.begin(), texts.end(), [&](const Text& each) { return each.text == caption; });
    if (found != texts.end()) {
        std::copy_if(texts.begin(), texts.end(), std::back_inserter(row), [&](const Text& each) {
            return each.text != caption && std::abs(each.begin.y() - found->begin.y()) < 1.0;
        });
        std::sort(row.begin(), row.end(),
                  [](const Text& a, const Text& b) { return a.begin.x() < b.begin.x(); });
    }
    return row;
}

} // namespace

class SecondsRulerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void secondsStandAtTheFramesThatTheRateGivesThem_data() {
        QTest::addColumn<int>("units");
        QTest::addColumn<int>("perSecond");
        QTest::addColumn<double>("first");
        QTest::addColumn<double>("last");
        const auto add = [](const char* name, int units, int perSecond) {
            QTest::addRow("%s", name) << units << perSecond << -10.0 << 110.0;
            QTest::addRow("%s, a few frames", name) << units << perSecond << 30.25 << 42.5;
            QTest::addRow("%s, many", name) << units << perSecond << -1000.0 << 90000.0;
        };
        add("25 frames a second", 1, 25);
        add("24 frames a second", 1, 24);
        add("30 frames a second", 1, 30);
        add("29.97 frames a second", 1001, 30000);
        add("120 frames a second", 1, 120);
        add("a frame in two seconds", 2, 1);
    }
    void secondsStandAtTheFramesThatTheRateGivesThem() {
        QFETCH(int, units);
        QFETCH(int, perSecond);
        QFETCH(double, first);
        QFETCH(double, last);
        Scene scene({});
        scene.document.replace(animationOf({units, perSecond}), QString());
        scene.frames->show(first, last);
        const std::vector<Text> seconds = rowOf(textsOf(*scene.view), "seconds");
        QVERIFY2(seconds.size() >= 3, qPrintable(QString::number(seconds.size())));
        const QFontMetrics metrics = scene.view->fontMetrics();
        const Editor::CurvePlacement placement = scene.view->placement();
        double end = placement.plot().left();
        for (const Text& each : seconds) {
            bool isNumber = false;
            const double second = each.text.toDouble(&isNumber);
            QVERIFY2(isNumber, qPrintable(each.text));
            const double width = metrics.horizontalAdvance(each.text);
            const double x = placement.toX(second * perSecond / units);
            QVERIFY2(std::abs(each.begin.x() + 0.5 * width - x) < 2.0,
                     qPrintable(QString("%1 s at %2 rather than at %3")
                                    .arg(each.text)
                                    .arg(each.begin.x() + 0.5 * width)
                                    .arg(x)));
            QVERIFY2(each.begin.x() > end - 2.0, qPrintable(each.text)); // It stands clear of the one before.
            end = each.begin.x() + width;
        }
    }

    void framesStandWhereTheyAreWhateverTheRate() {
        Scene scene({});
        scene.document.replace(animationOf({1, 30}), QString());
        const std::vector<Text> frames = rowOf(textsOf(*scene.view), "frames");
        QVERIFY(frames.size() >= 3);
        for (const Text& each : frames) {
            const double width = scene.view->fontMetrics().horizontalAdvance(each.text);
            const double x = scene.view->placement().toX(each.text.toDouble());
            QVERIFY2(std::abs(each.begin.x() + 0.5 * width - x) < 2.0, qPrintable(each.text));
        }
    }
};

QTEST_MAIN(SecondsRulerTest)
#include "SecondsRulerTest.moc"
