#include "document/CsvImporter.h"

#include "base/animation/Utf8.h"
#include "base/animation/XmlText.h"
#include "document/CsvLines.h"
#include "document/SampleRate.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace Editor {

using VQ::Animation::inQuotes;
using VQ::Math::Interpolation::Key;

namespace {

template <class Number>
std::errc fromText(const std::string& text, Number& number) {
    const bool hasPlus =
        text.size() > 1 && text[0] == '+' && text[1] != '-'; // Not everybody's numbers have one.
    const char* const last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data() + (hasPlus ? 1 : 0), last, number);
    return error == std::errc() && end != last ? std::errc::invalid_argument : error;
}

// Letters of ASCII only: the locale has no say in what a file means.
std::string lowered(std::string text) {
    for (char& letter : text) {
        letter = letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    }
    return text;
}

// What the last digit of a decimal number is worth; 0 where an exponent hides it.
double lastDigitOf(const std::string& number) {
    const std::size_t point = number.find('.');
    const std::size_t digits = point == std::string::npos ? 0 : number.size() - point - 1;
    return number.find_first_of("eE") != std::string::npos ? 0.0
                                                           : std::pow(10.0, -static_cast<double>(digits));
}

class CsvReader {
public:
    explicit CsvReader(std::istream& stream)
        : _lines(stream) {}

    VQ::Animation::Animation read() {
        if (!_lines.next()) {
            _lines.fail("the file ends where the names of the columns should stand");
        }
        _readNames();
        while (_lines.next()) {
            _readRow();
        }
        if (_rows == 0) {
            _lines.fail("there is no line of values behind the names of the columns");
        }
        if (_isTimed) {
            _findFrames();
        }
        _makeKeys();
        return std::move(_animation);
    }

private:
    struct Sample {
        std::size_t row;
        float value;
    };

    void _readNames() {
        const std::vector<std::string>& names = _lines.fields();
        _readFirstName(lowered(names.front()));
        if (names.size() < 2) {
            _lines.fail("there is no column of an actuator");
        }
        std::set<std::string> seen;
        for (auto name = names.begin() + 1; name != names.end(); ++name) {
            if (name->empty()) {
                _lines.fail("column " + std::to_string(name - names.begin() + 1) + " has no name");
            }
            // What is imported is to be saved.
            if (const auto fault = VQ::Animation::findXmlTextFault(*name)) {
                _lines.fail("the name " + inQuotes(*name) + " holds " + fault->what);
            }
            if (!seen.insert(*name).second) {
                _lines.fail("the actuator " + inQuotes(*name) + " stands twice");
            }
            auto layer = std::make_unique<VQ::Animation::AnimationLayer>();
            layer->actuatorName = *name;
            _animation.push_back(layer.release());
        }
        _samples.resize(names.size() - 1);
    }

    void _readFirstName(const std::string& name) {
        const std::size_t bracket = std::min(name.find_first_of("(["), name.size());
        const std::string word = name.substr(0, name.find_last_not_of(' ', bracket - 1) + 1);
        const std::string unit =
            bracket < name.size() ? name.substr(bracket + 1, name.size() - bracket - 2) : "s";
        const bool isClosed = bracket == name.size() || (name.back() == (name[bracket] == '(' ? ')' : ']'));
        _isTimed = word == "time" || word == "t" || word == "seconds";
        const bool isKnownUnit = unit == "s" || unit == "sec" || unit == "seconds" || unit == "ms";
        if (name != "frame" && !(_isTimed && isClosed && isKnownUnit)) {
            _lines.fail(inQuotes(_lines.fields().front()) +
                        " stands where \"frame\", \"time\", \"time (s)\" or \"time (ms)\" should stand");
        }
        _secondsPerUnit = unit == "ms" ? 1e-3 : 1.0;
    }

    void _readRow() {
        const std::vector<std::string>& fields = _lines.fields();
        if (fields.size() != _samples.size() + 1) {
            _lines.fail(std::to_string(fields.size()) + " fields for " + std::to_string(_samples.size() + 1) +
                        " columns");
        }
        if (_isTimed) {
            _readTime(fields.front());
        } else {
            _readFrame(fields.front());
        }
        for (std::size_t i = 0; i < _samples.size(); ++i) {
            if (!fields[i + 1].empty()) {
                _samples[i].push_back({_rows, _toNumber(fields[i + 1])});
            }
        }
        ++_rows;
    }

