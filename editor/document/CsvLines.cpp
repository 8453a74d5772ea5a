#include "document/CsvLines.h"

#include <algorithm>
#include <stdexcept>

namespace Editor {

namespace {

constexpr const char* blankCharacters = " \t\v\f";

std::string trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(blankCharacters);
    return first == std::string::npos
               ? std::string()
               : text.substr(first, text.find_last_not_of(blankCharacters) - first + 1);
}

} // namespace

CsvLines::CsvLines(std::istream& stream)
    : _stream(stream) {}

bool CsvLines::next() {
    while (_readLine()) {
        if (_separator == '\0' && _line.find_first_not_of(blankCharacters) != std::string::npos) {
            _findSeparator();
        }
        _split();
        if (std::any_of(_fields.begin(), _fields.end(), [](const auto& field) { return !field.empty(); })) {
            return true;
        }
    }
    return false;
}

bool CsvLines::_readLine() {
    using Traits = std::istream::traits_type;
    std::streambuf& source = *_stream.rdbuf();
    if (Traits::eq_int_type(source.sgetc(), Traits::eof())) {
        return false;
    }
    ++_number;
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
            fail("the line is longer than " + std::to_string(maximumLineLength) + " characters");
        }
        _line += letter;
    }
    if (_number == 1 && _line.compare(0, 3, "\xEF\xBB\xBF") == 0) {
        _line.erase(0, 3); // A byte order mark, which spreadsheets write.
    }
    return true;
}

// The first of them that stands outside quotes. A table of one column has none, and needs none.
void CsvLines::_findSeparator() {
    bool isQuoted = false;
    const auto found = std::find_if(_line.begin(), _line.end(), [&isQuoted](char letter) {
        isQuoted = isQuoted != (letter == '"');
        return !isQuoted && (letter == ',' || letter == ';' || letter == '\t');
    });
    _separator = found == _line.end() ? ',' : *found;
}

void CsvLines::_split() {
    _fields.clear();
    for (std::size_t position = 0; position <= _line.size(); ++position) { // Past the separator.
        const std::size_t first = std::min(_line.find_first_not_of(" \v\f", position), _line.size());
        if (first < _line.size() && _line[first] == '"') {
            position = first;
            _fields.push_back(_quoted(position));
        } else {
            const std::size_t end = std::min(_line.find(_separator, position), _line.size());
            _fields.push_back(trimmed(_line.substr(position, end - position)));
            position = end;
        }
    }
}

// The field whose quote stands at the position, which is led behind it.
std::string CsvLines::_quoted(std::size_t& position) const {
    std::string field;
    for (++position;; ++position) {
        const std::size_t quote = _line.find('"', position);
        if (quote == std::string::npos) {
            fail("a quote is not closed");
        }
        field.append(_line, position, quote - position);
        position = quote + 1;
        if (position >= _line.size() || _line[position] != '"') {
            break;
        }
        field += '"';
    }
    position = std::min(_line.find_first_not_of(" \v\f", position), _line.size());
    if (position < _line.size() && _line[position] != _separator) {
        fail("there is text behind a closing quote");
    }
    return field;
}

void CsvLines::fail(const std::string& what) const {
    throw std::runtime_error("line " + std::to_string(std::max<std::size_t>(_number, 1)) + ": " + what);
}

} // namespace Editor
