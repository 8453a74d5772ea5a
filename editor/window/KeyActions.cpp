#include "window/KeyActions.h"

#include "model/AnimationMarkers.h"
#include "window/ActionMaker.h"
#include "window/Workspace.h"

#include <QMenu>
#include <QToolBar>

#include <array>
#include <utility>

namespace Editor {

namespace {

using ZT::TangentSide;
using Type = KeyActions::Type;

struct TypeLook {
    Type type;
    const char* name;
    Glyph glyph;
    Qt::Key key;
};

constexpr std::array<TypeLook, 4> typeLooks{{{Type::constant, "Constant", Glyph::constant, Qt::Key_1},
                                             {Type::linear, "Linear", Glyph::linear, Qt::Key_2},
                                             {Type::bezier, "Bezier", Glyph::bezier, Qt::Key_3},
                                             {Type::bezierAuto, "BezierAuto", Glyph::bezierAuto, Qt::Key_4}}};

QString capitalised(QString text) {
    text.replace(0, 1, text.left(1).toUpper());
    return text;
}

void showFlag(QAction& action, const QString& text, const QString& mixedText, std::optional<bool> isSet,
              bool hasKeys) {
    action.setText(hasKeys && !isSet ? mixedText : text);
    action.setChecked(isSet.value_or(false));
}

} // namespace

KeyActions::KeyActions(Workspace& workspace, std::function<ZT::EditableMotionCurve*()> currentCurve,
                       QObject* parent)
    : QObject(parent)
    , _workspace(workspace)
    , _currentCurve(std::move(currentCurve))
    , _insertAction(dress(new QAction(tr("&Insert Key at Current Frame"), this), "insertKey",
                          {Qt::Key_K, Qt::Key_Insert}, Glyph::insertKey))
    , _leftTypes(std::make_unique<QMenu>(tr("&Left Tangent")))
    , _rightTypes(std::make_unique<QMenu>(tr("&Right Tangent")))
    , _smooth(dress(new QAction(tr("S&mooth"), this), "smooth", {Qt::Key_S}, Glyph::smooth))
    , _symmetrical(
          dress(new QAction(tr("S&ymmetrical"), this), "symmetrical", {Qt::Key_Y}, Glyph::symmetrical)) {
    _addTypes(std::nullopt);
    _addTypes(TangentSide::left);
    _addTypes(TangentSide::right);
    _leftTypes->addActions(_typesOf(TangentSide::left));
    _rightTypes->addActions(_typesOf(TangentSide::right));
    for (QAction* const action : {_insertAction, _smooth, _symmetrical}) {
        limitKeysToItsWidgets(action);
    }
    _smooth->setCheckable(true);
    _symmetrical->setCheckable(true);
    // What keys have now counts, not what the check mark shows.
    connect(_smooth, &QAction::triggered, this, [this] {
        const KeySelection::Keys& keys = _workspace.document.selection().keys();
        _workspace.edits.setSmooth(keys, !KeyEdits::commonOf(keys).isSmooth.value_or(false));
        _workspace.selection.update();
    });
    connect(_symmetrical, &QAction::triggered, this, [this] {
        const KeySelection::Keys& keys = _workspace.document.selection().keys();
        _workspace.edits.setSymmetrical(keys, !KeyEdits::commonOf(keys).isSymmetrical.value_or(false));
        _workspace.selection.update();
    });
    connect(_insertAction, &QAction::triggered, this, &KeyActions::_insert);
    connect(&workspace.selection, &SelectionState::changed, this, &KeyActions::_update);
    connect(&workspace.document.selection(), &KeySelection::changed, this, [this] {
        const bool hasKeys = !_workspace.document.selection().isEmpty();
        for (const TypeAction& each : _types) {
            each.action->setEnabled(hasKeys);
        }
        _smooth->setEnabled(hasKeys);
        _symmetrical->setEnabled(hasKeys);
    });
    _update();
}

KeyActions::~KeyActions() = default;

void KeyActions::addTo(QMenu& menu) const {
    menu.addAction(_insertAction);
    menu.addSeparator();
    menu.addActions(_typesOf(std::nullopt));
    menu.addMenu(_leftTypes.get());
    menu.addMenu(_rightTypes.get());
    menu.addSeparator();
    menu.addActions({_smooth, _symmetrical});
}

void KeyActions::addTo(QToolBar& bar) const {
    bar.addAction(_insertAction);
    bar.addSeparator();
    bar.addActions(_typesOf(std::nullopt));
    bar.addSeparator();
    bar.addActions({_smooth, _symmetrical});
}

QList<QAction*> KeyActions::forKeys() const {
    return QList<QAction*>{_insertAction} + _typesOf(std::nullopt) +
           QList<QAction*>{_leftTypes->menuAction(), _rightTypes->menuAction(), _smooth, _symmetrical};
}

void KeyActions::listenIn(QWidget& view) const {
    view.addActions(QList<QAction*>{_insertAction, _smooth, _symmetrical} + _typesOf(std::nullopt));
}

void KeyActions::_addTypes(std::optional<TangentSide> side) {
    const QString prefix = !side                        ? QStringLiteral("type")
                           : *side == TangentSide::left ? QStringLiteral("leftType")
                                                        : QStringLiteral("rightType");
    for (const TypeLook& look : typeLooks) {
        auto* const action = new QAction(capitalised(ZT::interpolTypeToString(look.type)), this);
        const QList<QKeySequence> shortcuts = side ? QList<QKeySequence>() : QList<QKeySequence>{look.key};
        dress(action, qPrintable(prefix + QLatin1String(look.name)), shortcuts, look.glyph);
        limitKeysToItsWidgets(action);
        action->setCheckable(true);
        connect(action, &QAction::triggered, this, [this, side, type = look.type] {
            const KeySelection::Keys& keys = _workspace.document.selection().keys();
            if (side) {
                _workspace.edits.setType(keys, *side, type);
            } else {
                _workspace.edits.setType(keys, type);
            }
            _workspace.selection.update(); // Using a checked action again must not uncheck it.
        });
        _types.push_back({action, look.type, side});
    }
}

QList<QAction*> KeyActions::_typesOf(std::optional<TangentSide> side) const {
    QList<QAction*> actions;
    for (const TypeAction& each : _types) {
        if (each.side == side) {
            actions.append(each.action);
        }
    }
    return actions;
}

void KeyActions::_insert() {
    ZT::EditableMotionCurve* const curve = _currentCurve();
    const unsigned int frame = _workspace.document.markers().selectedIndex();
    if (curve == nullptr) {
        Q_EMIT refused(tr("There is no layer that could take a key."));
        return;
    }
    const QString name = curve->getParentLayer()->getActuatorName();
    if (!_workspace.document.isEditable(curve)) {
        Q_EMIT refused(tr("%1 is locked or hidden and takes no key.").arg(name));
    } else if (_workspace.edits.insert(*curve, frame) == nullptr) {
        Q_EMIT refused(tr("A key stands at frame %1 of %2 already.").arg(frame).arg(name));
    }
}

void KeyActions::_update() {
    const KeyEdits::Common& common = _workspace.selection.common();
    const bool hasKeys = _workspace.selection.keyCount() > 0;
    for (const TypeAction& each : _types) {
        const bool isLeft = common.leftType == each.type;
        const bool isRight = common.rightType == each.type;
        each.action->setChecked(!each.side                        ? isLeft && isRight
                                : *each.side == TangentSide::left ? isLeft
                                                                  : isRight);
        each.action->setEnabled(hasKeys);
    }
    showFlag(*_smooth, tr("S&mooth"), tr("S&mooth (mixed)"), common.isSmooth, hasKeys);
    showFlag(*_symmetrical, tr("S&ymmetrical"), tr("S&ymmetrical (mixed)"), common.isSymmetrical, hasKeys);
    _smooth->setEnabled(hasKeys);
    _symmetrical->setEnabled(hasKeys);
}

} // namespace Editor
