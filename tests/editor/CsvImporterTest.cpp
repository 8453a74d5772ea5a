#include "document/CsvImporter.h"

#include "document/CsvLines.h"
#include "tests/editor/support/Scene.h"

#include <sstream>

using namespace EditorScene;

namespace {

VQ::Animation::Animation read(const QByteArray& text) {
    std::istringstream stream(text.toStdString());
    return Editor::readCsv(stream);
}

QString problemIn(const QByteArray& text) {
    return problemOf([&] { read(text); });
}

/// "name: frame=value frame=value", a line for each layer.
QString contentOf(const VQ::Animation::Animation& animation) {
    QStringList layers;
    for (const VQ::Animation::AnimationLayer& layer : animation) {
        QStringList keys;
        for (const auto element : std::as_const(*layer.curve)) {
            keys.append(QString("%1=%2").arg(element.first).arg(double{element.second->value}));
        }
        layers.append(QString::fromStdString(layer.actuatorName) + ": " + keys.join(' '));
    }
    return layers.join('\n');
}

QString rateOf(const VQ::Animation::Animation& animation) {
    const auto unit = animation.begin()->curve->getTimeUnit().count();
    return QString("%1/%2").arg(unit.numerator()).arg(unit.denominator());
}

} // namespace

class CsvImporterTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void framesAreRead();
    void timesAreRead();
    void timesInMillisecondsAreRead();
    void separatorsAndLineEndingsMayBeAny_data();
    void separatorsAndLineEndingsMayBeAny();
    void fieldsMayStandInQuotes();
    void emptyFieldsMakeNoKey();
    void keysAreLinear();
    void numbersAreReadWhateverTheLocale();
    void tinyNumbersAreReadAndFramesReachTheEnd();
    void errorsNameTheLine_data();
    void errorsNameTheLine();
    void lineLengthIsLimited();
    void aLongTableIsRead();
};

void CsvImporterTest::framesAreRead() {
    const auto animation = read("frame,arm,leg\n0,1,2\n5,-1.5,1e3\n4294967295,+0,.5\n");
    QCOMPARE(contentOf(animation), QString("arm: 0=1 5=-1.5 4294967295=0\nleg: 0=2 5=1000 4294967295=0.5"));
    QCOMPARE(rateOf(animation), QString("1/25"));
}

void CsvImporterTest::timesAreRead() {
    for (const char* const name :
         {"time", "t", "seconds", "Time (s)", "TIME [s]", "t[sec]", "time (seconds)"}) {
        const auto animation = read(QByteArray(name) + ",arm\n0,1\n0.0333,2\n0.1,3\n");
        QCOMPARE(contentOf(animation), QString("arm: 0=1 1=2 3=3"));
        QCOMPARE(rateOf(animation), QString("1/30"));
    }
}

void CsvImporterTest::timesInMillisecondsAreRead() {
    const auto animation = read("time (ms),arm\n10,1\n20,2\n50,3\n");
    QCOMPARE(contentOf(animation), QString("arm: 1=1 2=2 5=3"));
    QCOMPARE(rateOf(animation), QString("1/100"));
}

void CsvImporterTest::separatorsAndLineEndingsMayBeAny_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("commas") << QByteArray("frame,arm,leg\n0,1,2\n3,4,5\n");
    QTest::newRow("semicolons") << QByteArray("frame;arm;leg\n0;1;2\n3;4;5\n");
    QTest::newRow("tabs") << QByteArray("frame\tarm\tleg\n0\t1\t2\n3\t4\t5\n");
    QTest::newRow("blanks") << QByteArray("frame , arm ,leg\n 0,1 , 2\n3, 4,5 \n");
    QTest::newRow("no last line end") << QByteArray("frame,arm,leg\n0,1,2\n3,4,5");
    QTest::newRow("carriage returns") << QByteArray("frame,arm,leg\r0,1,2\r3,4,5\r");
    QTest::newRow("both") << QByteArray("frame,arm,leg\r\n0,1,2\r\n3,4,5\r\n");
    QTest::newRow("byte order mark") << QByteArray("\xEF\xBB\xBF"
                                                   "frame,arm,leg\n0,1,2\n3,4,5\n");
    QTest::newRow("empty lines") << QByteArray("\n  \nframe,arm,leg\n\n0,1,2\n,,\n3,4,5\n\n\n");
}

