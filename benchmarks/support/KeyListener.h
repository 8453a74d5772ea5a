#pragma once

#include <QMetaMethod>
#include <QObject>

namespace Bench {

/// One more receiver of keys' signals, such as a view: it does nothing with them.
class KeyListener : public QObject {
    Q_OBJECT

public:
    template <class Key>
    void listenTo(Key* key) {
        static const int valueSignal = QMetaMethod::fromSignal(&Key::valueChanged).methodIndex();
        static const int indexSignal = QMetaMethod::fromSignal(&Key::indexChanged).methodIndex();
        static const int valueSlot = staticMetaObject.indexOfSlot("onValueChanged(float)");
        static const int indexSlot = staticMetaObject.indexOfSlot("onIndexChanged(uint)");
        QMetaObject::connect(key, valueSignal, this, valueSlot);
        QMetaObject::connect(key, indexSignal, this, indexSlot);
    }

private Q_SLOTS:
    void onValueChanged(float /*value*/) {}
    void onIndexChanged(unsigned int /*frame*/) {}
};

} // namespace Bench
