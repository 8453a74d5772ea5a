#include "base/animation/XmlMarkup.h"

#include "base/animation/Utf8.h"
#include "base/animation/XmlText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <string>
#include <vector>

namespace VQ::Animation {

namespace {

constexpr std::string_view blanks = " \t\r\n";
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::array<std::string_view, 5> entities{"lt", "gt", "amp", "quot", "apos"};

// Whatever the locale says.
char toLower(char letter) noexcept {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool isNumberOfCharacter(std::string_view digits) {
    const bool isHexadecimal = !digits.empty() && digits.front() == 'x';
    digits.remove_prefix(isHexadecimal ? 1 : 0);
    const char* const last = digits.data() + digits.size();
    std::uint32_t code = 0;
    const auto [end, error] = std::from_chars(digits.data(), last, code, isHexadecimal ? 16 : 10);
    return error == std::errc() && end == last && isXmlCharacter(code);
}

// The tree's reader takes quotes and '=' for parts of an element's name; the search for the tag's end would
// go astray there.
bool isName(std::string_view name) {
    return !name.empty() && name.find_first_of("'\"=") == std::string_view::npos;
}

class Walk {
public:
    Walk(std::string_view text, const XmlLimits& limits)
        : _text(text)
        , _limits(limits)
        , _start(_startsWith(0, byteOrderMark) ? byteOrderMark.size() : 0) {}

    void walk() {
        std::size_t at = _start;
        while (at < _text.size()) {
            const std::size_t markup = std::min(_text.find('<', at), _text.size());
            _requireReferences(at, markup);
            at = markup == _text.size() ? markup : _behindMarkup(markup);
        }
        if (!_hasRoot) {
            _refuse(at, "there is no element \"animation\"");
        }
    }

private:
    [[noreturn]] void _refuse(std::size_t at, const std::string& what) const { refuseXml(_text, at, what); }

    bool _startsWith(std::size_t at, std::string_view what) const {
        return _text.compare(at, what.size(), what) == 0;
    }

    std::size_t _behindMarkup(std::size_t at) {
        if (_startsWith(at, "</")) {
            return _behindClosingTag(at);
        }
        _countItem(at);
        if (_startsWith(at, "<!--")) {
            return _behind("-->", at + 4);
        }
        if (_startsWith(at, "<![CDATA[")) {
            return _behind("]]>", at);
        }
        if (_startsWith(at, "<?")) {
            return _behindInstruction(at);
        }
        return _startsWith(at, "<!") ? _behindDocumentType(at) : _behindOpeningTag(at);
    }

    // The position behind the next end, or the end of the text.
    std::size_t _behind(std::string_view end, std::size_t from) const {
        const auto found = _text.find(end, from);
        return found == std::string_view::npos ? _text.size() : found + end.size();
    }

    std::size_t _behindInstruction(std::size_t at) const {
        const std::size_t end = _behind("?>", at + 2);
        std::string text(_text.substr(at + 2, end - at - 2));
        std::transform(text.begin(), text.end(), text.begin(), toLower);
        if (text.find_first_of(" \t\r\n?") == 3 && text.compare(0, 3, "xml") == 0) {
            if (at != _start) {
                _refuse(at, "an XML declaration that does not stand at the beginning");
            }
            _requireUtf8(text);
        }
        return end;
    }

    void _requireUtf8(std::string_view declaration) const {
        const auto skip = [&](std::size_t count) {
            declaration.remove_prefix(std::min(count, declaration.size()));
            declaration.remove_prefix(std::min(declaration.find_first_not_of(blanks), declaration.size()));
        };
        constexpr std::string_view word = "encoding";
        const auto found = declaration.find(word);
        if (found == std::string_view::npos) {
            return; // UTF-8 then.
        }
        skip(found + word.size());
        if (declaration.empty() || declaration.front() != '=') {
            _refuse(_start, "an XML declaration that cannot be read");
        }
        skip(1);
        const char quote = declaration.empty() ? '\0' : declaration.front();
        const auto end = declaration.find(quote, 1);
        if ((quote != '"' && quote != '\'') || end == std::string_view::npos) {
            _refuse(_start, "an XML declaration that cannot be read");
        }
        if (const std::string_view encoding = declaration.substr(1, end - 1); encoding != "utf-8") {
            _refuse(_start, "the encoding " + inQuotes(encoding) + "; only UTF-8 is read");
        }
    }

    std::size_t _behindDocumentType(std::size_t at) const {
        const std::size_t end = _behind(">", at);
        if (_text.substr(at, end - at).find('[') != std::string_view::npos) {
            // Where it ends is a matter of brackets, which may hide elements from this search.
            _refuse(at, "declarations of a document's own, which are not read");
        }
        return end;
    }

    std::size_t _behindClosingTag(std::size_t at) {
        const std::string_view name = _nameAt(at + 2);
        if (_open.empty() || _open.back() != name) {
            _refuse(at, inQuotes(name) + " closes what is not open");
        }
        _open.pop_back();
        return std::min(_endOfTag(at) + 1, _text.size());
    }

    std::size_t _behindOpeningTag(std::size_t at) {
        const std::string_view name = _nameAt(at + 1);
        if (!isName(name)) {
            _refuse(at, inQuotes(name) + " is no element name");
        }
        if (_open.empty() && (_hasRoot || name != "animation")) {
            _refuse(at, _hasRoot ? "there is a second root element"
                                 : "the root element is " + inQuotes(name) + ", not \"animation\"");
        }
        _hasRoot = true;
        const std::size_t end = _endOfTag(at + name.size());
        _requireReferences(at, end);
        if (end == _text.size()) {
            return end;
        }
        if (_text[end - 1] != '/') {
            _open.push_back(name);
        }
        if (_open.size() > _limits.depth) {
            _refuse(at, "elements are nested too deep");
        }
        return end + 1;
    }

    std::string_view _nameAt(std::size_t from) const {
        const auto end = std::min(_text.find_first_of(" \t\r\n/>", from), _text.size());
        return _text.substr(from, end - from);
    }

    // The position of the '>' that ends a tag; one inside a quoted attribute does not.
    std::size_t _endOfTag(std::size_t from) {
        char quote = '\0';
        for (std::size_t i = from; i < _text.size(); ++i) {
            if (quote != '\0') {
                quote = _text[i] == quote ? '\0' : quote;
            } else if (_text[i] == '"' || _text[i] == '\'') {
                if (!_opensValue(i)) {
                    _refuse(i, "a quote stands where no value begins");
                }
                quote = _text[i];
                _countItem(i);
            } else if (_text[i] == '>') {
                return i;
            }
        }
        return _text.size();
    }

    // A quote elsewhere than behind '=' would be part of an attribute's name to the tree's reader.
    bool _opensValue(std::size_t quote) const {
        const auto before = _text.find_last_not_of(blanks, quote - 1);
        return before != std::string_view::npos && _text[before] == '=';
    }

    void _countItem(std::size_t at) {
        if (++_items > _limits.items) {
            _refuse(at, "there are more than " + std::to_string(_limits.items) + " pieces of markup");
        }
    }

    // The tree's reader keeps what it does not know as it stands, and makes bytes of numbers that stand for
    // no character.
    void _requireReferences(std::size_t first, std::size_t last) const {
        const std::string_view text = _text.substr(0, last);
        for (std::size_t at = text.find('&', first); at < last; at = text.find('&', at + 1)) {
            const std::size_t end = std::min(text.find_first_of(";&<> \t\r\n\"'", at + 1), last);
            const std::string_view name = text.substr(at + 1, end - at - 1);
            const bool isEnded = end < last && text[end] == ';';
            const bool isKnown = !name.empty() && name.front() == '#'
                                     ? isNumberOfCharacter(name.substr(1))
                                     : std::find(entities.begin(), entities.end(), name) != entities.end();
            if (!isEnded || !isKnown) {
                _refuse(at, "the reference " + inQuotes(text.substr(at, end - at)) + " stands for nothing");
            }
        }
    }

    std::string_view _text;
    const XmlLimits& _limits;
    std::size_t _start;
    std::vector<std::string_view> _open;
    std::size_t _items = 0;
    bool _hasRoot = false;
};

} // namespace

void requireSoundMarkup(std::string_view text, const XmlLimits& limits) {
    Walk(text, limits).walk();
}

} // namespace VQ::Animation
