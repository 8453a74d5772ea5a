#include "OneOfEach.h"

#include <QMetaMethod>
#include <QSignalSpy>
#include <QTest>

using ZT::EditableMotionCurveKey;

namespace {

/// A value to send for each type that a signal carries; two frames of one signal differ.
QVariant sample(int type, int position) {
    if (type == qMetaTypeId<EditableMotionCurveKey*>()) {
        static EditableMotionCurveKey key;
        return QVariant::fromValue(&key);
    }
    if (type == qMetaTypeId<QPair<float, float>>()) {
        return QVariant::fromValue(qMakePair(-1.5F, 2.5F));
    }
    switch (type) {
    case QMetaType::Bool:
        return true;
    case QMetaType::Float:
        return 3.25F;
    case QMetaType::UInt:
        return 4294967290U + static_cast<unsigned int>(position);
    case QMetaType::QString:
        return QString::fromUtf8("Gr\xc3\xb6\xc3\x9f"
                                 "e");
    default:
        return {};
    }
}

QString show(const QVariant& value) {
    if (value.userType() == qMetaTypeId<EditableMotionCurveKey*>()) {
        return QString::number(reinterpret_cast<quintptr>(value.value<EditableMotionCurveKey*>()));
    }
    if (value.userType() == qMetaTypeId<QPair<float, float>>()) {
        const auto pair = value.value<QPair<float, float>>();
        return QString("%1 %2").arg(static_cast<double>(pair.first)).arg(static_cast<double>(pair.second));
    }
    return value.toString();
}

} // namespace

/// Hears any signal of the model.
class Receiver : public QObject {
    Q_OBJECT

public:
    QStringList texts;

public Q_SLOTS:
    void hear() { texts.append(""); }
    void hear(bool value) { texts.append(show(value)); }
    void hear(float value) { texts.append(show(value)); }
    void hear(unsigned int value) { texts.append(show(value)); }
    void hear(unsigned int first, unsigned int second) { texts.append(show(first) + ' ' + show(second)); }
    void hear(const QString& value) { texts.append(value); }
    void hear(QPair<float, float> value) { texts.append(show(QVariant::fromValue(value))); }
    void hear(ZT::EditableMotionCurveKey* value) { texts.append(show(QVariant::fromValue(value))); }
};

class QueuedSignalsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void signalsCanBeSpiedOnAndQueued_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("index");
        const OneOfEach model;
        for (const char* const name : {"key", "curve", "layer", "animation", "markers"}) {
            const QMetaObject& meta = *model.object(name).metaObject();
            for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
                if (meta.method(i).methodType() == QMetaMethod::Signal) {
                    QTest::addRow("%s.%s", name, meta.method(i).methodSignature().constData()) << name << i;
                }
            }
        }
    }
    void signalsCanBeSpiedOnAndQueued() {
        QFETCH(QString, name);
        QFETCH(int, index);
        const OneOfEach model;
        QObject& sender = model.object(name);
        const QMetaMethod signal = sender.metaObject()->method(index);
        QSignalSpy spy(&sender, signal);
        QVERIFY(spy.isValid());
        Receiver receiver;
        const QByteArray slot = "hear(" + signal.parameterTypes().join(',') + ')';
        const int slotIndex = Receiver::staticMetaObject.indexOfSlot(QMetaObject::normalizedSignature(slot));
        QVERIFY2(slotIndex >= 0, slot);
        QVERIFY(QMetaObject::connect(&sender, index, &receiver, slotIndex, Qt::QueuedConnection));

        QVariantList values;
        QStringList texts;
        for (int i = 0; i < signal.parameterCount(); ++i) {
            QVERIFY(signal.parameterType(i) != QMetaType::UnknownType);
            values.append(sample(signal.parameterType(i), i));
            QVERIFY(values.last().isValid());
            texts.append(show(values.last()));
        }
        const auto argument = [&](int i) {
            return i < values.size() ? QGenericArgument(values.at(i).typeName(), values.at(i).constData())
                                     : QGenericArgument();
        };
        QVERIFY(signal.invoke(&sender, Qt::DirectConnection, argument(0), argument(1)));

        QCOMPARE(spy.count(), 1);
        QStringList spied;
        for (const QVariant& value : spy.first()) {
            spied.append(show(value));
        }
        QCOMPARE(spied, texts);
        QCOMPARE(receiver.texts, QStringList());
        QCoreApplication::processEvents();
        QCOMPARE(receiver.texts, QStringList(texts.join(' ')));
    }
};

QTEST_GUILESS_MAIN(QueuedSignalsTest)
#include "QueuedSignalsTest.moc"
