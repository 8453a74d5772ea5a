#include "document/BvhImporter.h"

#include "base/animation/Utf8.h"
#include "base/animation/XmlText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <memory>
#include <stdexcept>
#include <utility>

namespace Editor {

using VQ::Animation::inQuotes;
using VQ::Animation::RationalSeconds;
using VQ::Math::Interpolation::Key;

namespace {

constexpr std::string_view blanks = " \t\v\f";
constexpr std::array<std::string_view, 6> channelNames{"Xposition", "Yposition", "Zposition",
                                                       "Xrotation", "Yrotation", "Zrotation"};

template <class Number>
std::errc fromText(std::string_view text, Number& number) {
    const char* const last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), last, number);
    return error == std::errc() && end != last ? std::errc::invalid_argument : error;
}

} // namespace

BvhImporter::BvhImporter(std::istream& stream)
    : _stream(stream) {}

VQ::Animation::Animation BvhImporter::read() {
    _readHierarchy();
    _readMotion();
    return std::move(_animation);
}

// Text: lines and words.
// ------------------------------------------------------------------------------------------

bool BvhImporter::_readLine() {
    using Traits = std::istream::traits_type;
    std::streambuf& source = *_stream.rdbuf();
    if (Traits::eq_int_type(source.sgetc(), Traits::eof())) {
        return false;
    }
    ++_lineNumber;
    _position = 0;
    _line.clear();
    for (auto next = source.sbumpc(); !Traits::eq_int_type(next, Traits::eof()); next = source.sbumpc()) {
        const char letter = Traits::to_char_type(next);
        if (letter == '\r' && Traits::eq_int_type(source.sgetc(), Traits::to_int_type('\n'))) {
            source.sbumpc();
        }
        if (letter == '\r' || letter == '\n') {
            break;
        }
        if (_line.size() == maximumLineLength) {
            _fail("the line is longer than " + std::to_string(maximumLineLength) + " characters");
        }
        _line += letter;
    }
    if (_lineNumber == 1 && _line.compare(0, 3, "\xEF\xBB\xBF") == 0) {
        _position = 3; // A byte order mark, which some editors write.
    }
    return true;
}

bool BvhImporter::_readFilledLine() {
    while (_readLine()) {
        if (_line.find_first_not_of(blanks, _position) != std::string::npos) {
            return true;
        }
    }
    return false;
}

/// The next word of the current line; empty at its end.
std::string_view BvhImporter::_wordInLine() {
    const std::size_t first = std::min(_line.find_first_not_of(blanks, _position), _line.size());
    _position = std::min(_line.find_first_of(blanks, first), _line.size());
    return std::string_view(_line).substr(first, _position - first);
}

/// The next word, on whatever line it stands.
std::string BvhImporter::_word(const char* expected) {
    std::string_view word = _wordInLine();
    while (word.empty()) {
        if (!_readLine()) {
            _fail(std::string("the file ends where ") + expected + " should stand");
        }
        word = _wordInLine();
    }
    return std::string(word);
}

void BvhImporter::_expect(const char* keyword) {
    const std::string expected = inQuotes(keyword);
    const std::string word = _word(expected.c_str());
    if (word != keyword) {
        _failAt(word, expected);
    }
}

// The joints.
// -----------------------------------------------------------------------------------------------------

void BvhImporter::_readHierarchy() {
    _expect("HIERARCHY");
    _expect("ROOT");
    std::string word;
    do {
        _readTree();
        word = _word("\"MOTION\"");
    } while (word == "ROOT");
    if (word != "MOTION") {
        _failAt(word, "\"MOTION\"");
    }
    if (_curves.empty()) {
        _fail("no joint has a channel");
    }
}

// A loop with a counter and not a function that calls itself: the file decides how deep it goes.
void BvhImporter::_readTree() {
    _readJoint();
    for (int depth = 1; depth > 0;) {
        const std::string word = _word("\"}\"");
        if (word == "}") {
            --depth;
        } else if (word == "JOINT") {
            if (++depth > maximumDepth) {
                _fail("joints are nested deeper than " + std::to_string(maximumDepth));
            }
            _readJoint();
        } else if (word == "End") {
            _expect("Site");
            _expect("{");
            _readOffset();
            _expect("}");
        } else {
            _failAt(word, "\"JOINT\", \"End Site\" or \"}\"");
        }
    }
}

/// Name, brace, offset and channels; what is nested in the joint comes behind.
void BvhImporter::_readJoint() {
    const std::string name = _word("a joint's name");
    if (name == "{" || name == "}") {
        _failAt(name, "a joint's name");
    }
    // What is imported is to be saved.
    if (const auto fault = VQ::Animation::findXmlTextFault(name)) {
        _fail("the joint's name " + inQuotes(name) + " holds " + fault->what);
    }
    _expect("{");
    _readOffset();
    _readChannels(_uniqueName(name));
}

/// The layers hold motion only, so an offset is checked and dropped.
void BvhImporter::_readOffset() {
    _expect("OFFSET");
    for (int coordinate = 0; coordinate < 3; ++coordinate) {
        _toNumber(_word("a number"));
    }
}

