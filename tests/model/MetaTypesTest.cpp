#include "model/EditableMotionCurve.h"

#include <QtTest>

// Nothing here names the types but by text: a template of Qt's would register what it is given.
class MetaTypesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatSignalsAndSlotsCarryIsKnownByItsName_data() {
        QTest::addColumn<QByteArray>("name");
        for (const char* const name :
             {"ZT::EditableMotionCurveKey*", "EditableMotionCurveKey*", "QPair<float,float>",
              "ZT::TangentSide", "VQ::Math::Interpolation::InterpolationType", "boost::property_tree::ptree",
              "Index", "KeysIndexMap", "KeyPosMap", "KeysSet", "TangentPosMap", "KeySideMap",
              "TangentTypeMap", "KeyStateMap", "RationalSeconds"}) {
            QTest::newRow(name) << QByteArray(name);
        }
    }
    void whatSignalsAndSlotsCarryIsKnownByItsName() {
        QFETCH(const QByteArray, name);
        const ZT::EditableMotionCurve curve; // Has the library loaded.
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
        QVERIFY(QMetaType::fromName(name).isValid());
#else
        QVERIFY(QMetaType::type(name.constData()) != QMetaType::UnknownType);
#endif
    }
};

QTEST_GUILESS_MAIN(MetaTypesTest)
#include "MetaTypesTest.moc"
