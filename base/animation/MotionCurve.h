#pragma once

#include "base/Export.h"
#include "base/animation/KeyFunctions.h"
#include "base/animation/KeyPlace.h"
#include "base/animation/RationalSeconds.h"
#include "base/animation/SerializationInterface.h"
#include "base/math/Interpolation.h"

#include <boost/ptr_container/clone_allocator.hpp>
#include <boost/ptr_container/ptr_map.hpp>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <utility>

namespace VQ::Animation {

/// An ordered, owning map from frame to key, with the settings of its curve.
///
/// Keys that are parts of larger objects may carry their place (see KeyFunctions): a curve of such keys
/// answers "where is this key?" in constant time. Every operation keeps map and places together, so that they
/// agree at every moment at which anybody can look.
class VQ_EXPORT MotionCurve : public SerializationInterface {
    using Key = Math::Interpolation::Key;
    // The map only views its keys: the curve destroys them through its key functions, which know the whole
    // object.
    using KeyMap = boost::ptr_map<unsigned int, Key, std::less<>, boost::view_clone_allocator>;
    using Places = KeyPlace::Map;

public:
    /// Steps both ways with `++` and `--`, in ascending frame order (std::prev takes it for an input iterator
    /// and must not be used); an element is ->first, the frame, and ->second, the Key*.
    ///@{
    using iterator = KeyMap::iterator;
    using const_iterator = KeyMap::const_iterator;
    ///@}

    /// An empty curve at 25 frames a second without limits.
    MotionCurve();
    /// A deep copy: settings and a plain record of each key, whatever objects @p other holds. O(n log n).
    MotionCurve(const MotionCurve& other);
    /// Takes settings and keys over, the keys as the objects that they are; iterators to them stay valid.
    /// Then
    /// @p other is an empty curve of plain keys at 25 frames a second without limits. O(1).
    MotionCurve(MotionCurve&& other) noexcept;
    /// Takes the same of @p other, or of its deep copy; the old keys are destroyed.
    MotionCurve& operator=(MotionCurve other) noexcept;
    /// Destroys the keys.
    virtual ~MotionCurve();

    /// In ascending frame order.
    ///@{
    iterator begin() { return _keys.begin(); }
    iterator end() { return _keys.end(); }
    const_iterator begin() const { return _keys.begin(); }
    const_iterator end() const { return _keys.end(); }
    ///@}
    /// The number of keys.
    std::size_t size() const noexcept { return _keys.size(); }
    /// Whether there is no key.
    bool empty() const noexcept { return _keys.empty(); }

    /// The key at @p frame, or end(). O(log n).
    ///@{
    iterator find(unsigned int frame);
    const_iterator find(unsigned int frame) const;
    ///@}

    /// The last key at or before @p frame, or end(). O(log n).
    const_iterator findAtOrBefore(unsigned int frame) const;

    /// Stores @p key, which no curve holds, at the free @p frame and takes ownership. Throws
    /// std::invalid_argument when the key is null, carries its place and stands in this curve already, or the
    /// frame is taken; the key then still belongs to the caller. O(log n), beside the key that was placed
    /// last O(1).
    iterator insert(unsigned int frame, Key* key);

    /// Removes the element and destroys its key; returns the element behind it. O(1).
    iterator erase(iterator position);

    /// Removes and destroys all keys.
    void clear() noexcept;

    /// The curve's attributes and one element "key" for each key, in frame order.
    boost::property_tree::ptree serialize() const override;

    /// Replaces settings and keys by those of @p tree, building each key with createCurveKey(). On false the
    /// curve is unchanged; problemIn() says why.
    bool deserialize(const boost::property_tree::ptree& tree) override;

    /// What is wrong with a tree that deserialize() refuses, and where; empty for a readable one.
    static std::string problemIn(const boost::property_tree::ptree& tree);

    /// A new key with default values, of the kind that this curve holds; belongs to the caller.
    virtual Key* createCurveKey() const;

    /// The length of one frame, above zero in every curve: setting another one throws std::invalid_argument
    /// and changes nothing. What is written can be read, then.
    ///@{
    const RationalSeconds& getTimeUnit() const noexcept { return _settings.timeUnit; }
    void setTimeUnit(const RationalSeconds& timeUnit);
    ///@}

