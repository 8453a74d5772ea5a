#pragma once

#include "document/AnimationFile.h"
#include "document/KeyEdits.h"
#include "model/AnimationMarkers.h"
#include "tests/editor/TwoLayers.h"

/// What a program that is killed had done, for whoever wants to know what should be left of it.
namespace UnsavedWork {

/// The file; an animation that no file holds for an empty path.
inline void open(Editor::Document& document, const QString& path) {
    document.replace(path.isEmpty() ? TwoLayers::data() : Editor::AnimationFile(path).load(), path);
}

/// Keys with floats that take all their digits, flags, and the frames that play.
inline void edit(Editor::Document& document) {
    Editor::KeyEdits edits(document);
    edits.insert(*document.layer(0)->getCurve(), 77);
    edits.setType({TwoLayers::key(document, 0, 77)}, TwoLayers::Type::bezier);
    edits.setHandle({TwoLayers::key(document, 0, 77)}, ZT::TangentSide::left, {-1.1F, 1e-20F});
    edits.setValue({TwoLayers::key(document, 0, 77)}, 0.1F);
    edits.setSmooth({TwoLayers::key(document, 1, 10)}, true);
    document.markers().setEndIndex(123);
}

} // namespace UnsavedWork