void CsvImporterTest::separatorsAndLineEndingsMayBeAny() {
    QFETCH(QByteArray, text);
    QCOMPARE(contentOf(read(text)), QString("arm: 0=1 3=4\nleg: 0=2 3=5"));
}

void CsvImporterTest::fieldsMayStandInQuotes() {
    const auto animation = read("\"frame\",\"left, \"\"upper\"\" arm\", \"leg\" \n\"0\",\"1\",2\n");
    QCOMPARE(contentOf(animation), QString("left, \"upper\" arm: 0=1\nleg: 0=2"));
    QCOMPARE(contentOf(read("\"frame\";\"a,b\"\n0;\"1\"\n")), QString("a,b: 0=1"));
}

void CsvImporterTest::emptyFieldsMakeNoKey() {
    QCOMPARE(contentOf(read("frame,arm,leg,head\n0,1,,\n3,,5,\n4,\"\",6,\n")),
             QString("arm: 0=1\nleg: 3=5 4=6\nhead: "));
}

void CsvImporterTest::keysAreLinear() {
    const auto animation = read("frame,arm\n0,1\n");
    const Record key = *(*animation.begin()->curve->begin()).second;
    QCOMPARE(key.leftTangentType, Type::linear);
    QCOMPARE(key.rightTangentType, Type::linear);
}

void CsvImporterTest::numbersAreReadWhateverTheLocale() {
    const Records::CommaLocale comma;
    QCOMPARE(contentOf(read("time,arm\n0,1.5\n0.5,2000\n")), QString("arm: 0=1.5 1=2000"));
}

void CsvImporterTest::tinyNumbersAreReadAndFramesReachTheEnd() {
    const auto animation = read("frame,arm\n0,1e-300\n1,3.4e38\n4294967295,0\n");
    QCOMPARE((*animation.begin()->curve->begin()).second->value, 0.0F);
    QCOMPARE(animation.begin()->curve->size(), std::size_t{3});
}

