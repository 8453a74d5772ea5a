#include "base/animation/XmlNesting.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace VQ::Animation {

namespace {

constexpr std::size_t deepest = 64;

[[noreturn]] void refuse(std::string_view before, const std::string& what) {
    const auto line = 1 + std::count(before.begin(), before.end(), '\n');
    throw std::runtime_error("line " + std::to_string(line) + ": " + what);
}

// The position behind the next @p end, or the end of the text.
std::size_t behind(std::string_view text, std::string_view end, std::size_t from) {
    const auto found = text.find(end, from);
    return found == std::string_view::npos ? text.size() : found + end.size();
}

// A quote elsewhere than behind '=' would be part of an attribute's name to the tree's reader.
bool opensValue(std::string_view text, std::size_t quote) {
    const auto before = text.find_last_not_of(" \t\r\n", quote - 1);
    return before != std::string_view::npos && text[before] == '=';
}

// The position of the '>' that ends a tag; one inside a quoted attribute does not.
std::size_t endOfTag(std::string_view text, std::size_t from) {
    char quote = '\0';
    for (std::size_t i = from; i < text.size(); ++i) {
        if (quote != '\0') {
            quote = text[i] == quote ? '\0' : quote;
        } else if (text[i] == '"' || text[i] == '\'') {
            if (!opensValue(text, i)) {
                refuse(text.substr(0, i), "a quote stands where no value begins");
            }
            quote = text[i];
        } else if (text[i] == '>') {
            return i;
        }
    }
    return text.size();
}

// The tree's reader takes quotes and '=' for parts of an element's name; the search for the tag's end would
// go astray there.
bool isName(std::string_view name) {
    return !name.empty() && name.find_first_of("'\"=") == std::string_view::npos;
}

std::string_view nameAt(std::string_view text, std::size_t from) {
    const auto end = std::min(text.find_first_of(" \t\r\n/>", from), text.size());
    return text.substr(from, end - from);
}

} // namespace

void requireSoundNesting(const std::string& document) {
    const std::string_view text = document;
    if (const auto nul = text.find('\0'); nul != std::string_view::npos) {
        refuse(text.substr(0, nul), "a NUL character, at which the tree's reader would stop");
    }
    const auto startsWith = [&](std::size_t at, std::string_view what) {
        return text.compare(at, what.size(), what) == 0;
    };
    std::vector<std::string_view> open;
    for (std::size_t at = text.find('<'); at < text.size(); at = text.find('<', at)) {
        if (startsWith(at, "<!--")) {
            at = behind(text, "-->", at + 4);
        } else if (startsWith(at, "<![CDATA[")) {
            at = behind(text, "]]>", at);
        } else if (startsWith(at, "<?")) {
            at = behind(text, "?>", at);
        } else if (startsWith(at, "<!")) {
            const std::size_t end = behind(text, ">", at);
            if (text.substr(at, end - at).find('[') != std::string_view::npos) {
                // Where it ends is a matter of brackets, which may hide elements from this search.
                refuse(text.substr(0, at), "declarations of a document's own, which are not read");
            }
            at = end;
        } else if (startsWith(at, "</")) {
            const std::string_view name = nameAt(text, at + 2);
            if (open.empty() || open.back() != name) {
                refuse(text.substr(0, at),
                       "\"" + std::string(name.substr(0, 60)) + "\" closes what is not open");
            }
            open.pop_back();
            at = endOfTag(text, at);
        } else {
            const std::string_view name = nameAt(text, at + 1);
            if (!isName(name)) {
                refuse(text.substr(0, at), "\"" + std::string(name.substr(0, 60)) + "\" is no element name");
            }
            const std::size_t end = endOfTag(text, at + name.size());
            if (end < text.size() && text[end - 1] != '/') {
                open.push_back(name);
            }
            if (open.size() > deepest) {
                refuse(text.substr(0, at), "elements are nested too deep");
            }
            at = end;
        }
    }
}

} // namespace VQ::Animation
