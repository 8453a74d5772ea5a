#include "model/MetaTypes.h"

#include "base/TangentSide.h"
#include "model/EditableMotionCurve.h"
#include "model/EditableMotionCurveKey.h"

#include <QMetaType>

#include <boost/property_tree/ptree.hpp>

Q_DECLARE_METATYPE(VQ::Math::Interpolation::InterpolationType)
Q_DECLARE_METATYPE(ZT::TangentSide)
Q_DECLARE_METATYPE(boost::property_tree::ptree)
Q_DECLARE_METATYPE(ZT::EditableMotionCurve::KeySideMap)
Q_DECLARE_METATYPE(ZT::EditableMotionCurve::RationalSeconds)

namespace ZT {

bool registerMetaTypes() noexcept {
    using Curve = EditableMotionCurve;
    qRegisterMetaType<EditableMotionCurveKey*>("ZT::EditableMotionCurveKey*");
    qRegisterMetaType<EditableMotionCurveKey*>("EditableMotionCurveKey*");
    qRegisterMetaType<QPair<float, float>>("QPair<float,float>");
    qRegisterMetaType<TangentSide>("ZT::TangentSide");
    qRegisterMetaType<VQ::Math::Interpolation::InterpolationType>(
        "VQ::Math::Interpolation::InterpolationType");
    qRegisterMetaType<boost::property_tree::ptree>("boost::property_tree::ptree");
    qRegisterMetaType<Curve::Index>("Index");
    qRegisterMetaType<Curve::KeysIndexMap>("KeysIndexMap");
    qRegisterMetaType<Curve::KeyPosMap>("KeyPosMap");
    qRegisterMetaType<Curve::KeysSet>("KeysSet");
    qRegisterMetaType<Curve::TangentPosMap>("TangentPosMap");
    qRegisterMetaType<Curve::KeySideMap>("KeySideMap");
    qRegisterMetaType<Curve::TangentTypeMap>("TangentTypeMap");
    qRegisterMetaType<Curve::KeyStateMap>("KeyStateMap");
    qRegisterMetaType<Curve::RationalSeconds>("RationalSeconds");
    // The iterators are left out: "iterator" names two types.
    return true;
}

} // namespace ZT
