#pragma once

#include "base/TangentSide.h"
#include "base/math/BezierTangents.h"
#include "base/math/Interpolation.h"

#include <cmath>
#include <sstream>
#include <string>

/// A key as a struct, with the rules that concern its own handles alone.
struct PlainKey {
    using Point = VQ::Math::Position2D;
    using Side = ZT::TangentSide;
    using Type = VQ::Math::Interpolation::InterpolationType;
    enum class Home { nowhere, here, elsewhere, destroyed };

    std::string name;
    Home home = Home::nowhere;
    unsigned int frame = 0; ///< where a curve holds it
    VQ::Math::Interpolation::Key record;
    bool smooth = false;
    bool symmetrical = false;

    Type& type(Side side) { return side == Side::left ? record.leftTangentType : record.rightTangentType; }
    Point& handle(Side side) {
        return side == Side::left ? record.leftTangentOffset : record.rightTangentOffset;
    }

    /// The frame in whichever curve; 0 in none.
    unsigned int index() const { return home == Home::here || home == Home::elsewhere ? frame : 0; }

    /// A handle was set: the opposite one follows by the flags.
    void setHandle(Side side, Point offset) {
        const bool isLeft = side == Side::left;
        const Side opposite = isLeft ? Side::right : Side::left;
        Point& other = handle(opposite);
        handle(side) = offset;
        if (type(opposite) != Type::bezier) {
            return;
        }
        if (symmetrical) {
            other = Point(-offset.x, -offset.y);
        } else if (smooth) {
            const float a = isLeft ? std::atan2(-offset.y, -offset.x) : std::atan2(offset.y, offset.x);
            const float length = isLeft ? other.norm() : -other.norm();
            other = Point(std::cos(a) * length, std::sin(a) * length);
        }
    }

    /// Both tangents became "bezier": the handles meet in the middle.
    void alignHandles() {
        Point& l = record.leftTangentOffset;
        Point& r = record.rightTangentOffset;
        if (symmetrical) {
            r = Point((r.x - l.x) * 0.5F, (r.y - l.y) * 0.5F);
            l = Point(-r.x, -r.y);
        } else if (smooth) {
            const float a = (std::atan2(-l.y, -l.x) + std::atan2(r.y, r.x)) * 0.5F;
            const float leftLength = l.norm();
            const float rightLength = r.norm();
            l = Point(-std::cos(a) * leftLength, -std::sin(a) * leftLength);
            r = Point(std::cos(a) * rightLength, std::sin(a) * rightLength);
        }
    }

    /// Recomputes automatic handles between two neighbours, null for none. Returns whether one moved.
    bool updateHandles(const PlainKey* before, const PlainKey* behind) {
        const auto handles =
            VQ::Math::computeBezierKeyTangents(static_cast<float>(frame - (before ? before->frame : 0)),
                                               static_cast<float>(behind ? behind->frame - frame : 0),
                                               before ? record.value - before->record.value : 0.0F,
                                               behind ? behind->record.value - record.value : 0.0F);
        const bool leftMoves = moveAutomatic(Side::left, handles.first);
        const bool rightMoves = moveAutomatic(Side::right, handles.second);
        return leftMoves || rightMoves;
    }

    /// Everything about the key in one line.
    std::string text() const {
        const char* const place = home == Home::here        ? " here "
                                  : home == Home::elsewhere ? " elsewhere "
                                                            : " nowhere ";
        std::ostringstream out;
        out << name << place << index() << ": " << record.value << " ("
            << static_cast<int>(record.leftTangentType) << ' ' << record.leftTangentOffset.x << ' '
            << record.leftTangentOffset.y << ") (" << static_cast<int>(record.rightTangentType) << ' '
            << record.rightTangentOffset.x << ' ' << record.rightTangentOffset.y << ')'
            << (smooth ? " smooth" : "") << (symmetrical ? " symmetrical" : "");
        return out.str();
    }

private:
    bool moveAutomatic(Side side, Point target) {
        if (type(side) != Type::bezierAuto || handle(side).isNear(target, 0.0001F)) {
            return false;
        }
        handle(side) = target;
        return true;
    }
};
