#pragma once

#include "base/TangentSide.h"
#include "base/math/Interpolation.h"
#include "window/ActionSet.h"
#include "window/Glyph.h"

#include <memory>
#include <optional>
#include <vector>

namespace Editor {

/// What selected keys are made into, and new keys: what a menu "Key" holds. A check mark says what all
/// selected keys are. What only some of them are has a dash below its icon and says so in its text; its first
/// use sets it for all.
class KeyActions : public ActionSet {
    Q_OBJECT

public:
    using Type = VQ::Math::Interpolation::InterpolationType;

    /// The curve of the current layer takes new keys.
    KeyActions(Workspace& ofWorkspace, CurrentCurve ofCurrentLayer, QObject* parent);
    ~KeyActions() override;

    void addTo(QMenu& menu) const override;
    void addTo(QToolBar& bar) const override;
    QList<QAction*> forKeys() const override;
    void listenIn(QWidget& view) const override;

private:
    /// Gives a type to one side, or to both.
    struct TypeAction {
        QAction* action; ///< a QObject child of the actions
        QString text;    ///< where it is not mixed
        Glyph glyph;
        Type type;
        std::optional<ZT::TangentSide> side; ///< both where there is none
    };

    void _addTypes(std::optional<ZT::TangentSide> side);
    QList<QAction*> _typesOf(std::optional<ZT::TangentSide> side) const;
    void _insert();
    void _enable(bool hasKeys);
    void _update();

    QAction* _insertAction; ///< all actions are QObject children
    std::vector<TypeAction> _types;
    std::unique_ptr<QMenu> _leftTypes;
    std::unique_ptr<QMenu> _rightTypes;
    QAction* _smooth;
    QAction* _symmetrical;
};

} // namespace Editor
