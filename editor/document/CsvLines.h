#pragma once

#include <cstddef>
#include <istream>
#include <string>
#include <vector>

namespace Editor {

/// The lines of a table as text, cut into fields. Line endings may be of any kind and mixed.
class CsvLines {
public:
    static constexpr std::size_t maximumLineLength = std::size_t{1} << 20U; ///< characters

    explicit CsvLines(std::istream& stream);

    /// Goes to the next line that has any content; false at the end. Throws as fail() does.
    bool next();

    /// Without quotes, and without blanks around those that had none.
    const std::vector<std::string>& fields() const noexcept { return _fields; }
    /// Counted from 1.
    std::size_t number() const noexcept { return _number; }

    /// Throws std::runtime_error "line N: what".
    [[noreturn]] void fail(const std::string& what) const;

private:
    bool _readLine();
    void _findSeparator();
    void _split();
    std::string _quoted(std::size_t& position) const;

    std::istream& _stream;
    std::string _line;
    std::vector<std::string> _fields;
    std::size_t _number = 0;
    char _separator = '\0'; ///< none before the first line
};

} // namespace Editor
