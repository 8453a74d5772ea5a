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

// What selected keys are.
enum class Share { none, some, all };

Share shareOf(std::optional<bool> isSet, bool hasKeys) {
    return isSet.value_or(false) ? Share::all : hasKeys && !isSet ? Share::some : Share::none;
}

Share shareOf(bool isAll, bool isAny) {
    return isAll ? Share::all : isAny ? Share::some : Share::none;
}

void show(QAction& action, const QString& text, Glyph glyph, Share share) {
    const bool isMixed = share == Share::some;
    const QString shown = isMixed ? KeyActions::tr("%1 (mixed)").arg(text) : text;
    action.setChecked(share == Share::all);
    if (shown != action.text()) { // Qt would paint an icon anew though it is the same.
        action.setText(shown);
        action.setIcon(isMixed ? mixedIconOf(glyph) : iconOf(glyph));
        showKeys(action);
    }
}

} // namespace

KeyActions::KeyActions(Workspace& ofWorkspace, CurrentCurve ofCurrentLayer, QObject* parent)
    : ActionSet(ofWorkspace, std::move(ofCurrentLayer), parent)
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
    onTriggered(_smooth, [this] {
        const KeySelection::Keys& keys = workspace.document.selection().keys();
        workspace.edits.setSmooth(keys, !KeyEdits::commonOf(keys).isSmooth.value_or(false));
    });
    onTriggered(_symmetrical, [this] {
        const KeySelection::Keys& keys = workspace.document.selection().keys();
        workspace.edits.setSymmetrical(keys, !KeyEdits::commonOf(keys).isSymmetrical.value_or(false));
    });
    onTriggered(_insertAction, [this] { _insert(); });
    for (const QAction* const action : {_smooth, _symmetrical}) {
        // A click has turned the mark, whatever it did to the keys.
        connect(action, &QAction::triggered, &workspace.selection, &SelectionState::update);
    }
    connect(&workspace.selection, &SelectionState::changed, this, &KeyActions::_update);
    connect(&workspace.document.selection(), &KeySelection::changed, this,
            [this] { _enable(!workspace.document.selection().isEmpty()); });
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
        onTriggered(action, [this, side, type = look.type] {
            const KeySelection::Keys& keys = workspace.document.selection().keys();
            if (side) {
                workspace.edits.setType(keys, *side, type);
            } else {
                workspace.edits.setType(keys, type);
            }
        });
        // Using a checked action again must not uncheck it.
        connect(action, &QAction::triggered, &workspace.selection, &SelectionState::update);
        _types.push_back({action, action->text(), look.glyph, look.type, side});
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
    ZT::EditableMotionCurve* const curve = currentCurve();
    const unsigned int frame = workspace.document.markers().selectedIndex();
    if (curve == nullptr) {
        Q_EMIT noted(tr("There is no layer that could take a key."));
        return;
    }
    const QString name = curve->getParentLayer()->getActuatorName();
    if (!workspace.document.isEditable(curve)) {
        Q_EMIT noted(tr("%1 is locked or hidden and takes no key.").arg(name));
    } else if (workspace.edits.insert(*curve, frame) == nullptr) {
        Q_EMIT noted(tr("A key stands at frame %1 of %2 already.").arg(frame).arg(name));
    }
}

void KeyActions::_enable(bool hasKeys) {
    for (const TypeAction& each : _types) {
        each.action->setEnabled(hasKeys);
    }
    _smooth->setEnabled(hasKeys);
    _symmetrical->setEnabled(hasKeys);
}

void KeyActions::_update() {
    const KeyEdits::Common& common = workspace.selection.common();
    const bool hasKeys = workspace.selection.keyCount() > 0;
    for (const TypeAction& each : _types) {
        const bool isLeft = common.leftType == each.type;
        const bool isRight = common.rightType == each.type;
        const bool isAnyLeft = common.leftTypes.contains(each.type);
        const bool isAnyRight = common.rightTypes.contains(each.type);
        const Share share = !each.side ? shareOf(isLeft && isRight, isAnyLeft || isAnyRight)
                            : *each.side == TangentSide::left ? shareOf(isLeft, isAnyLeft)
                                                              : shareOf(isRight, isAnyRight);
        show(*each.action, each.text, each.glyph, share);
    }
    show(*_smooth, tr("S&mooth"), Glyph::smooth, shareOf(common.isSmooth, hasKeys));
    show(*_symmetrical, tr("S&ymmetrical"), Glyph::symmetrical, shareOf(common.isSymmetrical, hasKeys));
    _enable(hasKeys);
}

} // namespace Editor
