#pragma once

#include "curves/CurvePlacement.h"
#include "curves/CurveView.h"
#include "curves/ViewAxis.h"
#include "document/AnimationData.h"
#include "document/Document.h"
#include "document/Drag.h"
#include "document/KeySelection.h"
#include "model/AnimationMarkers.h"

#include <QApplication>
#include <QImage>
#include <QMouseEvent>
#include <QWheelEvent>
#include <QtTest>

#include <boost/property_tree/xml_parser.hpp>

#include <memory>
#include <sstream>
#include <utility>
#include <vector>

/// A curve view of 900 x 500 pixels over layers "a", "b", ... with linear keys, which shows frames -10 to 110
/// and values -20 to 120; and a hand on its mouse.
class CurveViewScene {
public:
    using Type = VQ::Math::Interpolation::InterpolationType;
    using Key = ZT::EditableMotionCurveKey;
    struct KeyAt {
        unsigned int frame;
        float value;
        Type type = Type::linear;
        VQ::Math::Position2D left = {};
        VQ::Math::Position2D right = {};
    };
    using Layers = std::vector<std::vector<KeyAt>>;

    explicit CurveViewScene(const Layers& layers)
        : frames(Editor::ViewAxis::forFrames(&axisOwner)) {
        load(layers);
        view = std::make_unique<Editor::CurveView>(document, drag, *frames);
        view->resize(900, 500);
        view->show();
        frames->show(-10.0, 110.0);
        view->values().show(-20.0, 120.0);
    }

    void load(const Layers& layers) {
        VQ::Animation::Animation plain;
        char name = 'a';
        for (const auto& keys : layers) {
            auto* const layer = new VQ::Animation::AnimationLayer;
            layer->actuatorName = name++;
            for (const KeyAt& key : keys) {
                layer->curve->insert(key.frame, new VQ::Math::Interpolation::Key{
                                                    key.value, key.type, key.left, key.type, key.right});
            }
            plain.push_back(layer);
        }
        Editor::AnimationData data;
        data.animation = std::make_unique<ZT::EditableAnimation>(plain);
        document.replace(std::move(data), QString());
    }

    ZT::EditableMotionCurve& curve(int layer) const { return *document.layer(layer)->getCurve(); }
    Key* key(int layer, unsigned int frame) const { return curve(layer).getKey(frame); }
    void setLook(int layer, bool isVisible, bool isLocked) {
        document.setLook(layer, {document.look(layer).colour, isVisible, isLocked});
    }

    /// The selected keys as "layer@frame", sorted.
    QString selected() {
        QStringList texts;
        for (const Key* const each : document.selection().keys()) {
            texts.append(each->getParentCurve()->getParentLayer()->getActuatorName() + '@' +
                         QString::number(ZT::index(each)));
        }
        texts.sort();
        return texts.join(' ');
    }

    /// Every bit of the animation, as text.
    QString state() const {
        std::ostringstream stream;
        boost::property_tree::write_xml(stream, document.animation().serialize());
        return QString::fromStdString(stream.str());
    }
    int entries() { return document.history().count(); }

    QPoint at(double frame, double value) const { return view->placement().toPoint(frame, value).toPoint(); }

    void press(const QPoint& point, Qt::KeyboardModifiers modifiers = {},
               Qt::MouseButton button = Qt::LeftButton) {
        QTest::mousePress(view.get(), button, modifiers, point);
    }
    void moveTo(const QPoint& point, Qt::KeyboardModifiers modifiers = {},
                Qt::MouseButtons buttons = Qt::LeftButton) {
        QMouseEvent event(QEvent::MouseMove, point, view->mapToGlobal(point), Qt::NoButton, buttons,
                          modifiers);
        QApplication::sendEvent(view.get(), &event);
    }
    void release(const QPoint& point, Qt::KeyboardModifiers modifiers = {},
                 Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseRelease(view.get(), button, modifiers, point);
    }
    void click(const QPoint& point, Qt::KeyboardModifiers modifiers = {}) {
        press(point, modifiers);
        release(point, modifiers);
    }
    void doubleClick(const QPoint& point) {
        click(point);
        QTest::mouseDClick(view.get(), Qt::LeftButton, {}, point);
        release(point);
    }
    /// In several steps, with both ends.
    void dragBetween(const QPoint& from, const QPoint& to, Qt::KeyboardModifiers modifiers = {},
                     Qt::MouseButton button = Qt::LeftButton) {
        constexpr int steps = 5;
        press(from, modifiers, button);
        for (int i = 1; i <= steps; ++i) {
            moveTo(from + (to - from) * i / steps, modifiers, button);
        }
        release(to, modifiers, button);
    }
    void turnWheel(const QPoint& point, int delta, Qt::KeyboardModifiers modifiers = {}) {
        QWheelEvent event(point, view->mapToGlobal(point), QPoint(), QPoint(0, delta), Qt::NoButton,
                          modifiers, Qt::NoScrollPhase, false);
        QApplication::sendEvent(view.get(), &event);
    }
    void type(Qt::Key which, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(view.get(), which, modifiers);
    }

    QImage picture() {
        QImage image(view->size().expandedTo(QSize(1, 1)), QImage::Format_RGB32);
        image.fill(Qt::black);
        view->render(&image);
        return image;
    }

    Editor::Document document;
    Editor::Drag drag{document};
    QObject axisOwner;
    Editor::ViewAxis* frames;
    std::unique_ptr<Editor::CurveView> view;
};
