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

// The position of the '>' that ends a tag; one inside a quoted attribute does not.
std::size_t endOfTag(std::string_view text, std::size_t from) {
    char quote = '\0';
    for (std::size_t i = from; i < text.size(); ++i) {
        if (quote != '\0') {
            quote = text[i] == quote ? '\0' : quote;
        } else if (text[i] == '"' || text[i] == '\'') {
            quote = text[i];
        } else if (text[i] == '>') {
            return i;
        }
    }
    return text.size();
}

std::string_view nameAt(std::string_view text, std::size_t from) {
    const auto end = std::min(text.find_first_of(" \t\r\n/>", from), text.size());
    return text.substr(from, end - from);
}

} // namespace

void requireSoundNesting(const std::string& document) {
    const std::string_view text = document;
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
            at = behind(text, ">", at);
        } else if (startsWith(at, "</")) {
            const std::string_view name = nameAt(text, at + 2);
            if (open.empty() || open.back() != name) {
                refuse(text.substr(0, at),
                       "\"" + std::string(name.substr(0, 60)) + "\" closes what is not open");
            }
            open.pop_back();
            at = endOfTag(text, at);
        } else {
            const std::size_t end = endOfTag(text, at);
            if (end > at && end < text.size() && text[end - 1] != '/') {
                open.push_back(nameAt(text, at + 1));
            }
            if (open.size() > deepest) {
                refuse(text.substr(0, at), "elements are nested too deep");
            }
            at = end;
        }
    }
}

} // namespace VQ::Animation