void BvhImporter::_readChannels(const std::string& joint) {
    _expect("CHANNELS");
    const std::string countText = _word("the number of channels");
    const unsigned int count = _toCount(countText);
    if (count > channelNames.size()) {
        _fail(inQuotes(countText) + " channels; a joint has at most " + std::to_string(channelNames.size()));
    }
    std::set<std::string> seen;
    for (unsigned int i = 0; i < count; ++i) {
        const std::string channel = _word("a channel's name");
        if (std::find(channelNames.begin(), channelNames.end(), channel) == channelNames.end()) {
            _failAt(channel, "a channel's name, like \"Xrotation\"");
        }
        if (!seen.insert(channel).second) {
            _fail("the channel " + inQuotes(channel) + " stands twice");
        }
        _addLayer(std::string(joint).append(1, '.').append(channel));
    }
}

std::string BvhImporter::_uniqueName(const std::string& joint) {
    std::string name = joint;
    while (!_jointNames.insert(name).second) {
        unsigned int& repetition = _repetitions.try_emplace(joint, 1).first->second;
        name = joint + '_' + std::to_string(++repetition);
    }
    return name;
}

void BvhImporter::_addLayer(const std::string& name) {
    auto layer = std::make_unique<VQ::Animation::AnimationLayer>();
    layer->actuatorName = name;
    _curves.push_back(layer->curve.get());
    _animation.push_back(layer.release());
}

// The frames.
// -----------------------------------------------------------------------------------------------------

void BvhImporter::_readMotion() {
    _expect("Frames:");
    const unsigned int frames = _toCount(_word("the number of frames"));
    _expect("Frame");
    _expect("Time:");
    const RationalSeconds timeUnit = _toTimeUnit(_word("the length of a frame in seconds"));
    for (VQ::Animation::MotionCurve* const curve : _curves) {
        curve->setTimeUnit(timeUnit);
    }
    if (const std::string_view word = _wordInLine(); !word.empty()) {
        _failAt(word, "the end of the line");
    }

    unsigned int frame = 0;
    for (; _readFilledLine(); ++frame) {
        if (frame == frames) {
            _fail("there is more behind the last of " + std::to_string(frames) + " frames");
        }
        _readFrame(frame);
    }
    if (frame != frames) {
        _fail("the file ends after " + std::to_string(frame) + " of " + std::to_string(frames) + " frames");
    }
}

void BvhImporter::_readFrame(unsigned int frame) {
    for (std::size_t channel = 0; channel < _curves.size(); ++channel) {
        const std::string_view word = _wordInLine();
        if (word.empty()) {
            _fail(std::to_string(channel) + " values for " + std::to_string(_curves.size()) + " channels");
        }
        auto key =
            std::make_unique<Key>(); // "bezier auto" on both sides: the samples of a movement that is smooth.
        key->value = _toNumber(word);
        _curves[channel]->insert(frame, key.get());
        static_cast<void>(key.release()); // Only now: a curve that throws has not taken it.
    }
    if (!_wordInLine().empty()) {
        _fail("more than " + std::to_string(_curves.size()) + " values for " +
              std::to_string(_curves.size()) + " channels");
    }
}

// Numbers.
// --------------------------------------------------------------------------------------------------------

unsigned int BvhImporter::_toCount(std::string_view word) const {
    unsigned int count = 0;
    if (fromText(word, count) != std::errc()) {
        _failAt(word, "a whole number from 0 to 4294967295");
    }
    return count;
}

float BvhImporter::_toNumber(std::string_view word) const {
    float number = 0.0F;
    std::errc error = fromText(word, number);
    if (error == std::errc::result_out_of_range) {
        // Too large, which is refused, or so close to zero that the nearest float is good enough.
        double wide = 0.0;
        error = fromText(word, wide);
        if (error == std::errc() && std::abs(wide) < 1.0) {
            return static_cast<float>(wide);
        }
        _fail("the number " + inQuotes(word) + " is out of range");
    }
    if (error != std::errc() || !std::isfinite(number)) {
        _failAt(word, "a number");
    }
    return number;
}

/// Files write the frame rate's inverse with few digits, so that a time within a millionth of a second of 1/n
/// means just that: .0083333 is 1/120. Any other time is taken by its digits, as far as a fraction of two
/// ints holds them.
RationalSeconds BvhImporter::_toTimeUnit(std::string_view word) const {
    constexpr auto largest = double{std::numeric_limits<int>::max()};
    double seconds = 0.0;
    if (fromText(word, seconds) != std::errc() || !std::isfinite(seconds)) {
        _failAt(word, "the length of a frame in seconds");
    }
    if (seconds < 1e-9 || seconds > largest) {
        _fail("a frame cannot last " + inQuotes(word) + " seconds");
    }
    const double rate = std::round(1.0 / seconds);
    if (rate >= 1.0 && std::abs(seconds - 1.0 / rate) <= 1e-6) {
        return RationalSeconds(boost::rational<int>(1, static_cast<int>(rate)));
    }
    int denominator = 1'000'000'000;
    while (std::round(seconds * denominator) > largest) {
        denominator /= 10;
    }
    return RationalSeconds(
        boost::rational<int>(static_cast<int>(std::round(seconds * denominator)), denominator));
}

// Errors.
// ---------------------------------------------------------------------------------------------------------

void BvhImporter::_fail(const std::string& what) const {
    throw std::runtime_error("line " + std::to_string(std::max<std::size_t>(_lineNumber, 1)) + ": " + what);
}

void BvhImporter::_failAt(std::string_view word, const std::string& expected) const {
    _fail(inQuotes(word) + " stands where " + expected + " should stand");
}

} // namespace Editor
