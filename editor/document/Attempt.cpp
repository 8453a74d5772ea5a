#include "document/Attempt.h"

#include "document/Translation.h"

#include <exception>
#include <new>

namespace Editor {

namespace {

QString describe() {
    try {
        throw;
    } catch (const std::bad_alloc&) {
        return tr("there is not enough memory");
    } catch (const std::exception& error) {
        const QString what = QString::fromUtf8(error.what());
        return what.isEmpty() ? tr("something went wrong") : what;
    } catch (...) {
        return tr("something went wrong");
    }
}

} // namespace

QString textOfException() noexcept {
    try {
        return describe();
    } catch (...) {
        return QStringLiteral("there is not enough memory"); // A constant, which nothing is allocated for.
    }
}

} // namespace Editor
