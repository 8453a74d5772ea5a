#pragma once

#include "base/animation/Animation.h"

#include <cstddef>
#include <istream>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace Editor {

/// Reads motion capture in the BVH text format: a hierarchy of joints with named channels, then one line of
/// channel values for each frame.
///
/// Every channel becomes a layer named "Joint.Channel" with one key at each frame, the first line being frame
/// 0. A joint's name that occurs again gets a number, so that every layer has a name of its own. Line endings
/// may be of any kind and mixed; numbers have '.' as decimal point whatever the locale says. Names are UTF-8
/// that XML can hold, so that what is imported can be saved.
///
/// Time and memory grow with what the file holds, never with what it claims to hold: O(n log n) in its size,
/// and some 100 bytes for each value of a frame.
class BvhImporter {
public:
    static constexpr int maximumDepth = 256;                                ///< joints within joints
    static constexpr std::size_t maximumLineLength = std::size_t{1} << 20U; ///< characters

    explicit BvhImporter(std::istream& stream);

    /// Reads the whole stream. Throws std::runtime_error, "line N: what is wrong there", for anything that is
    /// not such a file. Call it once.
    VQ::Animation::Animation read();

private:
    bool _readLine();
    bool _readFilledLine();
    std::string_view _wordInLine();
    std::string _word(const char* expected);
    void _expect(const char* keyword);

    void _readHierarchy();
    void _readTree();
    void _readJoint();
    void _readOffset();
    void _readChannels(const std::string& joint);
    std::string _uniqueName(const std::string& joint);
    void _addLayer(const std::string& name);

    void _readMotion();
    void _readFrame(unsigned int frame);

    unsigned int _toCount(std::string_view word) const;
    float _toNumber(std::string_view word) const;
    VQ::Animation::RationalSeconds _toTimeUnit(std::string_view word) const;

    [[noreturn]] void _fail(const std::string& what) const;
    [[noreturn]] void _failAt(std::string_view word, const std::string& expected) const;

    std::istream& _stream;
    std::string _line;
    std::size_t _position = 0; ///< of the first character of _line that is not read yet
    std::size_t _lineNumber = 0;

    VQ::Animation::Animation _animation;
    std::vector<VQ::Animation::MotionCurve*>
        _curves; ///< of _animation, one for each channel, in the file's order
    std::set<std::string> _jointNames;
    std::map<std::string, unsigned int> _repetitions;
};

} // namespace Editor