void CsvImporterTest::errorsNameTheLine_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("problem");
    const auto row = [](const char* name, const char* text, const char* problem) {
        QTest::newRow(name) << QByteArray(text) << QString(problem);
    };
    row("nothing", "", "line 1: the file ends where the names of the columns should stand");
    row("blank", "\n\n", "line 2: the file ends where the names of the columns should stand");
    row("another first column", "x,arm\n0,1\n",
        "line 1: \"x\" stands where \"frame\", \"time\", \"time (s)\" or \"time (ms)\" should stand");
    row("another unit", "time (h),arm\n0,1\n",
        "line 1: \"time (h)\" stands where \"frame\", \"time\", \"time (s)\" or \"time (ms)\" should stand");
    row("an open bracket", "time (s,arm\n0,1\n",
        "line 1: \"time (s\" stands where \"frame\", \"time\", \"time (s)\" or \"time (ms)\" should stand");
    row("a bracket alone", "(,arm\n0,1\n",
        "line 1: \"(\" stands where \"frame\", \"time\", \"time (s)\" or \"time (ms)\" should stand");
    row("no name", ",arm\n0,1\n",
        "line 1: \"\" stands where \"frame\", \"time\", \"time (s)\" or \"time (ms)\" should stand");
    row("no actuator", "frame\n0\n", "line 1: there is no column of an actuator");
    row("an unnamed actuator", "frame,arm,\n0,1,2\n", "line 1: column 3 has no name");
    row("a doubled actuator", "frame,arm,arm\n0,1,2\n", "line 1: the actuator \"arm\" stands twice");
    row("a name that is not text", "frame,\x01\n0,1\n",
        "line 1: the name \"?\" holds the character U+0001, which XML cannot hold");
    row("no values", "frame,arm\n\n", "line 2: there is no line of values behind the names of the columns");
    row("too few fields", "frame,arm,leg\n0,1,2\n1,2\n", "line 3: 2 fields for 3 columns");
    row("too many fields", "frame,arm\n0,1\n\n1,2,3\n", "line 4: 3 fields for 2 columns");
    row("no frame", "frame,arm\nx,1\n",
        "line 2: \"x\" stands where a frame from 0 to 4294967295 should stand");
    row("an empty frame", "frame,arm\n,1\n",
        "line 2: \"\" stands where a frame from 0 to 4294967295 should stand");
    row("a negative frame", "frame,arm\n-1,1\n",
        "line 2: \"-1\" stands where a frame from 0 to 4294967295 should stand");
    row("a huge frame", "frame,arm\n4294967296,1\n",
        "line 2: \"4294967296\" stands where a frame from 0 to 4294967295 should stand");
    row("half a frame", "frame,arm\n1.5,1\n",
        "line 2: \"1.5\" stands where a frame from 0 to 4294967295 should stand");
    row("a frame again", "frame,arm\n1,1\n1,2\n", "line 3: the frame 1 does not come behind the one before");
    row("a frame back", "frame,arm\n2,1\n1,2\n", "line 3: the frame 1 does not come behind the one before");
    row("no number", "frame,arm\n0,1\n1,1x\n", "line 3: \"1x\" stands where a number should stand");
    row("a decimal comma", "frame;arm\n0;1,5\n", "line 2: \"1,5\" stands where a number should stand");
    row("not finite", "frame,arm\n0,nan\n", "line 2: \"nan\" stands where a number should stand");
    row("two signs", "frame,arm\n0,+-1\n", "line 2: \"+-1\" stands where a number should stand");
    row("a sign alone", "frame,arm\n0,+\n", "line 2: \"+\" stands where a number should stand");
    row("infinite", "frame,arm\n0,inf\n", "line 2: \"inf\" stands where a number should stand");
    row("too large", "frame,arm\n0,1e39\n", "line 2: the number \"1e39\" is out of range");
    row("far too large", "frame,arm\n0,1e999\n", "line 2: the number \"1e999\" is out of range");
    row("no time", "time,arm\n0,1\nx,2\n", "line 3: \"x\" stands where a time, at least 0, should stand");
    row("a negative time", "time,arm\n-1,1\n",
        "line 2: \"-1\" stands where a time, at least 0, should stand");
    row("an infinite time", "time,arm\ninf,1\n",
        "line 2: \"inf\" stands where a time, at least 0, should stand");
    row("a time back", "time,arm\n2,1\n1.5,2\n", "line 3: the time 1.5 does not come behind the one before");
    row("an open quote", "frame,arm\n0,\"1\n", "line 2: a quote is not closed");
    row("text behind a quote", "frame,arm\n0,\"1\"2\n", "line 2: there is text behind a closing quote");
    row("times between frames", "time,arm\n0,1\n0.1,2\n0.2,2\n0.2137000001,3\n0.3,3\n",
        "line 5: at no rate up to 1000 frames a second do the times up to here lie on frames");
    row("times too close", "time,arm\n0,1\n0.0001,2\n",
        "line 3: at no rate up to 1000 frames a second do the times up to here lie on frames");
    row("a time without frame", "time,arm\n1e15,1\n",
        "line 2: at no rate up to 1000 frames a second do the times up to here lie on frames");
}

void CsvImporterTest::errorsNameTheLine() {
    QFETCH(QByteArray, text);
    QFETCH(QString, problem);
    QCOMPARE(problemIn(text), problem);
}

void CsvImporterTest::lineLengthIsLimited() {
    const auto limit = static_cast<int>(Editor::CsvLines::maximumLineLength);
    QCOMPARE(problemIn("frame,arm\n0," + QByteArray(limit, '1')),
             QString("line 2: the line is longer than %1 characters").arg(limit));
    QCOMPARE(problemIn("frame,arm\n0,1" + QByteArray(limit - 3, ' ')), QString());
}

void CsvImporterTest::aLongTableIsRead() {
    QByteArray text = "time,arm,leg\n";
    constexpr int rows = 20000;
    for (int i = 0; i < rows; ++i) {
        text += QByteArray::number(i / 60.0, 'f', 3) + ',' + QByteArray::number(i) +
                ",1\n"; // Rounded to milliseconds.
    }
    const auto animation = read(text);
    QCOMPARE(rateOf(animation), QString("1/60"));
    const auto& curve = *animation.begin()->curve;
    QCOMPARE(curve.size(), std::size_t{rows});
    QCOMPARE(curve.find(rows - 1)->second->value, static_cast<float>(rows - 1));
}

QTEST_GUILESS_MAIN(CsvImporterTest)
#include "CsvImporterTest.moc"
