#pragma once

#include <QtGlobal>

#include <boost/property_tree/ptree_fwd.hpp>

#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
#include <QTypeInfo>

#include <type_traits>

// Slots carry trees, and Qt 6 asks what the types that they carry can do, for a container first of its
// elements. A tree's elements are trees again: the answers are given here, since that search has no end.

template <>
struct QTypeTraits::has_operator_equal<boost::property_tree::ptree> : std::true_type {};

template <>
struct QTypeTraits::has_operator_less_than<boost::property_tree::ptree> : std::false_type {};
#endif
