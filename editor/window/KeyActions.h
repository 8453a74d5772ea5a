#pragma once

#include "base/TangentSide.h"
#include "base/math/Interpolation.h"

#include <QList>
#include <QObject>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QAction;
class QMenu;
class QToolBar;
class QWidget;

namespace ZT {
class EditableMotionCurve;
}

namespace Editor {

struct Workspace;

/// What selected keys are made into, and new keys: what a menu "Key" holds. A check mark says what all
/// selected keys are; where they differ, the text of a flag says so and the first use sets it.
class KeyActions : public QObject {
    Q_OBJECT

public:
    using Type = VQ::Math::Interpolation::InterpolationType;

    /// @p currentCurve gives the curve that a new key goes to, or null.
    KeyActions(Workspace& workspace, std::function<ZT::EditableMotionCurve*()> currentCurve, QObject* parent);
    ~KeyActions() override;

    void addTo(QMenu& menu) const;
    void addTo(QToolBar& bar) const;
    /// What a click on keys offers.
    QList<QAction*> forKeys() const;
    /// Lets the keys that are no command elsewhere work in @p view and the widgets in it.
    void listenIn(QWidget& view) const;

Q_SIGNALS:
    /// An action could not be done; @p why is for the status bar.
    void refused(const QString& why);

private:
    /// Gives a type to one side, or to both.
    struct TypeAction {
        QAction* action; ///< a QObject child of the actions
        Type type;
        std::optional<ZT::TangentSide> side; ///< both where there is none
    };

    void _addTypes(std::optional<ZT::TangentSide> side);
    QList<QAction*> _typesOf(std::optional<ZT::TangentSide> side) const;
    void _insert();
    void _update();

    Workspace& _workspace;
    std::function<ZT::EditableMotionCurve*()> _currentCurve;
    QAction* _insertAction; ///< all actions are QObject children
    std::vector<TypeAction> _types;
    std::unique_ptr<QMenu> _leftTypes;
    std::unique_ptr<QMenu> _rightTypes;
    QAction* _smooth;
    QAction* _symmetrical;
};

} // namespace Editor
