#include "window/KeyPanel.h"

#include "base/math/Narrowing.h"
#include "document/AtOnce.h"
#include "document/Attempt.h"
#include "document/DragKind.h"
#include "window/HandleNumbers.h"
#include "window/NumberField.h"
#include "window/Workspace.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>

#include <algorithm>
#include <limits>

namespace Editor {

namespace {

using ZT::TangentSide;
using Number = HandleNumbers::Number;

void showFlag(QCheckBox& box, std::optional<bool> isSet, bool hasKeys) {
    const bool isMixed = hasKeys && !isSet;
    box.setEnabled(hasKeys);
    box.setCheckState(isMixed ? Qt::PartiallyChecked : isSet.value_or(false) ? Qt::Checked : Qt::Unchecked);
    box.setTristate(isMixed); // A click leads from the third state to checked, and never back to it.
}

} // namespace

KeyPanel::KeyPanel(Workspace& workspace, QWidget* parent)
    : QWidget(parent)
    , _workspace(workspace)
    , _header(new QLabel(this))
    , _frame(new NumberField(NumberField::Kind::frames, tr("Frame"), this))
    , _value(new NumberField(NumberField::Kind::values, tr("Value"), this))
    , _sides{_makeSide(TangentSide::left), _makeSide(TangentSide::right)}
    , _smooth(_makeFlag("smoothBox", tr("Sm&ooth")))
    , _symmetrical(_makeFlag("symmetricalBox", tr("Symmetri&cal"))) {
    _frame->setObjectName(QStringLiteral("frameField"));
    _frame->setToolTip(tr("Moves the keys so that the first of them stands at this frame."));
    _value->setObjectName(QStringLiteral("valueField"));
    _header->setWordWrap(true);
    for (NumberField* const field : findChildren<NumberField*>()) {
        connect(field, &NumberField::refused, this, &KeyPanel::refused);
    }
    connect(_frame, &NumberField::entered, this, [this](double frame) { _attempt([&] { _moveTo(frame); }); });
    connect(_value, &NumberField::entered, this, [this](double value) {
        _attempt([&] {
            _workspace.edits.setValue(_workspace.document.selection().keys(), VQ::Math::toFloat(value));
        });
    });
    connect(_smooth, &QCheckBox::clicked, this, [this](bool isSmooth) {
        _attempt([&] { _workspace.edits.setSmooth(_workspace.document.selection().keys(), isSmooth); });
    });
    connect(_symmetrical, &QCheckBox::clicked, this, [this](bool isSymmetrical) {
        _attempt(
            [&] { _workspace.edits.setSymmetrical(_workspace.document.selection().keys(), isSymmetrical); });
    });
    // What was typed was meant for the keys that were selected then.
    connect(&workspace.document.selection(), &KeySelection::changed, this, [this] {
        for (NumberField* const field : findChildren<NumberField*>()) {
            field->takeBack();
        }
    });
    connect(&workspace.selection, &SelectionState::changed, this, &KeyPanel::_refresh);
    _layOut();
    _refresh();
}

KeyPanel::Side KeyPanel::_makeSide(TangentSide side) {
    const bool isLeft = side == TangentSide::left;
    const Side made{side, new QComboBox(this),
                    new NumberField(NumberField::Kind::values,
                                    isLeft ? tr("Left handle, frames") : tr("Right handle, frames"), this),
                    new NumberField(NumberField::Kind::values,
                                    isLeft ? tr("Left handle, value") : tr("Right handle, value"), this)};
    for (const Type type : {Type::constant, Type::linear, Type::bezier, Type::bezierAuto}) {
        made.type->addItem(ZT::interpolTypeToString(type), static_cast<int>(type));
    }
    made.type->setAccessibleName(isLeft ? tr("Type of the left tangent") : tr("Type of the right tangent"));
    made.type->setMinimumContentsLength(9);
    made.type->setIconSize({0, 0}); // There are none, and no room is kept for them.
    made.type->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    made.frames->setToolTip(tr("From the key to the end of its bezier handle, in frames"));
    made.value->setToolTip(tr("From the key to the end of its bezier handle, in value units"));
    const QString prefix = isLeft ? QStringLiteral("left") : QStringLiteral("right");
    made.type->setObjectName(prefix + QStringLiteral("TypeBox"));
    made.frames->setObjectName(prefix + QStringLiteral("FramesField"));
    made.value->setObjectName(prefix + QStringLiteral("ValueField"));
    connect(made.type, QOverload<int>::of(&QComboBox::activated), this,
            [this, side, box = made.type](int index) {
                _attempt([&] {
                    _workspace.edits.setType(_workspace.document.selection().keys(), side,
                                             static_cast<Type>(box->itemData(index).toInt()));
                });
            });
    connect(made.frames, &NumberField::entered, this, [this, side](double frames) {
        const bool isOutside = side == TangentSide::left ? frames > 0.0 : frames < 0.0;
        if (isOutside) { // It would stand upright when the curve is drawn.
            Q_EMIT refused(side == TangentSide::left
                               ? tr("A left handle lies before its key: its frames cannot be above 0.")
                               : tr("A right handle lies behind its key: its frames cannot be below 0."));
            return;
        }
        _attempt([&] { _setHandle(side, Number::frames, frames); });
    });
    connect(made.value, &NumberField::entered, this,
            [this, side](double value) { _attempt([&] { _setHandle(side, Number::value, value); }); });
    return made;
}

QCheckBox* KeyPanel::_makeFlag(const char* name, const QString& text) {
    auto* const box = new QCheckBox(text, this);
    box->setObjectName(QLatin1String(name));
    return box;
}

void KeyPanel::_layOut() {
    auto* const grid = new QGridLayout(this);
    int row = 0;
    const auto addRow = [&](const QString& text, QWidget* left, QWidget* right) {
        auto* const label = new QLabel(text, this);
        label->setBuddy(left);
        grid->addWidget(label, row, 0);
        if (right == nullptr) {
            grid->addWidget(left, row, 1, 1, 2);
        } else {
            grid->addWidget(left, row, 1);
            grid->addWidget(right, row, 2);
        }
        ++row;
    };
    const auto& [left, right] = _sides;
    grid->addWidget(_header, row++, 0, 1, 3);
    addRow(tr("F&rame"), _frame, nullptr);
    addRow(tr("Val&ue"), _value, nullptr);
    grid->addWidget(new QLabel(tr("Left"), this), row, 1);
    grid->addWidget(new QLabel(tr("Right"), this), row++, 2);
    addRow(tr("&Type"), left.type, right.type);
    addRow(tr("Δ fra&me"), left.frames, right.frames);
    addRow(tr("Δ v&alue"), left.value, right.value);
    grid->addWidget(_smooth, row, 0, 1, 2);
    grid->addWidget(_symmetrical, row++, 1, 1, 2, Qt::AlignRight);
    grid->setRowStretch(row, 1);
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(2, 1);
    QWidget* before = _frame; // Tab goes through the rows as they are read.
    for (QWidget* const widget :
         std::initializer_list<QWidget*>{_value, left.type, right.type, left.frames, right.frames, left.value,
                                         right.value, _smooth, _symmetrical}) {
        setTabOrder(before, widget);
        before = widget;
    }
}

QString KeyPanel::_headerText() const {
    const int keys = _workspace.selection.keyCount();
    const int layers = _workspace.selection.layerCount();
    if (keys == 0) {
        return tr("No keys are selected.");
    }
    //: The one is "3 keys", the other one "2 layers".
    return tr("%1 on %2")
        .arg(keys == 1 ? tr("1 key") : tr("%1 keys").arg(keys),
             layers == 1 ? tr("1 layer") : tr("%1 layers").arg(layers));
}

void KeyPanel::_refresh() {
    const SelectionState& state = _workspace.selection;
    const KeyEdits::Common& common = state.common();
    const bool hasKeys = state.keyCount() > 0;
    _header->setText(_headerText());
    _frame->setEnabled(hasKeys);
    _value->setEnabled(hasKeys);
    if (common.frame) {
        _frame->showFrame(*common.frame);
    } else {
        _frame->showNothing(hasKeys ? tr("%1 to %2").arg(state.firstFrame()).arg(state.lastFrame())
                                    : QString());
    }
    if (common.value) {
        _value->showValue(*common.value);
    } else {
        _value->showNothing(hasKeys ? tr("mixed") : QString());
    }
    for (const Side& side : _sides) {
        _refreshSide(side);
    }
    showFlag(*_smooth, common.isSmooth, hasKeys);
    showFlag(*_symmetrical, common.isSymmetrical, hasKeys);
}

void KeyPanel::_refreshSide(const Side& side) {
    const KeyEdits::Common& common = _workspace.selection.common();
    const std::optional<Type> type = side.side == TangentSide::left ? common.leftType : common.rightType;
    const bool hasKeys = _workspace.selection.keyCount() > 0;
    side.type->setEnabled(hasKeys);
    side.type->setPlaceholderText(hasKeys ? tr("mixed") : QString());
    side.type->setCurrentIndex(type ? side.type->findData(static_cast<int>(*type)) : -1);
    const HandleNumbers handles(_workspace.document.selection().keys(), side.side);
    const auto show = [&](NumberField& field, Number number) {
        field.setEnabled(!handles.isEmpty());
        if (const std::optional<float> shared = handles.common(number)) {
            field.showValue(*shared);
        } else {
            field.showNothing(handles.isEmpty() ? QString() : tr("mixed"));
        }
    };
    show(*side.frames, Number::frames);
    show(*side.value, Number::value);
}

// Fields and boxes show what the keys have, whether or not the edit was done.
template <class Edit>
void KeyPanel::_attempt(const Edit& edit) {
    const QString why = attempt(edit);
    const QString whyNotShown = attempt([this] { _workspace.selection.update(); });
    if (!whyNotShown.isEmpty()) { // Another one that hears of it may have thrown before this panel's turn.
        (void)attempt([this] { _refresh(); });
    }
    if (!why.isEmpty() || !whyNotShown.isEmpty()) {
        (void)attempt([&] { Q_EMIT refused(why.isEmpty() ? whyNotShown : tr("Not done: %1.").arg(why)); });
    }
}

void KeyPanel::_moveTo(double frame) {
    const KeySelection::Keys& keys = _workspace.document.selection().keys();
    unsigned int first = std::numeric_limits<unsigned int>::max();
    for (const ZT::EditableMotionCurveKey* const key : keys) {
        first = std::min(first, ZT::index(key));
    }
    dragAtOnce(_workspace.drag, dragKeys(keys), QPointF(frame - first, 0.0));
}

void KeyPanel::_setHandle(TangentSide side, HandleNumbers::Number which, double number) {
    HandleNumbers(_workspace.document.selection().keys(), side)
        .set(which, VQ::Math::toFloat(number), _workspace.document);
}

} // namespace Editor