    void _readFrame(const std::string& field) {
        unsigned int frame = 0;
        if (fromText(field, frame) != std::errc()) {
            _lines.fail(inQuotes(field) + " stands where a frame from 0 to 4294967295 should stand");
        }
        if (!_frames.empty() && frame <= _frames.back()) {
            _lines.fail("the frame " + field + " does not come behind the one before");
        }
        _frames.push_back(frame);
    }

    void _readTime(const std::string& field) {
        double time = 0.0;
        if (fromText(field, time) != std::errc() || !std::isfinite(time) || time < 0.0) {
            _lines.fail(inQuotes(field) + " stands where a time, at least 0, should stand");
        }
        time *= _secondsPerUnit;
        if (!_times.seconds.empty() && time <= _times.seconds.back()) {
            _lines.fail("the time " + field + " does not come behind the one before");
        }
        _times.seconds.push_back(time);
        _timeLines.push_back(_lines.number());
        const double digit = lastDigitOf(field) * _secondsPerUnit;
        _finest = _rows == 0 ? digit : std::min(_finest, digit);
    }

    // Times written with a varying number of digits have their last zeros left out.
    void _findFrames() {
        _times.digit = _finest;
        const auto length = sampleRate(_times);
        if (!length) {
            throw std::runtime_error(_whereTimesGoWrong());
        }
        _frames = *framesAt(_times, *length);
        for (VQ::Animation::AnimationLayer& layer : _animation) {
            layer.curve->setTimeUnit(*length);
        }
    }

    // The first line with which no rate is left.
    std::string _whereTimesGoWrong() const {
        std::size_t good = 1;
        std::size_t bad = _times.seconds.size();
        while (bad - good > 1) {
            const std::size_t middle = good + (bad - good) / 2;
            const SampleTimes first{
                {_times.seconds.begin(), _times.seconds.begin() + static_cast<std::ptrdiff_t>(middle)},
                _times.digit};
            (sampleRate(first) ? good : bad) = middle;
        }
        return "line " + std::to_string(_timeLines[bad - 1]) +
               ": at no rate up to 1000 frames a second do the times up to here lie on frames";
    }

    void _makeKeys() {
        auto layer = _animation.begin();
        for (const std::vector<Sample>& samples : _samples) {
            for (const Sample& sample : samples) {
                auto key = std::make_unique<Key>();
                key->value = sample.value;
                key->leftTangentType = VQ::Math::Interpolation::InterpolationType::linear;
                key->rightTangentType = VQ::Math::Interpolation::InterpolationType::linear;
                layer->curve->insert(_frames[sample.row], key.get());
                static_cast<void>(key.release()); // Only now: a curve that throws has not taken it.
            }
            ++layer;
        }
    }

    float _toNumber(const std::string& field) const {
        float number = 0.0F;
        std::errc error = fromText(field, number);
        if (error == std::errc::result_out_of_range) {
            // Too large, which is refused, or so close to zero that the nearest float is good enough.
            double wide = 0.0;
            error = fromText(field, wide);
            if (error == std::errc() && std::abs(wide) < 1.0) {
                return static_cast<float>(wide);
            }
            _lines.fail("the number " + inQuotes(field) + " is out of range");
        }
        if (error != std::errc() || !std::isfinite(number)) {
            _lines.fail(inQuotes(field) + " stands where a number should stand");
        }
        return number;
    }

    CsvLines _lines;
    VQ::Animation::Animation _animation; ///< a layer for each column but the first
    std::vector<std::vector<Sample>> _samples;
    std::vector<unsigned int> _frames; ///< by row
    SampleTimes _times;                ///< by row, where the first column holds times
    std::vector<std::size_t> _timeLines;
    std::size_t _rows = 0;
    double _finest = 0.0;
    double _secondsPerUnit = 1.0;
    bool _isTimed = false;
};

} // namespace

VQ::Animation::Animation readCsv(std::istream& stream) {
    return CsvReader(stream).read();
}

} // namespace Editor
