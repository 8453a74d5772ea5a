#pragma once

#include "document/BvhImporter.h"

#include <QByteArray>
#include <QString>

#include <sstream>
#include <stdexcept>

/// Motion captures as texts.
namespace BvhFiles {

/// Two joints, three channels, two frames; the lines' numbers are what the tests of errors count on.
inline const QByteArray goodFile = "HIERARCHY\n"                        // 1
                                   "ROOT Hips\n"                        // 2
                                   "{\n"                                // 3
                                   "  OFFSET 0.0 1 -2.5\n"              // 4
                                   "  CHANNELS 2 Yposition Xrotation\n" // 5
                                   "  JOINT Knee\n"                     // 6
                                   "  {\n"                              // 7
                                   "    OFFSET 0 -4 0\n"                // 8
                                   "    CHANNELS 1 Zrotation\n"         // 9
                                   "    End Site\n"                     // 10
                                   "    {\n"                            // 11
                                   "      OFFSET 0 -3 0\n"              // 12
                                   "    }\n"                            // 13
                                   "  }\n"                              // 14
                                   "}\n"                                // 15
                                   "MOTION\n"                           // 16
                                   "Frames: 2\n"                        // 17
                                   "Frame Time: 0.04\n"                 // 18
                                   "1.5 -.25 30\n"                      // 19
                                   "2 1e2 -0.0\n";                      // 20

inline VQ::Animation::Animation read(const QByteArray& text) {
    std::istringstream stream(text.toStdString());
    return Editor::BvhImporter(stream).read();
}

/// The error of reading @p text; empty when it is read.
inline QString problemIn(const QByteArray& text) {
    try {
        read(text);
        return {};
    } catch (const std::runtime_error& error) {
        return QString::fromUtf8(error.what());
    }
}

inline QByteArray replaced(const char* before, const char* after) {
    QByteArray text = goodFile;
    Q_ASSERT(text.contains(before));
    return text.replace(before, after);
}

} // namespace BvhFiles
