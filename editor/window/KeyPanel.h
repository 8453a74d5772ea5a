#pragma once

#include "base/TangentSide.h"
#include "base/math/Interpolation.h"
#include "window/HandleNumbers.h"

#include <QWidget>

#include <array>

class QCheckBox;
class QComboBox;
class QLabel;

namespace Editor {

class NumberField;
struct Workspace;

/// Exact numbers of the selected keys. Fields are empty where the keys differ; what is entered then goes to
/// all of them. Each edit is one entry of the history.
class KeyPanel : public QWidget {
    Q_OBJECT

public:
    explicit KeyPanel(Workspace& workspace, QWidget* parent = nullptr);

Q_SIGNALS:
    /// An edit was not done, or not to its end; @p why is for the status bar. A frame that is taken is
    /// Drag::blocked()'s to say.
    void refused(const QString& why);

private:
    using Type = VQ::Math::Interpolation::InterpolationType;

    /// The widgets of one tangent.
    struct Side {
        ZT::TangentSide side;
        QComboBox* type; ///< all are QObject children
        NumberField* frames;
        NumberField* value;
    };

    Side _makeSide(ZT::TangentSide side);
    QCheckBox* _makeFlag(const char* name, const QString& text);
    void _layOut();
    QString _headerText() const;
    void _refresh();
    void _refreshSide(const Side& side);
    template <class Edit>
    void _attempt(const Edit& edit);
    void _moveTo(double frame);
    void _setHandle(ZT::TangentSide side, HandleNumbers::Number which, double number);

    Workspace& _workspace;
    QLabel* _header; ///< all are QObject children
    NumberField* _frame;
    NumberField* _value;
    std::array<Side, 2> _sides;
    QCheckBox* _smooth;
    QCheckBox* _symmetrical;
};

} // namespace Editor
