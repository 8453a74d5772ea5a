#include "document/Attempt.h"

#include <QCoreApplication>

#include <exception>
#include <new>

namespace Editor {

namespace {

QString tr(const char* text) {
    return QCoreApplication::translate("Editor::Attempt", text);
}

} // namespace

QString attempt(const std::function<void()>& action) noexcept {
    try {
        action();
        return {};
    } catch (const std::bad_alloc&) {
        return tr("there is not enough memory");
    } catch (const std::exception& error) {
        const QString what = QString::fromUtf8(error.what());
        return what.isEmpty() ? tr("something went wrong") : what;
    } catch (...) {
        return tr("something went wrong");
    }
}

} // namespace Editor
