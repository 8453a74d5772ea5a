#include "document/LayerName.h"

#include "base/animation/XmlText.h"
#include "document/Translation.h"

#include <QString>

namespace Editor {

QString problemInName(const QString& name) {
    if (name.isEmpty()) {
        return tr("A layer needs a name.");
    }
    if (!name.isValidUtf16()) { // Conversion would put another character in its place.
        return tr("The name holds half of a character.");
    }
    if (const auto fault = VQ::Animation::findXmlTextFault(name.toStdString())) {
        return tr("The name holds %1.").arg(QString::fromStdString(fault->what));
    }
    return {};
}

} // namespace Editor
