#pragma once

#include "layers/LayerModel.h"
#include "layers/LayerPanel.h"
#include "tests/editor/support/Scene.h"

#include <QAction>
#include <QLayout>
#include <QLineEdit>
#include <QTableView>
#include <QToolButton>

/// A panel of layers over a scene, and hands on its mouse and keyboard.
class LayerPanelScene : public EditorScene::Scene {
public:
    explicit LayerPanelScene(const QStringList& names = {"arm", "leg", "head"})
        : Scene(names)
        , panel(document) {
        panel.resize(420, 400);
        panel.show();
        panel.layout()->activate();
    }

    QTableView& table() { return *panel.findChild<QTableView*>(); }
    QLineEdit& filter() { return *panel.findChild<QLineEdit*>(QString(), Qt::FindDirectChildrenOnly); }
    QAction* action(const QString& text) {
        for (QAction* const each : panel.actions()) {
            if (each->text() == text) {
                return each;
            }
        }
        return nullptr;
    }
    QToolButton* button(const QString& accessibleName) {
        for (QToolButton* const each : panel.findChildren<QToolButton*>()) {
            if (each->accessibleName() == accessibleName) {
                return each;
            }
        }
        return nullptr;
    }
    QModelIndex cell(int row, int column) { return table().model()->index(row, column); }
    QPoint at(int row, int column) { return table().visualRect(cell(row, column)).center(); }
    void click(int row, int column, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mouseClick(table().viewport(), Qt::LeftButton, modifiers, at(row, column));
    }
    void doubleClick(int row, int column) {
        QTest::mouseClick(table().viewport(), Qt::LeftButton, {}, at(row, column));
        QTest::mouseDClick(table().viewport(), Qt::LeftButton, {}, at(row, column));
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(&table(), key, modifiers);
    }
    QString shownNames() {
        QStringList texts;
        for (int row = 0; row < table().model()->rowCount(); ++row) {
            texts.append(cell(row, Editor::LayerModel::nameColumn).data().toString());
        }
        return texts.join(' ');
    }
    QString selectedNames() {
        QStringList texts;
        for (const QModelIndex& row :
             table().selectionModel()->selectedRows(Editor::LayerModel::nameColumn)) {
            texts.append(row.data().toString());
        }
        texts.sort();
        return texts.join(' ');
    }

    Editor::LayerPanel panel;
};