    /// Minimum, then maximum, in value units. Kept for the curve's users, bit by bit whatever they are; keys
    /// are not clamped.
    ///@{
    std::pair<float, float> getValueLimits() const noexcept { return _settings.valueLimits; }
    void setValueLimits(const std::pair<float, float>& limits) { _settings.valueLimits = limits; }
    ///@}

    /// The steepest slope that the actuator allows, in value units per second.
    ///@{
    float getMaxAbsoluteDerivative() const noexcept { return _settings.maxAbsoluteDerivative; }
    void setMaxAbsoluteDerivative(float maximum) { _settings.maxAbsoluteDerivative = maximum; }
    ///@}

protected:
    /// A key taken out of the map together with its node, so that putting it back copies nothing. While it is
    /// out, it belongs to whoever holds this handle.
    class DetachedKey {
    public:
        /// Only for a handle that holds a key: one that was neither released nor attached.
        Key* key() const noexcept { return static_cast<Key*>(_node.mapped()); }
        /// Gives up the node; the key stays with the caller.
        Key* release() noexcept;

    private:
        friend class MotionCurve;
        Places::node_type _node;
    };

    /// For a derived class whose keys are parts of larger objects, which @p functions know: an empty curve
    /// with the settings of @p other, or those of MotionCurve(). The table must outlive the curve.
    ///@{
    MotionCurve(const KeyFunctions& functions, const MotionCurve& other);
    explicit MotionCurve(const KeyFunctions& functions);
    ///@}

    /// Whether this is a place in this curve.
    bool isHere(const KeyPlace& place) const noexcept { return place.mapNumber == _mapNumber; }

    /// The given key, which must be alive, or end() when this curve does not hold it. The keys must carry
    /// their places. O(1), but O(n) for a key that another curve took in although a curve held it.
    ///@{
    iterator findKey(const Key& key) {
        const KeyPlace& place = _functions->place(key);
        return isHere(place) ? iterator(place.position) : place.wasShared != 0 ? _seek(key) : end();
    }
    const_iterator findKey(const Key& key) const { return const_cast<MotionCurve*>(this)->findKey(key); }
    ///@}

    /// The key at @p frame, or end(). O(log n), beside the key that was placed or sought last O(1).
    iterator findBeside(unsigned int frame);

    /// Takes the element out of the map without destroying its key. O(1).
    DetachedKey detach(iterator position) noexcept;
    /// Puts a detached key at @p frame and returns true; false, with the key still in its handle, when the
    /// frame is taken. O(log n), beside the key that was placed or sought last O(1).
    bool attach(DetachedKey& detached, unsigned int frame);
    /// Moves an element to another frame and returns true; false, with nothing done, when the frame is taken.
    /// O(log n), past no other key O(1).
    bool relocate(iterator position, unsigned int frame);

    /// Another number after each change of what stands where: positions that were at hand are to be looked up
    /// again.
    std::size_t revision() const noexcept { return _revision; }

private:
    struct Settings {
        RationalSeconds timeUnit{boost::rational<int>(1, 25)};
        std::pair<float, float> valueLimits{-std::numeric_limits<float>::infinity(),
                                            std::numeric_limits<float>::infinity()};
        float maxAbsoluteDerivative = std::numeric_limits<float>::infinity();
    };

    iterator _seek(const Key& key);
    Places::iterator _lowerBound(unsigned int frame, Places::iterator beside);
    void _notePlaced(Places::iterator position) noexcept;
    void _forgetPlace(Places::iterator position) noexcept;
    void _noteManyChanged() noexcept;
    bool _placesAreRight(Places::iterator position);
    void _swapContents(MotionCurve& other) noexcept;
    void _read(const boost::property_tree::ptree& tree);

    Settings _settings;
    const KeyFunctions* _functions;
    KeyMap _keys;
    std::uint64_t _mapNumber;                      ///< the keys' places name it
    Places::iterator _finger = _keys.base().end(); ///< where the last key was placed or sought
    std::size_t _revision = 0;
};

} // namespace VQ::Animation
